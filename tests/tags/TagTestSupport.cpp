#include "tests/tags/TagTestSupport.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "foundation/CFileSystemManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "foundation/posix/CFileSystem.h"
#include "tests/support/TempFolder.h"

namespace tbtest {

namespace {

// The disk streams and the file system that CMP3FileTag reaches through
// the shared managers, for the whole test program.
fenn::P<fenn::posix::CDiskStreamFactory> g_diskStreams;

class DiskEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        g_diskStreams = fenn::make<fenn::posix::CDiskStreamFactory>();
        fenn::CStreamManager::getInstance()->addFactory(g_diskStreams);
        m_files = fenn::make<fenn::posix::CFileSystem>();
        fenn::CFileSystemManager::getInstance()->addFileSystem(m_files);
    }
    void TearDown() override
    {
        fenn::CFileSystemManager::getInstance()->removeFileSystem(m_files.get());
        fenn::CStreamManager::getInstance()->removeFactory(g_diskStreams.get());
        m_files = nullptr;
        g_diskStreams = nullptr;
    }

private:
    fenn::P<fenn::posix::CFileSystem> m_files;
};

[[maybe_unused]] ::testing::Environment* const g_diskEnvironment =
    ::testing::AddGlobalTestEnvironment(new DiskEnvironment);

int hexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    throw std::invalid_argument("not a hex digit");
}

}  // namespace

fenn::P<fenn::IStreamFactory> getDiskStreamFactory()
{
    return g_diskStreams;
}

Bytes b(std::string_view pattern)
{
    Bytes bytes;
    for (std::size_t index = 0; index < pattern.size();) {
        const char c = pattern[index];
        if (c == ' ') {
            ++index;
        } else if (c == '\'') {
            const std::size_t end = pattern.find('\'', index + 1);
            if (end == std::string_view::npos) throw std::invalid_argument("unclosed quote");
            bytes.insert(bytes.end(), pattern.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                         pattern.begin() + static_cast<std::ptrdiff_t>(end));
            index = end + 1;
        } else {
            if (index + 1 >= pattern.size()) throw std::invalid_argument("odd hex digits");
            bytes.push_back(static_cast<std::uint8_t>(hexValue(c) * 16 + hexValue(pattern[index + 1])));
            index += 2;
        }
    }
    return bytes;
}

Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes zeros(std::size_t count)
{
    return Bytes(count, 0);
}

Bytes syncsafe(std::uint32_t size)
{
    return {static_cast<std::uint8_t>(size >> 21 & 0x7F), static_cast<std::uint8_t>(size >> 14 & 0x7F),
            static_cast<std::uint8_t>(size >> 7 & 0x7F), static_cast<std::uint8_t>(size & 0x7F)};
}

Bytes frame23(const char* id, const Bytes& data, std::uint16_t flags)
{
    const auto size = static_cast<std::uint32_t>(data.size());
    Bytes frame(id, id + 4);
    frame = frame + Bytes{static_cast<std::uint8_t>(size >> 24), static_cast<std::uint8_t>(size >> 16),
                          static_cast<std::uint8_t>(size >> 8),  static_cast<std::uint8_t>(size),
                          static_cast<std::uint8_t>(flags >> 8), static_cast<std::uint8_t>(flags)};
    return frame + data;
}

Bytes frame22(const char* id, const Bytes& data)
{
    const auto size = static_cast<std::uint32_t>(data.size());
    Bytes frame(id, id + 3);
    frame = frame + Bytes{static_cast<std::uint8_t>(size >> 16), static_cast<std::uint8_t>(size >> 8),
                          static_cast<std::uint8_t>(size)};
    return frame + data;
}

Bytes tag(std::uint8_t version, std::uint8_t flags, const Bytes& body)
{
    return b("'ID3'") + Bytes{version, 0, flags} + syncsafe(static_cast<std::uint32_t>(body.size())) + body;
}

fenn::P<fenn::CMemoryIOStream> memoryStream(const Bytes& bytes)
{
    auto stream = fenn::make<fenn::CMemoryIOStream>();
    stream->write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    stream->seek(0);
    return stream;
}

Bytes contents(const fenn::CMemoryIOStream& stream)
{
    const fenn::P<fenn::IMemoryBlock> block = stream.getMemoryBlock();
    return Bytes(block->getData(), block->getData() + block->getSize());
}

std::string hexDump(const Bytes& bytes)
{
    std::string text;
    char piece[4];
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        std::snprintf(piece, sizeof piece, "%02X", bytes[index]);
        text += piece;
        text += index % 16 == 15 ? '\n' : ' ';
    }
    return text;
}

Bytes readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

fenn::CURI fileURI(const std::filesystem::path& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

CommandResult runCommand(const std::string& command)
{
    CommandResult result;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) result.output.append(buffer, got);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

std::string shellQuote(const std::string& argument)
{
    std::string quoted = "'";
    for (const char c : argument) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

void makeMP3(const std::filesystem::path& path)
{
    const TempFolder scratch;
    const std::string wav = (scratch / "sine.wav").string();
    const CommandResult sox =
        runCommand("sox -n -r 44100 -c 2 -b 16 " + shellQuote(wav) + " synth 0.2 sine 440 vol 0.5");
    if (sox.status != 0) throw std::runtime_error("sox failed: " + sox.output);
    const CommandResult lame = runCommand("lame --quiet -b 128 " + shellQuote(wav) + " " + shellQuote(path.string()));
    if (lame.status != 0) throw std::runtime_error("lame failed: " + lame.output);
}

}  // namespace tbtest
