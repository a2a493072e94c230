#include <gtest/gtest.h>

#include <random>

#include "formats/mp3/CMP3FrameFinder.h"
#include "tests/formats/mp3/MP3TestSupport.h"

namespace {

using namespace mp3test;
using tbx::CMP3FrameFinder;
using tbx::CMP3FrameHeader;

struct HeaderCase
{
    std::uint8_t bytes[4];
    bool parses;
    CMP3FrameHeader::Version version;
    int layer;
    int bitRate;
    int sampleRate;
    int channels;
    int frameLength;
    bool crc;
};

TEST(MP3FrameHeader, ParsesThePublishedFields)
{
    using V = CMP3FrameHeader::Version;
    const HeaderCase cases[] = {
        {{0xFF, 0xFB, 0x90, 0x64}, true, V::mpeg1, 3, 128000, 44100, 2, 417, false},
        {{0xFF, 0xFB, 0x92, 0x64}, true, V::mpeg1, 3, 128000, 44100, 2, 418, false},  // padded
        {{0xFF, 0xFA, 0x90, 0xC4}, true, V::mpeg1, 3, 128000, 44100, 1, 417, true},
        {{0xFF, 0xFB, 0xE4, 0x00}, true, V::mpeg1, 3, 320000, 48000, 2, 960, false},
        {{0xFF, 0xF3, 0x28, 0xC4}, true, V::mpeg2, 3, 16000, 16000, 1, 72, false},
        {{0xFF, 0xE3, 0x28, 0xC4}, true, V::mpeg25, 3, 16000, 8000, 1, 144, false},
        {{0xFF, 0xFD, 0xA0, 0x04}, true, V::mpeg1, 2, 192000, 44100, 2, 626, false},
        {{0xFF, 0xFF, 0x90, 0x00}, true, V::mpeg1, 1, 288000, 44100, 2, 312, false},
        {{0xFF, 0xFB, 0x00, 0x00}, true, V::mpeg1, 3, 0, 44100, 2, 0, false},  // free format
        {{0xFF, 0xFB, 0xF0, 0x00}, false},                                     // bit rate index 15
        {{0xFF, 0xFB, 0x9C, 0x00}, false},                                     // sample rate index 3
        {{0xFF, 0xF9, 0x90, 0x00}, false},                                     // layer 0
        {{0xFF, 0xEB, 0x90, 0x00}, false},                                     // version 1
        {{0x7F, 0xFB, 0x90, 0x00}, false},                                     // no sync
        {{0xFF, 0xDB, 0x90, 0x00}, false},
    };
    for (const HeaderCase& test : cases) {
        SCOPED_TRACE(testing::PrintToString(CMP3FrameHeader::read(test.bytes)));
        CMP3FrameHeader header;
        ASSERT_EQ(CMP3FrameHeader::parse(CMP3FrameHeader::read(test.bytes), header), test.parses);
        if (!test.parses) continue;
        EXPECT_EQ(header.version, test.version);
        EXPECT_EQ(header.layer, test.layer);
        EXPECT_EQ(header.bitRate, test.bitRate);
        EXPECT_EQ(header.sampleRate, test.sampleRate);
        EXPECT_EQ(header.channels, test.channels);
        EXPECT_EQ(header.frameLength, test.frameLength);
        EXPECT_EQ(header.protectedByCRC, test.crc);
        EXPECT_EQ(CMP3FrameFinder::isUsableFrame(header), test.bitRate != 0);
    }
}

TEST(MP3FrameHeader, FramesMustFitTheBufferWithFourBytesToSpare)
{
    CMP3FrameHeader header;
    header.bitRate = 128000;
    const std::pair<int, bool> lengths[] = {{3, false}, {4, true}, {4092, true}, {4093, false}};
    for (const auto& [length, usable] : lengths) {
        header.frameLength = length;
        EXPECT_EQ(CMP3FrameFinder::isUsableFrame(header), usable) << length;
    }
    header.frameLength = 400;
    header.bitRate = 0;
    EXPECT_FALSE(CMP3FrameFinder::isUsableFrame(header));
}

std::int64_t id3v2Size(const Bytes& bytes)
{
    if (bytes.size() < 10 || bytes[0] != 'I' || bytes[1] != 'D' || bytes[2] != '3') return 0;
    return 10 + ((bytes[6] << 21) | (bytes[7] << 14) | (bytes[8] << 7) | bytes[9]);
}

class MP3FrameFinder : public MP3Test
{
};

// On real files the frames found run without gap from the end of the ID3v2
// tag to the start of the ID3v1 tag, however the bytes arrive.
TEST_F(MP3FrameFinder, LocksOnRealFiles)
{
    struct FileCase
    {
        const char* name;
        int sampleRate;
        int channels;
        const char* options;
    };
    const FileCase cases[] = {
        {"tagged", 44100, 2, "-b 128 --add-id3v2 --tt Title --ta Artist"},
        {"vbr", 48000, 2, "-V 2"},
        {"mpeg25", 8000, 1, "-b 16 -m m"},
        {"protected", 22050, 2, "-b 64 -p"},
    };
    auto finder = fenn::make<CMP3FrameFinder>();
    for (const FileCase& test : cases) {
        SCOPED_TRACE(test.name);
        const auto path = m_folder / (std::string(test.name) + ".mp3");
        makeMP3(path, test.sampleRate, test.channels, 2.0, test.options);
        const Bytes bytes = readFile(path);
        const std::vector<FoundFrame> frames = findFrames(bytes);
        ASSERT_GT(frames.size(), 10u);
        EXPECT_EQ(frames.front().position, id3v2Size(bytes));
        for (std::size_t i = 1; i < frames.size(); ++i) {
            ASSERT_EQ(frames[i].position, frames[i - 1].position + frames[i - 1].length) << i;
        }
        const bool hasID3v1 = bytes.size() > 128 && std::equal(bytes.end() - 128, bytes.end() - 125, "TAG");
        EXPECT_EQ(frames.back().position + frames.back().length,
                  static_cast<std::int64_t>(bytes.size()) - (hasID3v1 ? 128 : 0));

        for (const std::int32_t readLimit : {1, 7, 4099}) {
            finder->reset();
            const auto stream = memoryStream(bytes, readLimit);
            EXPECT_EQ(findFrames(*finder, *stream), frames) << readLimit;
            EXPECT_EQ(finder->getLockPosition(), frames.front().position);
        }
    }

    // Layer II, from another encoder.
    const auto wav = m_folder / "two.wav";
    makeWav(wav, 44100, 2, 1.0);
    run("ffmpeg -hide_banner -loglevel error -y -i " + quote(wav) + " -c:a mp2 -b:a 192k " +
        quote(m_folder / "two.mp2"));
    const std::vector<FoundFrame> layer2 = findFrames(readFile(m_folder / "two.mp2"));
    ASSERT_GT(layer2.size(), 30u);
    EXPECT_EQ(layer2.front().position, 0);
    EXPECT_TRUE(layer2.front().length == 626 || layer2.front().length == 627);
}

// One frame header inside a tag is no lock: nothing follows it at its frame
// distance. The lock is the real audio behind the tag.
TEST_F(MP3FrameFinder, RefusesASingleFalseSyncInATag)
{
    makeMP3(m_folder / "plain.mp3", 44100, 2, 1.0, "-b 128 -t");
    const Bytes audio = readFile(m_folder / "plain.mp3");
    ASSERT_EQ(audio[0], 0xFF);
    const std::uint8_t audioHeader[4] = {audio[0], audio[1], audio[2], audio[3]};

    // An ID3v2.3 tag of 3000 body bytes with a copy of the stream's own header
    // a thousand bytes in, as a cover picture might hold one.
    Bytes file = {'I', 'D', '3', 3, 0, 0, 0, 0, 0x17, 0x38};
    file.resize(10 + 3000, 0x20);
    std::copy(audioHeader, audioHeader + 4, file.begin() + 1010);
    file.insert(file.end(), audio.begin(), audio.end());

    const std::vector<FoundFrame> frames = findFrames(file);
    ASSERT_FALSE(frames.empty());
    EXPECT_EQ(frames.front().position, 3010);
}

TEST_F(MP3FrameFinder, IsLostInJunk)
{
    makeMP3(m_folder / "plain.mp3", 44100, 2, 1.0, "-b 128 -t");
    const Bytes audio = readFile(m_folder / "plain.mp3");
    std::mt19937 random(11);
    const auto junk = [&](std::size_t size) {
        Bytes bytes(size);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
        return bytes;
    };

    struct JunkCase
    {
        std::size_t junkBytes;
        bool audioBehind;
        bool lost;
    };
    // Audio that starts beyond the first 64 KiB is never found.
    const JunkCase cases[] = {
        {65536, false, true}, {65536, true, true}, {200000, false, true}, {10000, false, false}, {60000, true, false}};
    for (const JunkCase& test : cases) {
        SCOPED_TRACE(test.junkBytes);
        Bytes bytes = junk(test.junkBytes);
        if (test.audioBehind) bytes.insert(bytes.end(), audio.begin(), audio.end());
        auto finder = fenn::make<CMP3FrameFinder>();
        const auto stream = memoryStream(bytes);
        const std::vector<FoundFrame> frames = findFrames(*finder, *stream);
        EXPECT_EQ(finder->isLost(), test.lost);
        EXPECT_EQ(finder->isLocked(), !frames.empty());
        if (test.audioBehind && !test.lost) {
            ASSERT_FALSE(frames.empty());
            EXPECT_EQ(frames.front().position, static_cast<std::int64_t>(test.junkBytes));
        } else {
            EXPECT_TRUE(frames.empty());
        }
    }
}

// Behind the lock, a frame whose header differs in a lock field is passed
// over as if it were not there; other header bits do not matter.
TEST_F(MP3FrameFinder, SkipsFramesThatDifferFromTheLock)
{
    makeMP3(m_folder / "joint.mp3", 44100, 2, 1.0, "-b 128 -m j -t");
    const Bytes original = readFile(m_folder / "joint.mp3");
    const std::vector<FoundFrame> frames = findFrames(original);
    ASSERT_GT(frames.size(), 20u);
    ASSERT_EQ(original[static_cast<std::size_t>(frames[10].position) + 3] >> 6, 1);  // joint stereo

    struct ChangeCase
    {
        const char* name;
        int byte;
        std::uint8_t mask;
        bool channelModeMayVary;
        bool skipped;
    };
    const ChangeCase cases[] = {
        {"stereo", 3, 0x40, false, true}, {"stereo, may vary", 3, 0x40, true, false}, {"mono", 3, 0x80, true, true},
        {"MPEG 2", 1, 0x08, false, true}, {"copyright bit", 3, 0x08, false, false},
    };
    for (const ChangeCase& test : cases) {
        SCOPED_TRACE(test.name);
        Bytes changed = original;
        changed[static_cast<std::size_t>(frames[10].position) + static_cast<std::size_t>(test.byte)] ^= test.mask;
        auto finder = fenn::make<CMP3FrameFinder>();
        finder->setChannelModeMayVary(test.channelModeMayVary);
        const auto stream = memoryStream(changed);
        std::vector<FoundFrame> expected = frames;
        if (test.skipped) expected.erase(expected.begin() + 10);
        EXPECT_EQ(findFrames(*finder, *stream), expected);
    }
}

// A stray 0xFF before a frame makes a bad header of the stray byte and the
// frame's first three; the search goes on inside it and finds the frame.
TEST_F(MP3FrameFinder, FindsTheFrameBehindAStrayByte)
{
    makeMP3(m_folder / "stray.mp3", 44100, 2, 1.0, "-b 128 -t");
    const Bytes original = readFile(m_folder / "stray.mp3");
    const std::vector<FoundFrame> frames = findFrames(original);
    ASSERT_GT(frames.size(), 20u);
    for (const Bytes& stray : {Bytes{0xFF}, Bytes{0xFF, 0xFF}, Bytes{0x00, 0xFF, 0xFF, 0xFF, 0xFF}}) {
        Bytes changed = original;
        changed.insert(changed.begin() + frames[10].position, stray.begin(), stray.end());
        std::vector<FoundFrame> expected = frames;
        for (std::size_t i = 10; i < expected.size(); ++i)
            expected[i].position += static_cast<std::int64_t>(stray.size());
        EXPECT_EQ(findFrames(changed, 5), expected) << stray.size();
    }
}

TEST_F(MP3FrameFinder, StopsBeforeAFrameCutShort)
{
    makeMP3(m_folder / "cut.mp3", 44100, 2, 1.0, "-b 128 -t");
    const Bytes whole = readFile(m_folder / "cut.mp3");
    const std::vector<FoundFrame> frames = findFrames(whole);
    ASSERT_GT(frames.size(), 20u);
    const std::int64_t cut = frames[15].position + 100;
    const std::vector<FoundFrame> found = findFrames(Bytes(whole.begin(), whole.begin() + cut));
    EXPECT_EQ(found, std::vector<FoundFrame>(frames.begin(), frames.begin() + 15));
}

}  // namespace
