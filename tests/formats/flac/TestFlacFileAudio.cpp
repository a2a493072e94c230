#include <gtest/gtest.h>

#include <set>
#include <string>

#include "formats/flac/CFlacFileAudioSink.h"
#include "formats/flac/CFlacFileAudioSource.h"
#include "formats/flac/FlacTexts.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/vorbis/CodecTestSupport.h"

using namespace tbtest::codec;

namespace {

// Damaged copies per run of the random damage test, and the seed that makes
// them repeatable.
constexpr int kMutationRounds = 100;
constexpr std::uint32_t kMutationSeed = 20240611;

class FlacFileAudio : public CodecTest
{
protected:
    void encode(const std::filesystem::path& path, const std::vector<std::int16_t>& samples, std::int32_t rate,
                std::int32_t channels, const fenn::CValueList& settings,
                const fenn::CValueList& tags = fenn::CValueList())
    {
        auto sink = fenn::make<tbx::CFlacFileAudioSink>(createFile(path), settings, tags);
        writeSamples(*sink, samples, rate, channels, 10000);
        sink->Finish();
    }

    // A file made by the flac tool from sox's sine at the given width.
    std::filesystem::path referenceFile(int bits, const std::string& flacOptions = "")
    {
        const auto wav = file("reference.wav");
        const auto flac = file("reference.flac");
        const CommandResult made = run("sox -n -r 48000 -c 2 -b " + std::to_string(bits) + " " + quoted(wav) +
                                       " synth 1.5 sine 440 sine 1234 vol 0.7 && flac -s -f " + flacOptions + " -o " +
                                       quoted(flac) + " " + quoted(wav));
        EXPECT_EQ(made.status, 0) << made.output;
        return flac;
    }
};

fenn::P<fenn::CValueList> pcmSettings(std::int32_t rate, std::int32_t channels, std::int32_t bits)
{
    auto settings = fenn::make<fenn::CValueList>();
    settings->setInt("sampleRate", rate);
    settings->setInt("channels", channels);
    settings->setInt("bitsPerSample", bits);
    return settings;
}

// The channel assignment and block size codes of the first frame: the frame
// header follows the metadata blocks, each with a 4-byte header whose first
// bit marks the last block.
std::pair<int, int> firstFrameCodes(const std::string& file)
{
    std::size_t offset = 4;
    for (bool last = false; !last && offset + 4 <= file.size();) {
        const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(file[i]); };
        last = (byte(offset) & 0x80) != 0;
        offset += 4 + ((byte(offset + 1) << 16) | (byte(offset + 2) << 8) | byte(offset + 3));
    }
    if (offset + 4 > file.size()) return {-1, -1};
    return {static_cast<std::uint8_t>(file[offset + 3]) >> 4, static_cast<std::uint8_t>(file[offset + 2]) >> 4};
}

TEST_F(FlacFileAudio, SixteenBitRoundTripIsExact)
{
    struct Case
    {
        std::int32_t rate, channels;
        int channelAssignment;  // 0 mono; 8 to 10 the side-coded pairs
    };
    for (const Case c : {Case{44100, 2, 8}, Case{22050, 1, 0}, Case{48000, 2, 8}}) {
        SCOPED_TRACE(std::to_string(c.rate) + " Hz, " + std::to_string(c.channels) + " channels");
        const auto path = file("exact.flac");
        // Two seconds of noise, in the first of which the right channel
        // copies the left: with mid-side coding on, those frames code the
        // pair with a side channel.
        std::vector<std::int16_t> samples = noise(static_cast<std::size_t>(c.rate) * 2 * c.channels, 7);
        if (c.channels == 2) {
            for (std::size_t i = 0; i < samples.size() / 2; i += 2) samples[i + 1] = samples[i];
        }
        encode(path, samples, c.rate, c.channels, *pcmSettings(c.rate, c.channels, 16));

        tbx::CFlacFileAudioSource source(uriOf(path));
        const Decoded decoded = decodeAll(source);
        EXPECT_EQ(decoded.sampleRate, c.rate);
        EXPECT_EQ(decoded.channels, c.channels);
        EXPECT_TRUE(decoded.samples == samples);
        const auto info = source.GetInfo();
        EXPECT_EQ(info->getInt("bitsPerSample", 0), 16);
        EXPECT_DOUBLE_EQ(info->getDouble("duration", 0.0), 2.0);
        EXPECT_NE(info->getString("encoder", "").toStdString().find("libFLAC"), std::string::npos);
        EXPECT_EQ(source.GetTypeName(), "FLAC");

        const std::string bytes = readBytes(path);
        const auto [assignment, blockSizeCode] = firstFrameCodes(bytes);
        if (c.channels == 1) {
            EXPECT_EQ(assignment, 0);
        } else {
            EXPECT_GE(assignment, 8);
            EXPECT_LE(assignment, 10);
        }
        EXPECT_EQ(blockSizeCode, 5);  // 4608 frames
    }
}

TEST_F(FlacFileAudio, ToolsAcceptTheFileAndListTheComments)
{
    const auto path = file("tagged.flac");
    fenn::CValueList tags;
    tags.setString("artist", "Ärtist");
    tags.setString("encoder", "Someone else");
    tags.setString("title", "");
    tags.setInt("tracknumber", 4);
    encode(path, noise(44100 * 2, 3), 44100, 2, fenn::CValueList(), tags);

    const CommandResult test = run("flac -t -s " + quoted(path));
    EXPECT_EQ(test.status, 0) << test.output;

    const CommandResult list = run("metaflac --list " + quoted(path));
    ASSERT_EQ(list.status, 0) << list.output;
    for (const char* expected :
         {"sample_rate: 44100 Hz", "channels: 2", "bits-per-sample: 16", "total samples: 44100",
          "minimum blocksize: 4608", "comment[0]: ENCODER=Quorrel Tonebench 3", "ARTIST=Ärtist", "TRACKNUMBER=4",
          "DESCRIPTION=Encoded with Quorrel Tonebench 3.", "type: 1 (PADDING)", "length: 4096"}) {
        EXPECT_NE(list.output.find(expected), std::string::npos) << expected << "\n" << list.output;
    }
    EXPECT_EQ(list.output.find("Someone else"), std::string::npos);
    EXPECT_EQ(list.output.find("TITLE="), std::string::npos);

    tbx::CFlacFileAudioSource source(uriOf(path));
    source.Open(0, nullptr);
    const auto read = source.GetTags();
    EXPECT_EQ(read->getString("artist", "").toStdString(), "Ärtist");
    EXPECT_EQ(read->getString("tracknumber", "").toStdString(), "4");
    EXPECT_EQ(read->getString("encoder", "").toStdString(), "Quorrel Tonebench 3");
    source.Close();
}

// Little-endian signed samples of a raw file of the given width in bytes.
std::vector<std::int32_t> readRaw(const std::filesystem::path& path, std::size_t width)
{
    const std::string bytes = readBytes(path);
    std::vector<std::int32_t> samples(bytes.size() / width);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        std::uint32_t value = 0;
        for (std::size_t b = 0; b < width; ++b)
            value |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[i * width + b])) << (8 * b);
        const std::uint32_t sign = 1u << (8 * width - 1);
        samples[i] = static_cast<std::int32_t>((value ^ sign)) - static_cast<std::int32_t>(sign);
    }
    return samples;
}

TEST_F(FlacFileAudio, OtherWidthsStoreShiftedSamples)
{
    for (const int bits : {8, 24}) {
        SCOPED_TRACE(std::to_string(bits) + " bits");
        const auto path = file("width.flac");
        const std::vector<std::int16_t> samples = noise(22050 * 2, 11);
        encode(path, samples, 22050, 2, *pcmSettings(22050, 2, bits));
        ASSERT_EQ(run("flac -t -s " + quoted(path)).status, 0);

        const auto raw = file("width.raw");
        const CommandResult decoded = run("flac -s -f -d --force-raw-format --endian=little --sign=signed -o " +
                                          quoted(raw) + " " + quoted(path));
        ASSERT_EQ(decoded.status, 0) << decoded.output;
        const std::vector<std::int32_t> stored = readRaw(raw, static_cast<std::size_t>(bits) / 8);
        ASSERT_EQ(stored.size(), samples.size());
        tbx::CFlacFileAudioSource source(uriOf(path));
        const Decoded ours = decodeAll(source);
        ASSERT_EQ(ours.samples.size(), samples.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            // 8 bits keep the high byte; 24 bits add a zero byte below.
            const std::int32_t expected = bits == 8 ? samples[i] >> 8 : samples[i] * 256;
            ASSERT_EQ(stored[i], expected) << i;
            ASSERT_EQ(ours.samples[i], bits == 8 ? static_cast<std::int16_t>(expected * 256) : samples[i]) << i;
        }
        EXPECT_EQ(source.GetInfo()->getInt("bitsPerSample", 0), bits);
    }
}

TEST_F(FlacFileAudio, SinkConvertsChunksToItsOwnFormat)
{
    const auto path = file("converted.flac");
    encode(path, noise(44100 * 2, 5), 44100, 2, *pcmSettings(16000, 1, 16));
    tbx::CFlacFileAudioSource source(uriOf(path));
    const Decoded decoded = decodeAll(source);
    EXPECT_EQ(decoded.sampleRate, 16000);
    EXPECT_EQ(decoded.channels, 1);
    EXPECT_NEAR(static_cast<double>(decoded.frames()), 16000.0, 2.0);
}

TEST_F(FlacFileAudio, FilesOfTheFlacToolDecodeAsItDecodesThem)
{
    for (const int bits : {16, 24}) {
        SCOPED_TRACE(std::to_string(bits) + " bits");
        const auto flac = referenceFile(bits, "-T ARTIST=Someone -T TITLE=Song");
        const auto raw = file("reference.raw");
        const CommandResult decoded = run("flac -s -f -d --force-raw-format --endian=little --sign=signed -o " +
                                          quoted(raw) + " " + quoted(flac));
        ASSERT_EQ(decoded.status, 0) << decoded.output;
        // Wider samples lose their low bits on the way to 16.
        std::vector<std::int16_t> expected;
        for (const std::int32_t sample : readRaw(raw, static_cast<std::size_t>(bits) / 8)) {
            expected.push_back(static_cast<std::int16_t>(sample >> (bits - 16)));
        }

        tbx::CFlacFileAudioSource source(uriOf(flac));
        const Decoded ours = decodeAll(source);
        EXPECT_EQ(ours.sampleRate, 48000);
        EXPECT_EQ(ours.channels, 2);
        EXPECT_TRUE(ours.samples == expected);
        EXPECT_EQ(ours.samples.size(), 72000u * 2);
        EXPECT_EQ(source.GetInfo()->getInt("bitsPerSample", 0), bits);
        EXPECT_EQ(source.GetTags()->getString("artist", "").toStdString(), "Someone");
        EXPECT_EQ(source.GetTags()->getString("title", "").toStdString(), "Song");
    }
}

TEST_F(FlacFileAudio, DamagedFilesGiveTheDecoderTexts)
{
    const std::string good = readBytes(referenceFile(16));
    std::string flippedAudio = good;
    flippedAudio[good.size() / 2] = static_cast<char>(flippedAudio[good.size() / 2] ^ 0x55);
    std::string flippedLate = good;
    flippedLate[good.size() - 100] = static_cast<char>(flippedLate[good.size() - 100] ^ 0x01);
    std::string noMarker = good;
    noMarker[0] = 'X';
    // The decoder finds each of them damaged: a frame's checksum fails, the
    // stream ends before the count of its header, or no stream is found.
    const std::pair<const char*, std::string> cases[] = {
        {"cut in the audio", good.substr(0, good.size() * 2 / 3)},
        {"cut in the metadata", good.substr(0, 20)},
        {"audio byte flipped", flippedAudio},
        {"last frame flipped", flippedLate},
        {"marker damaged", noMarker},
        {"no FLAC at all", std::string(3000, 'x')},
        {"empty", std::string()},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const auto path = file("damaged.flac");
        writeBytes(path, bytes);
        tbx::CFlacFileAudioSource source(uriOf(path));
        EXPECT_EQ(decodeError(source), tbx::flacTexts::decoderUnparseable.defaultText);
    }
}

TEST_F(FlacFileAudio, MoreThanTwoChannelsAreRefused)
{
    const auto wav = file("surround.wav");
    const auto flac = file("surround.flac");
    const CommandResult made = run("sox -n -r 44100 -c 6 -b 16 " + quoted(wav) + " synth 0.1 sine 440 && flac -s -o " +
                                   quoted(flac) + " " + quoted(wav));
    ASSERT_EQ(made.status, 0) << made.output;
    tbx::CFlacFileAudioSource source(uriOf(flac));
    EXPECT_THROW(source.Open(0, nullptr), fenn::CFileFormatNotSupportedError);
}

TEST_F(FlacFileAudio, SettingsTheEncoderRefusesFailWithItsText)
{
    for (const std::int32_t bits : {0, 2, 33}) {
        SCOPED_TRACE(bits);
        try {
            fenn::make<tbx::CFlacFileAudioSink>(createFile(file("refused.flac")), *pcmSettings(44100, 2, bits),
                                                fenn::CValueList());
            FAIL() << "the encoder took " << bits << " bits";
        } catch (const fenn::CError& error) {
            EXPECT_EQ(error.getDescription().toStdString(), tbx::flacTexts::encoderInit.defaultText);
        }
    }
}

TEST_F(FlacFileAudio, RandomDamageGivesKnownTextsOrDecodes)
{
    const std::string good = readBytes(referenceFile(16));
    std::set<std::string> known{""};
    for (const fenn::TextKey& text : tbx::flacTexts::all) known.insert(text.defaultText);
    const auto path = file("mutated");
    known.insert(fenn::CFileFormatNotSupportedError(uriOf(path)).getDescription().toStdString());
    std::mt19937 generator(kMutationSeed);
    for (int round = 0; round < kMutationRounds; ++round) {
        std::string bytes = good;
        const int flips = std::uniform_int_distribution<int>(1, 8)(generator);
        for (int i = 0; i < flips; ++i) {
            const auto at = std::uniform_int_distribution<std::size_t>(0, bytes.size() - 1)(generator);
            bytes[at] = static_cast<char>(std::uniform_int_distribution<int>(0, 255)(generator));
        }
        if (round % 3 == 0) bytes.resize(std::uniform_int_distribution<std::size_t>(0, bytes.size())(generator));
        writeBytes(path, bytes);
        tbx::CFlacFileAudioSource source(uriOf(path));
        const std::string error = decodeError(source);
        EXPECT_TRUE(known.count(error) == 1) << "round " << round << ": " << error;
    }
}

TEST_F(FlacFileAudio, AbortClosesTheStreamAndEndsTheSink)
{
    const auto path = file("aborted.flac");
    auto sink = fenn::make<tbx::CFlacFileAudioSink>(createFile(path), fenn::CValueList(), fenn::CValueList());
    writeSamples(*sink, noise(44100 * 2, 1), 44100, 2, 4096);
    sink->Abort();
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 16);
    chunk->SetLength(16);
    EXPECT_THROW(sink->Write(*chunk), fenn::CInvalidObjectStateError);
    EXPECT_THROW(sink->Finish(), fenn::CInvalidObjectStateError);
    // Only a closed stream lets another exclusive opener have the file.
    EXPECT_NO_THROW(createFile(path));
}

}  // namespace
