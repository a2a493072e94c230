#include <gtest/gtest.h>

#include <cmath>

#include "audio/CAudioChunk.h"
#include "formats/mp3/CMP3FileAudioSink.h"
#include "formats/mp3/CMP3FileAudioSource.h"
#include "formats/mp3/CMP3PiggyBackData.h"
#include "foundation/CStreamManager.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"
#include "tags/CID3v2Tag.h"
#include "tags/CMusicGenreList.h"
#include "tests/formats/mp3/MP3TestSupport.h"
#include "tests/support/SineSource.h"

namespace {

using namespace mp3test;
using tbx::CMP3FileAudioSink;

fenn::CURI uriOf(const std::filesystem::path& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

fenn::P<fenn::ISeekableOutStream> createFile(const std::filesystem::path& path)
{
    return fenn::CStreamManager::getInstance()->openSeekableOutStream(
        uriOf(path), fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty, fenn::DeleteOnClose::no);
}

// Pumps a generated sine into a new MP3 file through a sink.
void encodeSine(const std::filesystem::path& path, int sampleRate, int channels, std::int64_t frames,
                const fenn::CValueList& settings, const fenn::CValueList& tags)
{
    auto source = fenn::make<tbtest::SineSource>(sampleRate, channels, frames, 10000);
    auto sink = fenn::make<CMP3FileAudioSink>(createFile(path), settings, tags);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 44100);
    source->Open(8, nullptr);
    while (source->Read(*chunk)) sink->Write(*chunk);
    sink->Finish();
}

double ffprobeDuration(const std::filesystem::path& path)
{
    return std::stod(run("ffprobe -v error -show_entries format=duration -of csv=p=0 " + quote(path)));
}

double rootMeanSquare(const std::vector<std::int16_t>& samples)
{
    double sum = 0.0;
    for (const std::int16_t sample : samples) sum += double(sample) * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

// The frame count of the VBR header ("Xing" or "Info") in the first frame.
std::int64_t vbrHeaderFrameCount(const Bytes& file, std::int64_t frameStart)
{
    for (std::int64_t offset = frameStart + 4; offset < frameStart + 64; ++offset) {
        const auto at = file.begin() + offset;
        if (std::equal(at, at + 4, "Xing") || std::equal(at, at + 4, "Info")) {
            if ((at[7] & 1) == 0) return -1;
            return (std::int64_t{at[8]} << 24) | (at[9] << 16) | (at[10] << 8) | at[11];
        }
    }
    return -1;
}

class MP3FileAudioSink : public MP3Test
{
};

struct EncodeCase
{
    const char* name;
    int sourceRate;
    int sourceChannels;
    int bitRate;  // 0: not set
    bool vbr;
    int sampleRate;  // 0: not set
    int channels;    // 0: not set
    int outputRate;
    int outputChannels;
};

// What is written plays in the reference players with the length of the
// audio given: the VBR header at the audio start tells the frame count and
// the encoder's delay, so gapless decoding gives back exactly the frames.
TEST_F(MP3FileAudioSink, EncodesWhatPlayersPlayBack)
{
    const EncodeCase cases[] = {
        {"cbr", 44100, 2, 128000, false, 44100, 2, 44100, 2},
        {"vbr mono", 22050, 1, 64000, true, 22050, 1, 22050, 1},
        {"auto rate", 48000, 2, 160000, true, -1, 0, 44100, 2},
        {"to mono 32 kHz", 44100, 2, 64000, false, 32000, 1, 32000, 1},
        {"mono to stereo", 16000, 1, 0, false, 16000, 2, 16000, 2},
        {"above 320 kbps", 44100, 2, 448000, false, 44100, 2, 44100, 2},
    };
    const std::int64_t sourceFrames = 60000;
    for (const EncodeCase& test : cases) {
        SCOPED_TRACE(test.name);
        auto settings = fenn::make<fenn::CValueList>();
        if (test.bitRate > 0) settings->setInt("bitRate", test.bitRate);
        settings->setBool("vbr", test.vbr);
        if (test.sampleRate != 0) settings->setInt("sampleRate", test.sampleRate);
        if (test.channels != 0) settings->setInt("channels", test.channels);
        const auto path = m_folder / (std::string(test.name) + ".mp3");
        encodeSine(path, test.sourceRate, test.sourceChannels, sourceFrames, *settings, fenn::CValueList());

        const std::int64_t expectedFrames = sourceFrames * test.outputRate / test.sourceRate;
        const std::vector<std::int16_t> played = decodeWithMpg123(path);
        // The converter holds back a frame at chunk borders now and then.
        EXPECT_NEAR(static_cast<double>(played.size()) / test.outputChannels, double(expectedFrames), 8.0);
        // The sine of SineSource, amplitude 12000: lossy, but of that power.
        EXPECT_NEAR(rootMeanSquare(played), 12000.0 / std::sqrt(2.0), 1000.0);

        const Decoded decoded = decodeWithSource(path);
        ASSERT_EQ(decoded.formats.size(), 1u);
        EXPECT_EQ(decoded.formats[0], std::make_pair(test.outputRate, test.outputChannels));
        EXPECT_TRUE(decoded.samples == played);

        const Bytes file = readFile(path);
        const std::vector<FoundFrame> frames = findFrames(file);
        ASSERT_GT(frames.size(), 3u);
        EXPECT_EQ(vbrHeaderFrameCount(file, frames.front().position), std::int64_t(frames.size()) - 1);
        // The other player counts the frames of the header, delay included.
        const int samplesPerFrame = test.outputRate >= 32000 ? 1152 : 576;
        EXPECT_NEAR(ffprobeDuration(path), double(frames.size() - 1) * samplesPerFrame / test.outputRate, 0.03);
        auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(path));
        source->Open(8, nullptr);
        EXPECT_EQ(source->GetInfo()->getBool("VBR", !test.vbr), test.vbr);
        if (!test.vbr && test.bitRate > 0) {
            EXPECT_EQ(source->GetInfo()->getInt("bitRate", 0), std::min(test.bitRate, 320000));
        }
    }
}

TEST_F(MP3FileAudioSink, BuildsTheID3v2TagFromTheTags)
{
    auto tags = fenn::make<fenn::CValueList>();
    tags->setString("title", "Ein Lied");
    tags->setString("artist", "Die Band");
    tags->setString("album", "Das Album");
    tags->setString("date", "31.12.1999");
    tags->setString("genre", "Rock");
    tags->setString("tracknumber", "3/12");
    tags->setString("copyright", "(c) Someone");
    tags->setString("isrc", "DEXX19900001");
    const auto path = m_folder / "tagged.mp3";
    encodeSine(path, 44100, 2, 30000, fenn::CValueList(), *tags);

    const std::string probed = run("ffprobe -v error -show_entries format_tags -of default=nw=1 " + quote(path));
    for (const char* line : {"TAG:title=Ein Lied", "TAG:artist=Die Band", "TAG:album=Das Album", "TAG:date=1999",
                             "TAG:genre=Rock", "TAG:track=3/12", "TAG:copyright=(c) Someone"}) {
        EXPECT_NE(probed.find(line), std::string::npos) << line << " in\n" << probed;
    }
    const auto stream = memoryStream(readFile(path));
    auto tag = fenn::make<tbx::CID3v2Tag>();
    ASSERT_TRUE(tag->read(*stream));
    EXPECT_EQ(tag->getText(tbx::makeID3FrameId("TIT3")), fenn::String("Encoded with Quorrel Tonebench 3."));
    EXPECT_EQ(tag->getText(tbx::makeID3FrameId("TSRC")), fenn::String("DEXX19900001"));
    EXPECT_EQ(tag->getGenreNumber(), 17);

    // The performer wins over the artist; an unusable date writes no year.
    tags->setString("performer", "Der Sänger");
    tags->setString("date", "12/99");
    tags->setString("description", "Live");
    const auto rebuilt = CMP3FileAudioSink::buildTag(*tags, *fenn::make<tbx::CMusicGenreList>());
    EXPECT_EQ(rebuilt->getText(tbx::makeID3FrameId("TPE1")), fenn::String("Der Sänger"));
    EXPECT_TRUE(rebuilt->getText(tbx::makeID3FrameId("TYER")).isEmpty());
    EXPECT_EQ(rebuilt->getText(tbx::makeID3FrameId("TIT3")), fenn::String("Live"));

    // The estimate of the bytes around the audio is the tag as written.
    const std::vector<FoundFrame> frames = findFrames(readFile(path));
    ASSERT_FALSE(frames.empty());
    tags->setString("performer", "");
    tags->setString("date", "31.12.1999");
    tags->setString("description", "");
    EXPECT_EQ(CMP3FileAudioSink::estimateTagBytes(*tags), frames.front().position);
}

TEST(MP3FileAudioSinkYear, ReadsTheYearOfADate)
{
    const std::pair<const char*, int> cases[] = {
        {"31.12.1999", 1999}, {"2003-05-01", 2003}, {"1999", 1999},    {"99", -1},
        {"12/99", -1},        {"May 2100", 2100},   {"2101", -1},      {"1899", -1},
        {"19999", -1},        {"abc1950", 1950},    {"1950abc", 1950}, {"", -1},
        {"195", -1},          {"1900-x", 1900},
    };
    for (const auto& [text, year] : cases) EXPECT_EQ(CMP3FileAudioSink::parseYear(text), year) << text;
}

// An MP3 made from an MP3 keeps the bytes around the audio: the source's
// head and tail travel as piggyback data and the sink writes them back.
TEST_F(MP3FileAudioSink, KeepsHeadAndTailOfAnMP3Source)
{
    const auto original = m_folder / "original.mp3";
    makeMP3(original, 44100, 2, 1.5, "-b 192 --add-id3v2 --tt Title --ta Artist --tl Album --ty 2005 --tg Jazz");
    run("id3v2 --TPUB 'Some Label' " + quote(original));
    const Bytes before = readFile(original);

    auto source = fenn::make<tbx::CMP3FileAudioSource>(uriOf(original));
    source->Open(8, nullptr);
    auto tags = source->GetTags();
    tags->setString("title", "ignored: the head is written as it was");
    auto settings = fenn::make<fenn::CValueList>();
    settings->setInt("bitRate", 96000);
    settings->setBool("vbr", true);
    settings->setInt("sampleRate", 44100);
    const auto copy = m_folder / "copy.mp3";
    auto sink = fenn::make<CMP3FileAudioSink>(createFile(copy), *settings, *tags);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 44100);
    std::int64_t frames = 0;
    while (source->Read(*chunk)) {
        frames += chunk->GetLength();
        sink->Write(*chunk);
    }
    sink->Finish();

    const Bytes after = readFile(copy);
    const auto* piggyBack = fenn::TCast<tbx::IMP3PiggyBackData>(tags->getValue(tbx::kMP3PiggyBackDataKey).get());
    ASSERT_NE(piggyBack, nullptr);
    const auto head = static_cast<std::size_t>(piggyBack->getHeadSize());
    ASSERT_GT(head, 100u);
    ASSERT_EQ(piggyBack->getTailSize(), 128);
    ASSERT_GT(after.size(), head + 128);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(head), after.begin()));
    EXPECT_TRUE(std::equal(before.end() - 128, before.end(), after.end() - 128));
    EXPECT_EQ(findFrames(after).front().position, static_cast<std::int64_t>(head));
    EXPECT_NEAR(static_cast<double>(decodeWithMpg123(copy).size()) / 2, double(frames), 2.0);
    EXPECT_NEAR(ffprobeDuration(copy), 1.5, 0.08);
    const std::string probed = run("ffprobe -v error -show_entries format_tags -of default=nw=1 " + quote(copy));
    EXPECT_NE(probed.find("TAG:title=Title"), std::string::npos) << probed;
    EXPECT_NE(probed.find("TAG:publisher=Some Label"), std::string::npos) << probed;
    EXPECT_EQ(CMP3FileAudioSink::estimateTagBytes(*tags), static_cast<std::int64_t>(head) + 128);
}

TEST_F(MP3FileAudioSink, RefusesWhatItCannotDo)
{
    auto settings = fenn::make<fenn::CValueList>();
    settings->setInt("channels", 3);
    EXPECT_THROW(CMP3FileAudioSink(createFile(m_folder / "three.mp3"), *settings, fenn::CValueList()), fenn::CError);
    settings->setInt("channels", 2);
    settings->setInt("sampleRate", 12345);
    EXPECT_THROW(CMP3FileAudioSink(createFile(m_folder / "odd.mp3"), *settings, fenn::CValueList()), fenn::CError);

    auto sink =
        fenn::make<CMP3FileAudioSink>(createFile(m_folder / "done.mp3"), fenn::CValueList(), fenn::CValueList());
    sink->Finish();
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 10);
    chunk->SetLength(10);
    EXPECT_THROW(sink->Write(*chunk), fenn::CInvalidObjectStateError);

    auto aborted =
        fenn::make<CMP3FileAudioSink>(createFile(m_folder / "aborted.mp3"), fenn::CValueList(), fenn::CValueList());
    aborted->Write(*chunk);
    aborted->Abort();
    EXPECT_THROW(aborted->Finish(), fenn::CInvalidObjectStateError);
}

}  // namespace
