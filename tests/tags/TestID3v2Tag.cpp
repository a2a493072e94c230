#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <string>

#include "foundation/CObjectError.h"
#include "tags/CID3v2Tag.h"
#include "tests/tags/TagTestSupport.h"

using namespace tbx;
using namespace tbtest;

namespace {

constexpr ID3FrameId kTIT2 = makeID3FrameId("TIT2");
constexpr ID3FrameId kTPE1 = makeID3FrameId("TPE1");
constexpr ID3FrameId kTALB = makeID3FrameId("TALB");
constexpr ID3FrameId kTCON = makeID3FrameId("TCON");

struct Parsed
{
    fenn::P<CID3v2Tag> tag;
    std::int64_t position = 0;  // of the stream after read
};

Parsed parse(const Bytes& bytes)
{
    Parsed parsed{fenn::make<CID3v2Tag>()};
    const auto stream = memoryStream(bytes);
    parsed.tag->read(*stream);
    parsed.position = stream->getPos();
    return parsed;
}

std::string text(const fenn::String& value)
{
    return value.toStdString();
}

#define EXPECT_BYTES(actual, expected) EXPECT_EQ(hexDump(actual), hexDump(expected))

TEST(ID3v2Tag, ParsesAndRendersVersion23ByteForByte)
{
    const Bytes file = tag(3, 0,
                           frame23("TIT2", b("00 'Hello' 00")) + frame23("PRIV", b("'owner' 00 01 02 FF 7F")) +
                               frame23("TPE1", b("01 FE FF 'A' 00 'b' 00 00 00")) + zeros(10)) +
                       b("FF FB 90 64");
    Parsed parsed = parse(file);
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_TRUE(id3.isPresent() && id3.isValid() && id3.isSupported());
    EXPECT_FALSE(id3.isDamaged() || id3.isDirty());
    EXPECT_EQ(id3.getMajorVersion(), 3);
    EXPECT_EQ(id3.getFrameCount(), 3);
    EXPECT_EQ(id3.getPaddingSize(), 10);
    EXPECT_EQ(parsed.position, static_cast<std::int64_t>(file.size()) - 4);
    EXPECT_EQ(id3.getSize(), parsed.position);
    EXPECT_EQ(text(id3.getText(kTIT2)), "Hello");
    EXPECT_EQ(text(id3.getText(kTPE1)), "Ab");
    EXPECT_EQ(text(id3.getText(kTALB)), "");
    EXPECT_BYTES(id3.render(), Bytes(file.begin(), file.end() - 4));
}

TEST(ID3v2Tag, Version22IsReadThroughTheIdTableAndStays22WhenEdited)
{
    const Bytes frames =
        frame22("TT2", b("00 'Song' 00")) + frame22("TP1", b("00 'Band'")) + frame22("TCO", b("00 '(17)'"));
    const Bytes file = tag(2, 0, frames + zeros(6));
    Parsed parsed = parse(file);
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_EQ(id3.getFrameCount(), 3);
    EXPECT_EQ(text(id3.getText(kTIT2)), "Song");
    EXPECT_EQ(text(id3.getText(kTPE1)), "Band");
    EXPECT_EQ(id3.getGenreNumber(), 17);
    EXPECT_BYTES(id3.render(), file);

    // One byte more comes out of the padding; a new frame takes the rest
    // and makes the tag grow.
    id3.setText(kTIT2, "Songs");
    const Bytes grown =
        frame22("TT2", b("00 'Songs' 00")) + frame22("TP1", b("00 'Band'")) + frame22("TCO", b("00 '(17)'"));
    EXPECT_BYTES(id3.render(), tag(2, 0, grown + zeros(5)));
    id3.setText(kTALB, "LP");
    EXPECT_BYTES(id3.render(), tag(2, 0, grown + frame22("TAL", b("00 'LP' 00"))));
    EXPECT_EQ(id3.getFrameCount(), 4);
    EXPECT_THROW(id3.setText(makeID3FrameId("TSOA"), "x"), fenn::CInvalidArgError);
}

TEST(ID3v2Tag, UnsynchronisationIsTakenBackOnReadingAndAppliedWhereNeeded)
{
    // Latin-1 "a" and U+00FF with its terminator: FF 00 on disk is FF 00 00.
    const Bytes file = tag(
        3, 0x80, b("'TIT2' 00 00 00 04 00 00  00 'a' FF 00 00") + b("'PRIV' 00 00 00 05 00 00  'x' 00 FF 00 E0 01"));
    Parsed parsed = parse(file);
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_EQ(id3.getFlags(), 0);
    EXPECT_EQ(id3.getFrameCount(), 2);
    EXPECT_EQ(id3.getText(kTIT2), fenn::String::copyOfUTF32(U"a\u00FF"));
    EXPECT_BYTES(id3.render(), file);

    // Without a pattern that needs it, the flag goes.
    Parsed single = parse(tag(3, 0x80, b("'TIT2' 00 00 00 04 00 00  00 'a' FF 00 00")));
    single.tag->setText(kTIT2, "ab");
    EXPECT_BYTES(single.tag->render(), tag(3, 0, frame23("TIT2", b("00 'ab' 00"))));

    // A last 0xFF gets a zero behind it.
    Parsed last = parse(tag(3, 0, frame23("PRIV", b("'p' 00 FF"))));
    EXPECT_BYTES(last.tag->render(), tag(3, 0x80, b("'PRIV' 00 00 00 03 00 00 'p' 00 FF 00")));
}

TEST(ID3v2Tag, ExtendedHeaderWithCRCIsKeptUntilTheTagChanges)
{
    const Bytes extended = b("00 00 00 0A  80 00  00 00 00 04  12 34 56 78");
    const Bytes file = tag(3, 0x40, extended + frame23("TIT2", b("00 'Hi' 00")) + zeros(4));
    Parsed parsed = parse(file);
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_TRUE(id3.hasExtendedHeader());
    EXPECT_TRUE(id3.hasCRC());
    EXPECT_EQ(id3.getCRC(), 0x12345678u);
    EXPECT_EQ(id3.getPaddingSize(), 4);
    EXPECT_EQ(text(id3.getText(kTIT2)), "Hi");
    EXPECT_BYTES(id3.render(), file);

    // The CRC no longer fits the frames: it goes, its four bytes become
    // padding, and the padding field follows.
    id3.setText(kTIT2, "Hey");
    const Bytes edited =
        tag(3, 0x40, b("00 00 00 06  00 00  00 00 00 07") + frame23("TIT2", b("00 'Hey' 00")) + zeros(7));
    EXPECT_BYTES(id3.render(), edited);
    Parsed again = parse(edited);
    EXPECT_TRUE(again.tag->hasExtendedHeader() && !again.tag->hasCRC() && again.tag->isValid());
    EXPECT_EQ(again.tag->getPaddingSize(), 7);
    EXPECT_EQ(text(again.tag->getText(kTIT2)), "Hey");
}

TEST(ID3v2Tag, EditsThatGrowAndShrinkAFrameKeepUnknownFramesByteForByte)
{
    const Bytes privateFrame = frame23("PRIV", b("'me' 00 DE AD BE EF"));
    const Bytes unknownFrame = frame23("XYZW", b("01 02 03"), 0x2000);
    Parsed parsed = parse(tag(3, 0, privateFrame + frame23("TIT2", b("00 'Short' 00")) + unknownFrame + zeros(8)));
    CID3v2Tag& id3 = *parsed.tag;
    const struct
    {
        const char* title;
        Bytes body;
    } steps[] = {
        // Three bytes more come out of the padding.
        {"Longer!!", privateFrame + frame23("TIT2", b("00 'Longer!!' 00")) + unknownFrame + zeros(5)},
        // Nine more: the padding is used up and the tag grows by four.
        {"Much longer title", privateFrame + frame23("TIT2", b("00 'Much longer title' 00")) + unknownFrame},
        // Sixteen fewer: the tag keeps its size, the rest is zero padding.
        {"S", privateFrame + frame23("TIT2", b("00 'S' 00")) + unknownFrame + zeros(16)},
    };
    for (const auto& step : steps) {
        id3.setText(kTIT2, step.title);
        EXPECT_BYTES(id3.render(), tag(3, 0, step.body)) << step.title;
        EXPECT_EQ(text(id3.getText(kTIT2)), step.title);
        EXPECT_EQ(id3.getFrameCount(), 3);
    }
}

TEST(ID3v2Tag, TextFramesAreDecodedByTheirEncodingAndMark)
{
    const struct
    {
        const char* data;
        std::u32string expected;
    } cases[] = {
        {"", U""},
        {"00 'Latin' E9 00 'rest'", U"Latin\u00E9"},
        {"00 20 'pad' 20 20", U"pad"},
        {"01 FF FE 'A' 00 'b' 00 00 00", U"Ab"},
        // Big-endian Latin text behind a little-endian mark is swapped back.
        {"01 FF FE 00 'A' 00 'b'", U"Ab"},
        // ... which also swaps little-endian text beyond Latin-1.
        {"01 FF FE 16 04 'A' 00", U"\u1604\u4100"},
        // The mark this system writes in front of little-endian text.
        {"01 FE FF 'A' 00 01 01", U"A\u0101"},
        {"01 'A' 00 'b' 00", U"Ab"},
        {"01 FF FE 'A'", U""},
        {"01 FE FF 3D D8 00 DE", U"\U0001F600"},
    };
    for (const auto& testCase : cases) {
        Parsed parsed = parse(tag(3, 0, frame23("TIT2", b(testCase.data))));
        EXPECT_EQ(parsed.tag->getText(kTIT2).toUTF32(), testCase.expected) << testCase.data;
    }
}

TEST(ID3v2Tag, TextIsWrittenAsLatin1UpTo0x100AndAsMarkedUTF16Beyond)
{
    const struct
    {
        std::u32string text;
        const char* payload;
        std::u32string readBack;
    } cases[] = {
        {U"Caf\u00E9", "00 'Caf' E9 00", U"Caf\u00E9"},
        // 0x100 has no Latin-1 form and is lost.
        {U"A\u0100B", "00 'AB' 00", U"AB"},
        {U"A\u0101", "01 FE FF 'A' 00 01 01 00 00", U"A\u0101"},
        {U"x\U0001F600", "01 FE FF 'x' 00 3D D8 00 DE 00 00", U"x\U0001F600"},
        {U"", "00 00", U""},
    };
    for (const auto& testCase : cases) {
        auto id3 = fenn::make<CID3v2Tag>();
        id3->setText(kTIT2, fenn::String::copyOfUTF32(testCase.text));
        EXPECT_BYTES(id3->render(), tag(3, 0, frame23("TIT2", b(testCase.payload))));
        EXPECT_EQ(id3->getText(kTIT2).toUTF32(), testCase.readBack);
    }
}

TEST(ID3v2Tag, GenreNumbersGoThroughTCON)
{
    const struct
    {
        const char* tcon;
        std::int32_t number;
    } cases[] = {{"(17)Rock", 17}, {"(0)", 0},   {"(147)", 147}, {"(148)", -1}, {"Rock", -1},
                 {"()", -1},       {"(1a)", -1}, {"17", -1},     {"(17", -1},   {"", -1}};
    for (const auto& testCase : cases) {
        auto id3 = fenn::make<CID3v2Tag>();
        id3->setText(kTCON, testCase.tcon);
        EXPECT_EQ(id3->getGenreNumber(), testCase.number) << testCase.tcon;
    }
    auto id3 = fenn::make<CID3v2Tag>();
    id3->setGenreNumber(5);
    EXPECT_BYTES(id3->render(), tag(3, 0, frame23("TCON", b("00 '(5)' 00"))));
    id3->setGenreNumber(-1);
    EXPECT_BYTES(id3->render(), tag(3, 0, frame23("TCON", b("00 00")) + zeros(3)));
}

TEST(ID3v2Tag, CompressedFramesAreInflatedAndEncryptedOnesAreNotRead)
{
    const Bytes plain = b("00 'Hello' 00");
    Bytes packed(compressBound(plain.size()));
    uLongf packedSize = packed.size();
    ASSERT_EQ(compress(packed.data(), &packedSize, plain.data(), plain.size()), Z_OK);
    packed.resize(packedSize);
    const Bytes compressedFrame = frame23("TIT2", b("00 00 00 07") + packed, 0x0080);
    const Bytes encryptedFrame = frame23("TPE1", b("80 00 'Hello'"), 0x0040);
    const Bytes brokenFrame = frame23("TALB", b("00 00 00 07 01 02 03 04"), 0x0080);
    Parsed parsed = parse(tag(3, 0, compressedFrame + encryptedFrame + brokenFrame));
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_EQ(id3.getFrameCount(), 3);
    EXPECT_EQ(text(id3.getText(kTIT2)), "Hello");
    EXPECT_EQ(text(id3.getText(kTPE1)), "");
    EXPECT_EQ(text(id3.getText(kTALB)), "");

    // Editing another frame leaves the compressed one as it was.
    id3.setText(kTCON, "(1)");
    EXPECT_BYTES(id3.render(),
                 tag(3, 0, compressedFrame + encryptedFrame + brokenFrame + frame23("TCON", b("00 '(1)' 00"))));
}

TEST(ID3v2Tag, Version24IsRecognisedKeptAndNotRead)
{
    const Bytes file = tag(4, 0, frame23("TIT2", b("03 'Four' 00")) + zeros(4));
    Parsed parsed = parse(file);
    CID3v2Tag& id3 = *parsed.tag;
    EXPECT_TRUE(id3.isPresent());
    EXPECT_FALSE(id3.isSupported());
    EXPECT_EQ(text(id3.getText(kTIT2)), "");
    EXPECT_EQ(id3.getGenreNumber(), -1);
    EXPECT_EQ(parsed.position, static_cast<std::int64_t>(file.size()));
    EXPECT_THROW(id3.setText(kTIT2, "x"), fenn::CInvalidObjectStateError);
    EXPECT_BYTES(id3.render(), file);
}

TEST(ID3v2Tag, MissingTagLeavesTheStreamAndGivesANewEmptyTag)
{
    for (const Bytes& bytes : {b(""), b("'ID3' 03"), b("'TAG' 00 00 00 00 00 00 00 00 00 00 00")}) {
        Parsed parsed = parse(bytes);
        EXPECT_FALSE(parsed.tag->isPresent());
        EXPECT_EQ(parsed.position, 0);
        EXPECT_BYTES(parsed.tag->render(), b("'ID3' 03 00 00 00 00 00 00"));
    }
}

TEST(ID3v2Tag, HostileTagsAreDamagedOrCutNeverACrash)
{
    const Bytes title = frame23("TIT2", b("00 'Kept' 00"));
    const struct
    {
        const char* name;
        Bytes file;
        bool damaged;
        bool valid;
        std::int32_t frames;
        Bytes rendered;  // empty: not checked
    } cases[] = {
        {"size past the end", b("'ID3' 03 00 00 00 00 00 64") + title, true, false, 0, b("'ID3' 03 00 00 00 00 00 00")},
        {"extended header in a short body", tag(3, 0x40, b("00 00 00 06 00 00")), true, false, 0,
         b("'ID3' 03 00 00 00 00 00 00")},
        {"extended size past the body", tag(3, 0x40, b("00 00 00 7F 00 00 00 00 00 00") + title), true, false, 0, {}},
        {"extended size below six", tag(3, 0x40, b("00 00 00 05 00 00 00 00 00 00") + title), true, false, 0, {}},
        {"padding larger than the tag", tag(3, 0x40, b("00 00 00 06 00 00 00 00 10 00") + title), false, true, 1,
         tag(3, 0x40, b("00 00 00 06 00 00 00 00 00 00") + title)},
        {"CRC flag without room for it", tag(3, 0x40, b("00 00 00 08 80 00 00 00 00 00 AA BB") + title), true, true, 1,
         tag(3, 0x40, b("00 00 00 06 00 00 00 00 00 00") + title)},
        {"frame past the end", tag(3, 0, title + b("'TALB' 00 00 03 E8 00 00 00 'x'")), true, true, 1,
         tag(3, 0, title)},
        {"lower-case id", tag(3, 0, title + frame23("tALB", b("00 'x' 00")) + frame23("TPE1", b("00 'y' 00"))), true,
         true, 1, tag(3, 0, title)},
        {"frame id past the 2.2 table", tag(2, 0, frame22("TT2", b("00 'a' 00")) + frame22("XYZ", b("00"))), true, true,
         1, tag(2, 0, frame22("TT2", b("00 'a' 00")))},
        {"encrypted frame too short", tag(3, 0, title + frame23("XXXX", b("01 02"), 0x0040)), true, true, 1,
         tag(3, 0, title)},
        {"non-zero bytes in the padding", tag(3, 0, title + b("00 00 00 00 'junk'")), false, true, 1,
         tag(3, 0, title + zeros(8))},
        {"padding shorter than a frame header", tag(3, 0, title + b("'TA'")), false, true, 1,
         tag(3, 0, title + zeros(2))},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.name);
        Parsed parsed = parse(testCase.file);
        CID3v2Tag& id3 = *parsed.tag;
        EXPECT_TRUE(id3.isPresent());
        EXPECT_EQ(id3.isDamaged(), testCase.damaged);
        EXPECT_EQ(id3.isValid(), testCase.valid);
        EXPECT_EQ(id3.getFrameCount(), testCase.frames);
        if (testCase.valid) {
            EXPECT_EQ(text(id3.getText(kTIT2)).empty(), testCase.frames == 0);
        }
        if (!testCase.rendered.empty()) {
            EXPECT_BYTES(id3.render(), testCase.rendered);
        }
        // Whatever was read, the tag can be edited and written.
        id3.setText(kTALB, "New");
        EXPECT_EQ(text(parse(id3.render()).tag->getText(kTALB)), "New");
    }
    // A tag that runs past the end leaves the stream where it was.
    EXPECT_EQ(parse(cases[0].file).position, 0);
}

// Random damage to a good tag: reading, editing and writing must hold up,
// and what is written must read back as a sound tag with the edit in it.
TEST(ID3v2Tag, RandomDamageGivesUsableTags)
{
    const Bytes good =
        tag(3, 0x40,
            b("00 00 00 0A 80 00 00 00 00 04 01 02 03 04") + frame23("TIT2", b("01 FF FE 'A' 00 FF 00")) +
                frame23("TCON", b("00 '(3)Dance'")) + frame23("PRIV", b("'x' 00 FF E0")) + zeros(4));
    std::mt19937 random(20240611);
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes = good;
        const int changes = 1 + static_cast<int>(random() % 6);
        for (int change = 0; change < changes; ++change) {
            const std::size_t at = random() % bytes.size();
            bytes[at] = static_cast<std::uint8_t>(random() % 4 == 0 ? 0xFF : random());
        }
        if (random() % 4 == 0) bytes.resize(random() % bytes.size());
        Parsed parsed = parse(bytes);
        CID3v2Tag& id3 = *parsed.tag;
        for (const ID3FrameId id : {kTIT2, kTPE1, kTCON, makeID3FrameId("PRIV")}) (void)id3.getText(id);
        (void)id3.getGenreNumber();
        if (!id3.isSupported()) continue;
        id3.setText(kTALB, "Edited");
        Parsed again = parse(id3.render());
        ASSERT_TRUE(again.tag->isPresent() && again.tag->isValid() && !again.tag->isDamaged()) << hexDump(bytes);
        ASSERT_EQ(text(again.tag->getText(kTALB)), "Edited") << hexDump(bytes);
    }
}

}  // namespace
