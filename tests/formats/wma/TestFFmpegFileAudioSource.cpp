#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "formats/ffmpeg/CFFmpegFileAudioSource.h"
#include "formats/ffmpeg/CFFmpegInputFileType.h"
#include "formats/ffmpeg/FFmpegTexts.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/wma/WMATestSupport.h"

using namespace tbtest::wma;

namespace {

class FFmpegFileAudioSource : public WMATest
{
protected:
    // Interleaved samples written to a raw file and turned into another
    // format by sox.
    void soxFromSamples(const std::vector<std::int16_t>& samples, std::int32_t channels,
                        const std::filesystem::path& target)
    {
        const auto raw = file("samples.raw");
        std::string bytes;
        for (const std::int16_t sample : samples) {
            bytes.push_back(static_cast<char>(sample & 0xFF));
            bytes.push_back(static_cast<char>((sample >> 8) & 0xFF));
        }
        writeBytes(raw, bytes);
        const CommandResult made = run("sox -t raw -r 44100 -e signed -b 16 -L -c " + std::to_string(channels) + " " +
                                       quoted(raw) + " " + quoted(target));
        ASSERT_EQ(made.status, 0) << made.output;
    }
};

TEST_F(FFmpegFileAudioSource, LossyFilesOfFFmpegDecodeToTheirSignal)
{
    struct Case
    {
        const char* name;
        std::int32_t rate;
        const char* codec;
    };
    tbx::CFFmpegInputFileType type;
    for (const Case c : {Case{"song.m4a", 44100, "aac -b:a 192k"}, Case{"song.opus", 48000, "libopus -b:a 160k"}}) {
        SCOPED_TRACE(c.name);
        const auto wav = file("source.wav");
        const std::vector<std::int16_t> source = soxSignal(wav, c.rate, 2, "2 sine 300-3000 sine 2500-400 vol 0.6");
        const auto path = file(c.name);
        const CommandResult made =
            run("ffmpeg -v error -y -i " + quoted(wav) + " -metadata title=Song -metadata artist=Band -c:a " + c.codec +
                " " + quoted(path));
        ASSERT_EQ(made.status, 0) << made.output;

        const fenn::P<tbx::IAudioSource> reader =
            type.createAudioSource(fenn::String::copyOf(path.extension().string()), uriOf(path));
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->GetTypeName(), "DirectShow");
        const Decoded decoded = decodeAll(*reader);
        EXPECT_EQ(decoded.sampleRate, c.rate);
        EXPECT_EQ(decoded.channels, 2);
        const auto frames = static_cast<std::int64_t>(source.size()) / 2;
        EXPECT_NEAR(static_cast<double>(decoded.frames()), static_cast<double>(frames), 2048.0);
        const Match match = bestMatch(source, decoded.samples, 2, 4096);
        EXPECT_GT(match.correlation, 0.99) << "at offset " << match.offset;
        EXPECT_EQ(reader->GetTags()->getString("title", "").toStdString(), "Song");
        EXPECT_EQ(reader->GetTags()->getString("artist", "").toStdString(), "Band");
        EXPECT_NEAR(reader->GetInfo()->getDouble("duration", 0.0), 2.0, 0.05);
    }
    EXPECT_FALSE(type.createAudioSource(".wav", uriOf(file("song.wav"))));
    EXPECT_EQ(type.getFileFilter().pattern.toStdString(),
              "*.m4a;*.aac;*.mp4;*.opus;*.aif;*.aiff;*.wv;*.ape;*.mpc;*.ac3");
}

TEST_F(FFmpegFileAudioSource, PCMComesThroughExactlyAndSurroundIsMixedToTwo)
{
    constexpr std::int32_t kFrames = 4410;
    std::mt19937 generator(5);
    std::uniform_int_distribution<int> value(-20000, 20000);
    // Mono and stereo go through as they are.
    for (const std::int32_t channels : {1, 2}) {
        SCOPED_TRACE(channels);
        std::vector<std::int16_t> samples(static_cast<std::size_t>(kFrames) * channels);
        for (auto& sample : samples) sample = static_cast<std::int16_t>(value(generator));
        const auto path = file("plain.aiff");
        soxFromSamples(samples, channels, path);
        tbx::CFFmpegFileAudioSource source(uriOf(path));
        const Decoded decoded = decodeAll(source);
        EXPECT_EQ(decoded.channels, channels);
        EXPECT_TRUE(decoded.samples == samples);
    }

    // Six channels in the order of 5.1: front left, right, centre,
    // low-frequency, and the two rear ones.
    std::vector<std::int16_t> surround(static_cast<std::size_t>(kFrames) * 6);
    for (auto& sample : surround) sample = static_cast<std::int16_t>(value(generator));
    const auto path = file("surround.aiff");
    soxFromSamples(surround, 6, path);
    tbx::CFFmpegFileAudioSource source(uriOf(path));
    const Decoded decoded = decodeAll(source);
    ASSERT_EQ(decoded.channels, 2);
    ASSERT_EQ(decoded.frames(), kFrames);
    EXPECT_EQ(source.GetInfo()->getInt("channels", 0), 2);
    // Centre and rear at -3 dB, the low frequencies left out, each side
    // scaled by its sum of weights, 1 + 2 * 0.7071.
    const double half = std::sqrt(0.5);
    for (std::size_t frame = 0; frame < static_cast<std::size_t>(kFrames); ++frame) {
        const std::int16_t* in = surround.data() + frame * 6;
        const double left = (in[0] + half * in[2] + half * in[4]) / (1.0 + 2.0 * half);
        const double right = (in[1] + half * in[2] + half * in[5]) / (1.0 + 2.0 * half);
        ASSERT_NEAR(decoded.samples[frame * 2], left, 1.0) << frame;
        ASSERT_NEAR(decoded.samples[frame * 2 + 1], right, 1.0) << frame;
    }
}

TEST_F(FFmpegFileAudioSource, FilesNoAllowedDemuxerTakesAreNotSupported)
{
    const auto path = file("odd.m4a");
    std::mt19937 generator(3);
    std::string random(20000, '\0');
    for (char& c : random) c = static_cast<char>(std::uniform_int_distribution<int>(0, 255)(generator));
    const auto wav = file("real.wav");
    soxSignal(wav, 44100, 2, "0.2 sine 440");
    // Random bytes, and a WAV file under the wrong name: the WAV demuxer is
    // not among those this source lets claim a file.
    for (const std::string& bytes : {random, readBytes(wav)}) {
        writeBytes(path, bytes);
        tbx::CFFmpegFileAudioSource source(uriOf(path));
        EXPECT_THROW(source.Open(0, nullptr), fenn::CFileFormatNotSupportedError);
    }

    // An M4A cut short decodes what is there, or fails with a known text.
    const CommandResult made = run("ffmpeg -v error -y -i " + quoted(wav) + " -c:a aac " + quoted(path));
    ASSERT_EQ(made.status, 0) << made.output;
    const std::string whole = readBytes(path);
    writeBytes(path, whole.substr(0, whole.size() / 2));
    tbx::CFFmpegFileAudioSource cut(uriOf(path));
    const std::string error = decodeError(cut);
    EXPECT_TRUE(error.empty() || error == tbx::ffmpegTexts::decoderUnparseable.defaultText ||
                error == fenn::CFileFormatNotSupportedError(uriOf(path)).getDescription().toStdString())
        << error;
}

}  // namespace
