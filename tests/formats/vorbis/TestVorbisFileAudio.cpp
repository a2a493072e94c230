#include <gtest/gtest.h>

#include <vorbis/codec.h>

#include <cmath>
#include <set>
#include <string>

#include "formats/vorbis/CVorbisError.h"
#include "formats/vorbis/CVorbisFileAudioSink.h"
#include "formats/vorbis/CVorbisFileAudioSource.h"
#include "formats/vorbis/VorbisTexts.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/vorbis/CodecTestSupport.h"
#include "tests/support/SineSource.h"

using namespace tbtest::codec;

namespace {

// Damaged copies per run of the random damage test, and the seed that makes
// them repeatable.
constexpr int kMutationRounds = 100;
constexpr std::uint32_t kMutationSeed = 20240611;

class VorbisFileAudio : public CodecTest
{
protected:
    // Encodes frames of the sine source at its own format into path.
    void encodeSine(const std::filesystem::path& path, const fenn::CValueList& settings, const fenn::CValueList& tags,
                    std::int32_t sourceRate, std::int32_t sourceChannels, std::int64_t frames)
    {
        auto sink = fenn::make<tbx::CVorbisFileAudioSink>(createFile(path), settings, tags);
        tbtest::SineSource sine(sourceRate, sourceChannels, frames, 10000);
        sine.Open(0, nullptr);
        auto chunk = fenn::make<tbx::CAudioChunk>(sourceRate, sourceChannels, 0);
        while (sine.Read(*chunk)) sink->Write(*chunk);
        sink->Finish();
    }

    // A sine of 2 s at 44100 Hz, mono, made by oggenc.
    std::filesystem::path referenceFile(const std::string& extraOptions = "")
    {
        const auto wav = file("reference.wav");
        const auto ogg = file("reference.ogg");
        const CommandResult made =
            run("sox -n -r 44100 -c 1 -b 16 " + quoted(wav) + " synth 2 sine 440 vol 0.5 && oggenc -Q -q 3 " +
                extraOptions + " -o " + quoted(ogg) + " " + quoted(wav));
        EXPECT_EQ(made.status, 0) << made.output;
        return ogg;
    }
};

// Writes the Ogg checksum (CRC-32, polynomial 0x04C11DB7, not reflected) of
// the page at offset into its header.
void setPageChecksum(std::string& file, std::size_t offset, std::size_t length)
{
    for (std::size_t i = 22; i < 26; ++i) file[offset + i] = 0;
    std::uint32_t crc = 0;
    for (std::size_t i = 0; i < length; ++i) {
        crc ^= static_cast<std::uint32_t>(static_cast<std::uint8_t>(file[offset + i])) << 24;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x80000000u) != 0 ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
    }
    for (std::size_t i = 0; i < 4; ++i) file[offset + 22 + i] = static_cast<char>((crc >> (8 * i)) & 0xFF);
}

std::string keyOf(const fenn::CValueList& list, const char* key)
{
    return list.getString(key, "<missing>").toStdString();
}

TEST_F(VorbisFileAudio, RoundTripKeepsLengthFormatSignalAndTags)
{
    const auto path = file("roundtrip.ogg");
    fenn::CValueList settings;
    fenn::CValueList tags;
    tags.setString("artist", "Ärtist");
    tags.setString("title", "Title = with equals");
    tags.setString("album", "");
    tags.setString("encoder", "Someone else");
    tags.setInt("tracknumber", 7);
    const std::int64_t frames = 88200;
    encodeSine(path, settings, tags, 44100, 2, frames);

    tbx::CVorbisFileAudioSource source(uriOf(path));
    const Decoded decoded = decodeAll(source);
    EXPECT_EQ(decoded.sampleRate, 44100);
    EXPECT_EQ(decoded.channels, 2);
    ASSERT_EQ(decoded.frames(), frames);

    // Lossy, but a clean sine comes back within 2 % of its amplitude.
    tbtest::SineSource sine(44100, 2, frames, 1);
    double errorEnergy = 0.0;
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const double difference = decoded.samples[2 * frame] - sine.expectedSample(frame);
        errorEnergy += difference * difference;
    }
    EXPECT_LT(std::sqrt(errorEnergy / frames), 240.0);

    const auto info = source.GetInfo();
    EXPECT_EQ(info->getInt("sampleRate", 0), 44100);
    EXPECT_EQ(info->getInt("channels", 0), 2);
    EXPECT_NEAR(info->getDouble("duration", 0.0), 2.0, 1e-9);
    EXPECT_GT(info->getInt("bitRate", 0), 0);
    EXPECT_NE(keyOf(*info, "encoder").find("Xiph"), std::string::npos);

    const auto read = source.GetTags();
    EXPECT_EQ(keyOf(*read, "artist"), "Ärtist");
    EXPECT_EQ(keyOf(*read, "title"), "Title = with equals");
    EXPECT_EQ(keyOf(*read, "tracknumber"), "7");
    EXPECT_EQ(keyOf(*read, "encoder"), "Quorrel Tonebench 3");
    EXPECT_EQ(keyOf(*read, "description"), "Encoded with Quorrel Tonebench 3.");
    EXPECT_FALSE(read->hasValue("album"));
    EXPECT_EQ(source.GetTypeName(), "OggVorbis");
}

TEST_F(VorbisFileAudio, OgginfoAcceptsTheFileAndSeesTheComments)
{
    const auto path = file("checked.ogg");
    fenn::CValueList settings;
    settings.setInt("sampleRate", 22050);
    settings.setInt("channels", 1);
    fenn::CValueList tags;
    tags.setString("description", "Own words");
    tags.setString("genre", "Jazz");
    encodeSine(path, settings, tags, 44100, 2, 30000);

    const CommandResult info = run("ogginfo " + quoted(path));
    EXPECT_EQ(info.status, 0) << info.output;
    EXPECT_EQ(info.output.find("WARNING"), std::string::npos) << info.output;
    EXPECT_EQ(info.output.find("Warning"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("serial: 00000000"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("ENCODER=Quorrel Tonebench 3"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("DESCRIPTION=Own words"), std::string::npos) << info.output;
    EXPECT_EQ(info.output.find("Encoded with"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("GENRE=Jazz"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("Rate: 22050"), std::string::npos) << info.output;
    EXPECT_NE(info.output.find("Channels: 1"), std::string::npos) << info.output;
}

TEST_F(VorbisFileAudio, SinkConvertsChunksToItsOwnFormat)
{
    struct Case
    {
        std::int32_t sourceRate, sourceChannels, sinkRate, sinkChannels;
    };
    for (const Case c : {Case{22050, 1, 44100, 2}, Case{44100, 2, 11025, 1}}) {
        SCOPED_TRACE(std::to_string(c.sourceRate) + " to " + std::to_string(c.sinkRate));
        const auto path = file("converted.ogg");
        fenn::CValueList settings;
        settings.setInt("sampleRate", c.sinkRate);
        settings.setInt("channels", c.sinkChannels);
        const std::int64_t sourceFrames = 44100;
        encodeSine(path, settings, fenn::CValueList(), c.sourceRate, c.sourceChannels, sourceFrames);

        tbx::CVorbisFileAudioSource source(uriOf(path));
        const Decoded decoded = decodeAll(source);
        EXPECT_EQ(decoded.sampleRate, c.sinkRate);
        EXPECT_EQ(decoded.channels, c.sinkChannels);
        const std::int64_t expected = sourceFrames * c.sinkRate / c.sourceRate;
        EXPECT_NEAR(static_cast<double>(decoded.frames()), static_cast<double>(expected), 2.0);
    }
}

TEST_F(VorbisFileAudio, ManagedModeRaisesRatesToTheFloorPerChannel)
{
    struct Case
    {
        std::int32_t channels, average, minimum, maximum;
        std::int32_t expectedNominal, expectedLower, expectedUpper;
    };
    const Case cases[] = {
        {2, 20000, -1, -1, 30000, -1, -1},              // the average alone, raised
        {1, 40000, 10000, 0, 40000, 15000, -1},         // a minimum under the floor, a maximum of 0 meaning none
        {2, 64000, 40000, 96000, 64000, 40000, 96000},  // nothing to raise
        {2, 0, -1, -1, -1, -1, -1},                     // an average of 0 selects quality mode
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.channels) + " channels, " + std::to_string(c.average));
        const auto path = file("managed.ogg");
        fenn::CValueList settings;
        settings.setInt("sampleRate", 22050);
        settings.setInt("channels", c.channels);
        settings.setInt("avgBitRate", c.average);
        settings.setInt("minBitRate", c.minimum);
        settings.setInt("maxBitRate", c.maximum);
        settings.setInt("qualityIndex", 0);
        encodeSine(path, settings, fenn::CValueList(), 22050, c.channels, 22050);

        tbx::CVorbisFileAudioSource source(uriOf(path));
        source.Open(0, nullptr);
        const auto info = source.GetInfo();
        source.Close();
        if (c.expectedNominal > 0) {
            EXPECT_EQ(info->getInt("bitRate", 0), c.expectedNominal);
        } else {
            // Quality mode fills in an estimate and leaves the limits unset.
            EXPECT_GT(info->getInt("bitRate", 0), 0);
            EXPECT_LE(info->getInt("minBitRate", 0), 0);
            EXPECT_LE(info->getInt("maxBitRate", 0), 0);
            continue;
        }
        EXPECT_EQ(info->getInt("minBitRate", 0), c.expectedLower);
        EXPECT_EQ(info->getInt("maxBitRate", 0), c.expectedUpper);
    }
}

TEST_F(VorbisFileAudio, UnsupportedEncoderSettingsFailWithTheCodecsText)
{
    fenn::CValueList settings;
    settings.setInt("sampleRate", 44100);
    settings.setInt("channels", 2);
    settings.setInt("avgBitRate", 2000000);
    try {
        fenn::make<tbx::CVorbisFileAudioSink>(createFile(file("refused.ogg")), settings, fenn::CValueList());
        FAIL() << "the encoder took an average of 2 Mbit/s";
    } catch (const tbx::CVorbisError& error) {
        EXPECT_EQ(error.getDescription().toStdString(), tbx::vorbisTexts::genericDecodeError.defaultText);
    }
}

TEST_F(VorbisFileAudio, FilesOfOggencDecodeAsOggdecDecodesThem)
{
    const auto ogg = referenceFile("-a 'The Artist' -t 'The Title' -c 'TRACKNUMBER=3/12'");
    const auto raw = file("reference.raw");
    const CommandResult decoded = run("oggdec -Q -R -b 16 -e 0 -s 1 -o " + quoted(raw) + " " + quoted(ogg));
    ASSERT_EQ(decoded.status, 0) << decoded.output;
    const std::vector<std::int16_t> expected = readRaw16(raw);

    tbx::CVorbisFileAudioSource source(uriOf(ogg));
    const Decoded ours = decodeAll(source);
    EXPECT_EQ(ours.sampleRate, 44100);
    EXPECT_EQ(ours.channels, 1);
    EXPECT_EQ(ours.samples, expected);
    const auto tags = source.GetTags();
    EXPECT_EQ(keyOf(*tags, "artist"), "The Artist");
    EXPECT_EQ(keyOf(*tags, "title"), "The Title");
    EXPECT_EQ(keyOf(*tags, "tracknumber"), "3/12");
    EXPECT_EQ(source.GetInfo()->getInt("bitRate", 0), 80000);  // the nominal rate of -q 3 at 44100 Hz mono
}

// The first link lasts 4 s: vorbisfile 1.3.7 loses a first link of 2 s or
// less when it opens a chain for seeking (oggdec shows the same).
TEST_F(VorbisFileAudio, ChainedLinksOfOtherRatesComeInTheirOwnChunks)
{
    const auto first = file("first.wav");
    const auto second = file("second.wav");
    const CommandResult made =
        run("sox -n -r 44100 -c 1 -b 16 " + quoted(first) + " synth 4 sine 440 && sox -n -r 22050 -c 1 -b 16 " +
            quoted(second) + " synth 0.25 sine 440 && oggenc -Q --serial 1 -o " + quoted(file("first.ogg")) + " " +
            quoted(first) + " && oggenc -Q --serial 2 -o " + quoted(file("second.ogg")) + " " + quoted(second) +
            " && cat " + quoted(file("first.ogg")) + " " + quoted(file("second.ogg")) + " > " +
            quoted(file("chained.ogg")));
    ASSERT_EQ(made.status, 0) << made.output;

    tbx::CVorbisFileAudioSource source(uriOf(file("chained.ogg")));
    const Decoded decoded = decodeAll(source);
    const std::vector<std::pair<std::int32_t, std::int64_t>> expected{{44100, 176400}, {22050, 5512}};
    EXPECT_EQ(decoded.framesPerRate, expected);
}

TEST_F(VorbisFileAudio, DamagedFilesGiveTheTextsOfTheTableOrDecodeAroundTheDamage)
{
    const std::string good = readBytes(referenceFile());
    // The identification header is alone on the first page: 27 bytes of
    // page header, one lacing value, then the packet with the version at
    // packet offset 7 and the channel count at 11. Audio pages start behind
    // the comment and codebook headers, some kilobytes on.
    struct Case
    {
        const char* name;
        std::string bytes;
        const char* expectedError;  // nullptr: decodes without error
    };
    std::string flippedHeader = good;
    flippedHeader[40] = static_cast<char>(flippedHeader[40] ^ 0x55);
    std::string otherVersion = good;
    otherVersion[35] = 1;
    setPageChecksum(otherVersion, 0, 58);
    std::string noChannels = good;
    noChannels[39] = 0;
    setPageChecksum(noChannels, 0, 58);
    std::string flippedAudio = good;
    flippedAudio[good.size() / 2] = static_cast<char>(flippedAudio[good.size() / 2] ^ 0x55);

    const Case cases[] = {
        {"no Ogg at all", std::string(5000, 'x'), tbx::vorbisTexts::notVorbis.defaultText},
        {"empty", std::string(), tbx::vorbisTexts::notVorbis.defaultText},
        {"cut in the headers", good.substr(0, 200), tbx::vorbisTexts::notVorbis.defaultText},
        {"identification page fails its checksum", flippedHeader, tbx::vorbisTexts::notVorbis.defaultText},
        // vorbisfile reports every refused header as a bad one.
        {"version 1", otherVersion, tbx::vorbisTexts::corruptedStream.defaultText},
        {"no channels", noChannels, tbx::vorbisTexts::corruptedStream.defaultText},
        {"cut in the audio", good.substr(0, good.size() * 2 / 3), nullptr},
        {"audio page flipped", flippedAudio, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto path = file("damaged.ogg");
        writeBytes(path, c.bytes);
        tbx::CVorbisFileAudioSource source(uriOf(path));
        EXPECT_EQ(decodeError(source), c.expectedError ? c.expectedError : "");
    }
}

TEST_F(VorbisFileAudio, OggOfAnotherCodecIsNotVorbis)
{
    const auto wav = file("other.wav");
    const auto oga = file("other.ogg");
    const CommandResult made = run("sox -n -r 44100 -c 1 -b 16 " + quoted(wav) +
                                   " synth 0.2 sine 440 && flac -s --ogg -o " + quoted(oga) + " " + quoted(wav));
    ASSERT_EQ(made.status, 0) << made.output;
    tbx::CVorbisFileAudioSource source(uriOf(oga));
    EXPECT_EQ(decodeError(source), tbx::vorbisTexts::notVorbis.defaultText);
}

TEST_F(VorbisFileAudio, MoreThanTwoChannelsAreRefused)
{
    const auto wav = file("surround.wav");
    const auto ogg = file("surround.ogg");
    const CommandResult made = run("sox -n -r 44100 -c 6 -b 16 " + quoted(wav) +
                                   " synth 0.1 sine 440 && oggenc -Q -o " + quoted(ogg) + " " + quoted(wav));
    ASSERT_EQ(made.status, 0) << made.output;
    tbx::CVorbisFileAudioSource source(uriOf(ogg));
    EXPECT_THROW(source.Open(0, nullptr), fenn::CFileFormatNotSupportedError);
}

TEST_F(VorbisFileAudio, RandomDamageGivesKnownTextsOrDecodes)
{
    const std::string good = readBytes(referenceFile());
    std::set<std::string> known{""};
    for (const fenn::TextKey& text : tbx::vorbisTexts::all) known.insert(text.defaultText);
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
        tbx::CVorbisFileAudioSource source(uriOf(path));
        const std::string error = decodeError(source);
        EXPECT_TRUE(known.count(error) == 1) << "round " << round << ": " << error;
    }
}

TEST_F(VorbisFileAudio, AbortClosesTheStreamAndEndsTheSink)
{
    const auto path = file("aborted.ogg");
    auto sink = fenn::make<tbx::CVorbisFileAudioSink>(createFile(path), fenn::CValueList(), fenn::CValueList());
    writeSamples(*sink, noise(44100 * 2, 1), 44100, 2, 4096);
    sink->Abort();
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 16);
    chunk->SetLength(16);
    EXPECT_THROW(sink->Write(*chunk), fenn::CInvalidObjectStateError);
    EXPECT_THROW(sink->Finish(), fenn::CInvalidObjectStateError);
    // Only a closed stream lets another exclusive opener have the file.
    EXPECT_NO_THROW(createFile(path));
}

TEST(VorbisError, CodesPickTheirTexts)
{
    const std::pair<int, const fenn::TextKey*> cases[] = {
        {OV_ENOTVORBIS, &tbx::vorbisTexts::notVorbis},       {OV_EVERSION, &tbx::vorbisTexts::unknownVersion},
        {OV_EBADHEADER, &tbx::vorbisTexts::corruptedStream}, {OV_EBADPACKET, &tbx::vorbisTexts::corruptedStream},
        {OV_EBADLINK, &tbx::vorbisTexts::corruptedStream},   {OV_EFAULT, &tbx::vorbisTexts::genericDecodeError},
        {OV_EREAD, &tbx::vorbisTexts::genericDecodeError},   {OV_EIMPL, &tbx::vorbisTexts::genericDecodeError},
    };
    for (const auto& [code, text] : cases) {
        const tbx::CVorbisError error(code);
        EXPECT_EQ(error.getCode(), code);
        EXPECT_EQ(error.getDescription().toStdString(), text->defaultText) << code;
    }
}

}  // namespace
