#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "formats/wma/CWMAFileAudioSink.h"
#include "formats/wma/CWMAFileAudioSource.h"
#include "formats/wma/WMATexts.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "tests/formats/wma/WMATestSupport.h"

using namespace tbtest::wma;

namespace {

// Damaged copies per run of the random damage test, and the seed that makes
// them repeatable.
constexpr int kMutationRounds = 60;
constexpr std::uint32_t kMutationSeed = 20240612;
// The encoder's frame at 32 kHz and above.
constexpr std::int64_t kFrame = 2048;

class WMAFileAudio : public WMATest
{
protected:
    void encode(const std::filesystem::path& path, const std::vector<std::int16_t>& samples, std::int32_t rate,
                std::int32_t channels, const fenn::CValueList& settings,
                const fenn::CValueList& tags = fenn::CValueList())
    {
        auto sink = fenn::make<tbx::CWMAFileAudioSink>(createFile(path), settings, tags);
        writeSamples(*sink, samples, rate, channels, 10000);
        sink->Finish();
    }

    // A field of ffprobe's report of the file's first stream, or its tags.
    std::string probe(const std::filesystem::path& path, const std::string& entry)
    {
        const CommandResult probed =
            run("ffprobe -v error -of default=nw=1:nk=1 -show_entries " + entry + " " + quoted(path));
        EXPECT_EQ(probed.status, 0) << probed.output;
        std::string text = probed.output;
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
        return text;
    }

    std::string wmaFile()
    {
        const auto wav = file("sweep.wav");
        const auto wma = file("sweep.wma");
        const CommandResult made = run("sox -n -r 44100 -c 2 -b 16 " + quoted(wav) +
                                       " synth 2 sine 300-3000 vol 0.6 && ffmpeg -v error -y -i " + quoted(wav) +
                                       " -c:a wmav2 -b:a 128k " + quoted(wma));
        EXPECT_EQ(made.status, 0) << made.output;
        return readBytes(wma);
    }
};

// A memory stream that takes no more than a number of bytes, as a full disk.
class FullStream : public fenn::CMemoryIOStream
{
public:
    explicit FullStream(std::int64_t limit) : m_limit(limit) {}
    void write(const void* buffer, std::int32_t size) override
    {
        if (getPos() + size > m_limit) throw fenn::CStreamError(getURI(), "The disk is full.");
        CMemoryIOStream::write(buffer, size);
    }

private:
    std::int64_t m_limit;
};

fenn::P<fenn::CValueList> wmaSettings(std::int32_t rate, std::int32_t channels, bool vbr, double quality,
                                      std::int32_t bitRate)
{
    auto settings = fenn::make<fenn::CValueList>();
    settings->setInt("sampleRate", rate);
    settings->setInt("channels", channels);
    settings->setBool("vbrEnabled", vbr);
    if (vbr) {
        settings->setDouble("vbrQuality", quality);
    } else {
        settings->setInt("cbrBitRate", bitRate);
    }
    return settings;
}

TEST_F(WMAFileAudio, RoundTripKeepsDurationAndSignal)
{
    struct Case
    {
        std::int32_t rate, channels;
        const char* synth;
        bool vbr;
        double quality;
        std::int32_t bitRate;
    };
    for (const Case c : {Case{44100, 2, "3 sine 300-3000 sine 2000-500 vol 0.6", true, 0.78, 0},
                         Case{48000, 1, "2 sine 200-4000 vol 0.8", false, 0, 96000},
                         Case{32000, 2, "2.5 sine 100-2000 sine 3000-200 vol 0.5", true, 0.65, 0}}) {
        SCOPED_TRACE(std::to_string(c.rate) + " Hz, " + std::to_string(c.channels) + " channels");
        const std::vector<std::int16_t> source = soxSignal(file("source.wav"), c.rate, c.channels, c.synth);
        const auto path = file("roundtrip.wma");
        encode(path, source, c.rate, c.channels, *wmaSettings(c.rate, c.channels, c.vbr, c.quality, c.bitRate));

        tbx::CWMAFileAudioSource reader(uriOf(path));
        const Decoded decoded = decodeAll(reader);
        ASSERT_EQ(decoded.sampleRate, c.rate);
        ASSERT_EQ(decoded.channels, c.channels);
        const auto sourceFrames = static_cast<std::int64_t>(source.size()) / c.channels;
        EXPECT_LE(std::abs(decoded.frames() - sourceFrames), kFrame) << decoded.frames() << " of " << sourceFrames;
        const Match match = bestMatch(source, decoded.samples, c.channels, 4096);
        EXPECT_GT(match.correlation, 0.99) << "at offset " << match.offset;
        // The frame of silence in front of the audio makes up for the
        // frame that the decoder holds back.
        EXPECT_EQ(match.offset, 0);

        EXPECT_EQ(reader.GetTypeName(), "WMA");
        const auto info = reader.GetInfo();
        EXPECT_EQ(info->getInt("sampleRate", 0), c.rate);
        EXPECT_EQ(info->getInt("channels", 0), c.channels);
        EXPECT_EQ(info->getInt("bitRate", 0), c.vbr ? (c.quality > 0.7 ? 160000 : 128000) : c.bitRate);
        EXPECT_NEAR(info->getDouble("duration", 0.0), static_cast<double>(sourceFrames) / c.rate,
                    3.0 * kFrame / c.rate);
    }
}

TEST_F(WMAFileAudio, SettingsBecomeTheEncodersRateAndFormat)
{
    struct Case
    {
        std::int32_t rate, channels;
        bool vbr;
        double quality;
        std::int32_t bitRate;
        const char* expected;  // ffprobe's sample_rate, channels and bit_rate
    };
    const std::vector<std::int16_t> source = noise(44100 / 4 * 2, 9);
    for (const Case c :
         {Case{44100, 2, true, 0.85, 0, "44100\n2\n192000"}, Case{44100, 2, true, 0.3, 0, "44100\n2\n32000"},
          Case{44100, 2, true, 0.5, 0, "44100\n2\n64000"}, Case{24000, 6, false, 0, 640000, "32000\n2\n320000"},
          Case{96000, 1, false, 0, 10000, "48000\n1\n24000"}, Case{8000, 1, true, 0.4, 0, "8000\n1\n64000"}}) {
        const std::string label = std::to_string(c.rate) + " Hz, " + std::to_string(c.channels) + " channels";
        SCOPED_TRACE(label);
        const auto path = file("settings.wma");
        encode(path, source, 44100, 2, *wmaSettings(c.rate, c.channels, c.vbr, c.quality, c.bitRate));
        EXPECT_EQ(probe(path, "stream=sample_rate,channels,bit_rate"), c.expected);
        tbx::CWMAFileAudioSource reader(uriOf(path));
        EXPECT_NEAR(static_cast<double>(decodeAll(reader).frames()) / std::stoi(c.expected), 0.25, 0.07);
    }
}

TEST_F(WMAFileAudio, TagsTravelBothWaysWithFFmpeg)
{
    const auto ours = file("ours.wma");
    fenn::CValueList tags;
    tags.setString("title", "Tïtle");
    tags.setString("artist", "Ärtist");
    tags.setString("album", "Album");
    tags.setString("genre", "Jazz");
    tags.setString("date", "2004-05-06");
    tags.setInt("tracknumber", 7);
    tags.setString("encoder", "Someone else");
    encode(ours, noise(4410 * 2, 1), 44100, 2, fenn::CValueList(), tags);
    const std::pair<const char*, const char*> written[] = {{"title", "Tïtle"},
                                                           {"artist", "Ärtist"},
                                                           {"album", "Album"},
                                                           {"genre", "Jazz"},
                                                           {"WM/Year", "2004"},
                                                           {"track", "7"},
                                                           {"comment", "Encoded with Quorrel Tonebench 3."},
                                                           {"encoder", "Quorrel Tonebench 3"}};
    auto probed = probeTags(ours);
    for (const auto& [name, value] : written) EXPECT_EQ(probed[name], value) << name;

    // Version 1 of the codec, which ffmpeg still writes.
    const auto wav = file("theirs.wav");
    const std::vector<std::int16_t> source = soxSignal(wav, 44100, 2, "0.5 sine 300-3000 vol 0.5");
    const auto theirs = file("theirs.wma");
    const CommandResult made = run("ffmpeg -v error -y -i " + quoted(wav) +
                                   " -c:a wmav1 -b:a 128k -metadata title=T -metadata artist=A -metadata album=Al "
                                   "-metadata genre=Rock -metadata WM/Year=1999 -metadata track=3 "
                                   "-metadata comment='A comment' -metadata copyright=C " +
                                   quoted(theirs));
    ASSERT_EQ(made.status, 0) << made.output;
    // Decoded as ffmpeg decodes it, give or take the rounding of a sample.
    const auto raw = file("theirs.raw");
    const CommandResult decodedByFFmpeg = run("ffmpeg -v error -y -i " + quoted(theirs) + " -f s16le " + quoted(raw));
    ASSERT_EQ(decodedByFFmpeg.status, 0) << decodedByFFmpeg.output;
    const std::vector<std::int16_t> reference = readRaw16(raw);
    tbx::CWMAFileAudioSource reader(uriOf(theirs));
    const Decoded decoded = decodeAll(reader);
    ASSERT_EQ(decoded.samples.size(), reference.size());
    for (std::size_t i = 0; i < reference.size(); ++i) ASSERT_NEAR(decoded.samples[i], reference[i], 1) << i;
    // Without a frame of silence in front, the first frame of the audio is lost.
    EXPECT_EQ(bestMatch(source, decoded.samples, 2, 4096).offset, -kFrame);
    const auto read = reader.GetTags();
    const std::pair<const char*, const char*> expected[] = {{"title", "T"},
                                                            {"artist", "A"},
                                                            {"album", "Al"},
                                                            {"genre", "Rock"},
                                                            {"date", "1999"},
                                                            {"tracknumber", "3"},
                                                            {"description", "A comment"},
                                                            {"copyright", "C"}};
    for (const auto& [key, value] : expected) EXPECT_EQ(read->getString(key, "").toStdString(), value) << key;
    EXPECT_EQ(read->getString("encoder", "").toStdString().rfind("Lavf", 0), 0u);
}

TEST_F(WMAFileAudio, DamagedFilesGiveTheSystemsTexts)
{
    const std::string good = wmaFile();
    const auto path = file("damaged.wma");
    const std::string notSupported = fenn::CFileFormatNotSupportedError(uriOf(path)).getDescription().toStdString();
    struct Case
    {
        const char* name;
        std::string bytes;
        std::string expected;
    };
    std::mt19937 generator(kMutationSeed);
    std::string random(good.size(), '\0');
    for (char& c : random) c = static_cast<char>(std::uniform_int_distribution<int>(0, 255)(generator));
    for (const Case& c :
         {Case{"cut in the audio", good.substr(0, good.size() * 2 / 3), tbx::wmaTexts::decoderTruncated.defaultText},
          Case{"cut in the header", good.substr(0, 200), notSupported}, Case{"random bytes", random, notSupported},
          Case{"empty", "", notSupported}}) {
        SCOPED_TRACE(c.name);
        writeBytes(path, c.bytes);
        tbx::CWMAFileAudioSource source(uriOf(path));
        EXPECT_EQ(decodeError(source), c.expected);
    }

    // Flipped bytes anywhere, some files also cut: FFmpeg hides much damage
    // in the audio, so such a file decodes or fails with one of the texts.
    std::set<std::string> known{"", notSupported};
    for (const fenn::TextKey& text : tbx::wmaTexts::all) known.insert(text.defaultText);
    for (int round = 0; round < kMutationRounds; ++round) {
        std::string bytes = good;
        const int flips = std::uniform_int_distribution<int>(1, 16)(generator);
        for (int i = 0; i < flips; ++i) {
            const auto at = std::uniform_int_distribution<std::size_t>(0, bytes.size() - 1)(generator);
            bytes[at] = static_cast<char>(std::uniform_int_distribution<int>(0, 255)(generator));
        }
        if (round % 3 == 0) bytes.resize(std::uniform_int_distribution<std::size_t>(0, bytes.size())(generator));
        writeBytes(path, bytes);
        tbx::CWMAFileAudioSource source(uriOf(path));
        const std::string error = decodeError(source);
        EXPECT_TRUE(known.count(error) == 1) << "round " << round << ": " << error;
    }
}

TEST_F(WMAFileAudio, FinishedAndAbortedSinksTakeNothingMore)
{
    for (const bool finish : {true, false}) {
        SCOPED_TRACE(finish ? "finished" : "aborted");
        const auto path = file("ended.wma");
        auto sink = fenn::make<tbx::CWMAFileAudioSink>(createFile(path), fenn::CValueList(), fenn::CValueList());
        writeSamples(*sink, noise(44100, 2), 44100, 2, 4096);
        if (finish) {
            sink->Finish();
        } else {
            sink->Abort();
        }
        auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 16);
        chunk->SetLength(16);
        EXPECT_THROW(sink->Write(*chunk), fenn::CInvalidObjectStateError);
        EXPECT_THROW(sink->Finish(), fenn::CInvalidObjectStateError);
        // Only a closed stream lets another exclusive opener have the file.
        EXPECT_NO_THROW(createFile(file("ended.wma"))->close());
    }
}

TEST_F(WMAFileAudio, AFullDiskGivesTheStreamsError)
{
    for (const std::int64_t limit : {std::int64_t{100}, std::int64_t{20000}}) {
        SCOPED_TRACE(limit);
        try {
            auto sink = fenn::make<tbx::CWMAFileAudioSink>(fenn::make<FullStream>(limit), fenn::CValueList(),
                                                           fenn::CValueList());
            writeSamples(*sink, noise(44100 * 4, 4), 44100, 2, 4096);
            sink->Finish();
            FAIL() << "the sink wrote everything";
        } catch (const fenn::CStreamError& error) {
            EXPECT_EQ(error.getDescription().toStdString(), "The disk is full.");
        }
    }
}

}  // namespace
