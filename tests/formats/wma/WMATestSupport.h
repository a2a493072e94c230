#pragma once

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/CFileSystemManager.h"
#include "foundation/CValueList.h"
#include "foundation/posix/CFileSystem.h"
#include "tests/formats/vorbis/CodecTestSupport.h"

// Helpers of the FFmpeg and WMA suites: sox-made signals, encodes through
// the WMA sink, and the search for a decoded signal in its source.
namespace tbtest::wma {

using namespace tbtest::codec;

// The codec suites' disk streams, and the disk file system for the tag's
// temporary files.
class WMATest : public CodecTest
{
protected:
    void SetUp() override
    {
        CodecTest::SetUp();
        fenn::CFileSystemManager::getInstance()->addFileSystem(m_files);
    }
    void TearDown() override
    {
        fenn::CFileSystemManager::getInstance()->removeFileSystem(m_files.get());
        CodecTest::TearDown();
    }

    // Interleaved samples of sox's synth effect ("3 sine 300-3000"), made
    // as a WAV file at path and read back as raw samples.
    std::vector<std::int16_t> soxSignal(const std::filesystem::path& wav, std::int32_t rate, std::int32_t channels,
                                        const std::string& synth)
    {
        const auto raw = file("signal.raw");
        const CommandResult made =
            run("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " -b 16 " + quoted(wav) +
                " synth " + synth + " && sox " + quoted(wav) + " -t raw -e signed -b 16 -L " + quoted(raw));
        EXPECT_EQ(made.status, 0) << made.output;
        return readRaw16(raw);
    }

    fenn::P<fenn::posix::CFileSystem> m_files = fenn::make<fenn::posix::CFileSystem>();
};

// The file's tags as ffprobe reads them, by name.
inline std::map<std::string, std::string> probeTags(const std::filesystem::path& path)
{
    const CommandResult probed = run("ffprobe -v error -show_entries format_tags -of default=nw=1 " + quoted(path));
    EXPECT_EQ(probed.status, 0) << probed.output;
    std::map<std::string, std::string> tags;
    std::istringstream lines(probed.output);
    const std::string prefix = "TAG:";
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        if (line.rfind(prefix, 0) != 0 || equals == std::string::npos) continue;
        tags[line.substr(prefix.size(), equals - prefix.size())] = line.substr(equals + 1);
    }
    return tags;
}

// How well a decoded signal matches its source: the offset (decoded frame
// of source frame 0) and the least correlation of the channels there.
struct Match
{
    double correlation = 0.0;
    std::int32_t offset = 0;
};

inline double correlation(const std::vector<std::int16_t>& reference, const std::vector<std::int16_t>& decoded,
                          std::int32_t channels, std::int32_t channel, std::int64_t offset, std::int64_t first,
                          std::int64_t count)
{
    double both = 0.0, referenceEnergy = 0.0, decodedEnergy = 0.0;
    const auto referenceFrames = static_cast<std::int64_t>(reference.size()) / channels;
    const auto decodedFrames = static_cast<std::int64_t>(decoded.size()) / channels;
    for (std::int64_t frame = first; frame < first + count; ++frame) {
        const std::int64_t other = frame + offset;
        if (frame < 0 || frame >= referenceFrames || other < 0 || other >= decodedFrames) continue;
        const double x = reference[static_cast<std::size_t>(frame * channels + channel)];
        const double y = decoded[static_cast<std::size_t>(other * channels + channel)];
        both += x * y;
        referenceEnergy += x * x;
        decodedEnergy += y * y;
    }
    return referenceEnergy > 0.0 && decodedEnergy > 0.0 ? both / std::sqrt(referenceEnergy * decodedEnergy) : 0.0;
}

// Finds the offset within maxOffset frames on a window of the first channel,
// then correlates every channel over the whole signal there.
inline Match bestMatch(const std::vector<std::int16_t>& reference, const std::vector<std::int16_t>& decoded,
                       std::int32_t channels, std::int32_t maxOffset)
{
    constexpr std::int64_t kWindow = 4096;
    const auto frames = static_cast<std::int64_t>(reference.size()) / channels;
    Match best{-2.0, 0};
    for (std::int32_t offset = -maxOffset; offset <= maxOffset; ++offset) {
        const double value = correlation(reference, decoded, channels, 0, offset, frames / 3, kWindow);
        if (value > best.correlation) best = {value, offset};
    }
    for (std::int32_t channel = 0; channel < channels; ++channel)
        best.correlation =
            std::min(best.correlation, correlation(reference, decoded, channels, channel, best.offset, 0, frames));
    return best;
}

}  // namespace tbtest::wma
