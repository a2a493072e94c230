#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "formats/mp3/CMP3FrameFinder.h"
#include "foundation/IStream.h"
#include "foundation/P.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

// Helpers of the MP3 tests: reference files made by the installed tools
// (sox, lame, mpg123) and the program's own decoding of them.
namespace mp3test {

using Bytes = std::vector<std::uint8_t>;

// Runs a shell command; fails the test when it does not exit with 0.
// Returns what it wrote to its standard output.
std::string run(const std::string& command);
std::string quote(const std::filesystem::path& path);

Bytes readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const Bytes& bytes);

// A 16-bit WAV of two sines (440 and 660 Hz, one per channel when stereo).
void makeWav(const std::filesystem::path& path, int sampleRate, int channels, double seconds);
// A WAV encoded by lame with the given options.
void makeMP3(const std::filesystem::path& path, int sampleRate, int channels, double seconds,
             const std::string& lameOptions);
// The samples that "mpg123 -s" writes for the file.
std::vector<std::int16_t> decodeWithMpg123(const std::filesystem::path& path);

// The program's decoding of a file: all samples and the format of each chunk.
struct Decoded
{
    std::vector<std::int16_t> samples;
    std::vector<std::pair<int, int>> formats;  // rate and channels, once per change
    std::int64_t frames = 0;
};
Decoded decodeWithSource(const std::filesystem::path& path);

// A memory stream on a copy of bytes; each read gives at most readLimit
// bytes, to move buffer borders around.
fenn::P<fenn::ISeekableInStream> memoryStream(const Bytes& bytes, std::int32_t readLimit = 1 << 30);

struct FoundFrame
{
    std::int64_t position;
    std::int32_t length;
    bool operator==(const FoundFrame&) const = default;
};
// Runs the finder over the stream to its end (or until it is lost).
std::vector<FoundFrame> findFrames(tbx::CMP3FrameFinder& finder, fenn::IInStream& stream);
std::vector<FoundFrame> findFrames(const Bytes& bytes, std::int32_t readLimit = 1 << 30);

// Opens the disk streams of the stream manager for the test and gives it a
// temp folder.
class MP3Test : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    tbtest::TempFolder m_folder;
    fenn::P<fenn::posix::CDiskStreamFactory> m_diskStreams;
};

}  // namespace mp3test
