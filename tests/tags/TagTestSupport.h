#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CMemoryIOStream.h"
#include "foundation/CURI.h"
#include "foundation/IStreamFactory.h"

namespace tbtest {

using Bytes = std::vector<std::uint8_t>;

// Bytes from a readable description: pairs of hex digits and 'quoted ASCII', with
// blanks between ("'ID3' 03 00 00 00 00 00 0A").
Bytes b(std::string_view pattern);
Bytes operator+(Bytes left, const Bytes& right);
// n zero bytes.
Bytes zeros(std::size_t count);
// The four bytes of a 28-bit size in the ID3v2 header form.
Bytes syncsafe(std::uint32_t size);
// A 2.3 frame: id, 32-bit big-endian size, flags, data.
Bytes frame23(const char* id, const Bytes& data, std::uint16_t flags = 0);
// A 2.2 frame: id, 24-bit big-endian size, data.
Bytes frame22(const char* id, const Bytes& data);
// Header ("ID3", version, revision 0, flags, size of body) and body.
Bytes tag(std::uint8_t version, std::uint8_t flags, const Bytes& body);

// A memory stream holding the bytes, positioned at its start.
fenn::P<fenn::CMemoryIOStream> memoryStream(const Bytes& bytes);
// Every byte the memory stream holds.
Bytes contents(const fenn::CMemoryIOStream& stream);
// Renders a printable form for failure messages.
std::string hexDump(const Bytes& bytes);

Bytes readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const Bytes& bytes);
fenn::CURI fileURI(const std::filesystem::path& path);
// The disk stream factory that the test program registers with the stream
// manager before its tests run.
fenn::P<fenn::IStreamFactory> getDiskStreamFactory();

// Runs a shell command; the exit status, stdout and stderr together in output.
struct CommandResult
{
    int status = -1;
    std::string output;
};
CommandResult runCommand(const std::string& command);
// The argument in single quotes for the shell.
std::string shellQuote(const std::string& argument);

// A short MP3 file without tags (a fifth of a second of a sine, made by sox
// and lame), written to path.
void makeMP3(const std::filesystem::path& path);

}  // namespace tbtest
