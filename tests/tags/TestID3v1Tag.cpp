#include <gtest/gtest.h>

#include <cstring>

#include "tags/CID3v1Tag.h"
#include "tests/tags/TagTestSupport.h"

using namespace tbx;
using namespace tbtest;

namespace {

// A record: the id, then each field padded with zero bytes to its length.
Bytes record(const char* id, const std::string& title, const std::string& artist, const std::string& album,
             const std::string& year, const Bytes& commentAndTrack, std::uint8_t genre)
{
    Bytes bytes(128, 0);
    std::memcpy(bytes.data(), id, 3);
    std::memcpy(bytes.data() + 3, title.data(), title.size());
    std::memcpy(bytes.data() + 33, artist.data(), artist.size());
    std::memcpy(bytes.data() + 63, album.data(), album.size());
    std::memcpy(bytes.data() + 93, year.data(), year.size());
    std::memcpy(bytes.data() + 97, commentAndTrack.data(), commentAndTrack.size());
    bytes[127] = genre;
    return bytes;
}

std::string text(const fenn::String& value)
{
    return value.toStdString();
}

TEST(ID3v1Tag, ReadsTheLastRecordOfTheStream)
{
    const Bytes comment = b("'Nice' 00") + zeros(23) + b("00 07");
    const Bytes file = b("'audio data'") + record("TAG", "  Title ", "Artist", "Album", "1999", comment, 17);
    const auto stream = memoryStream(file);
    stream->seek(3);
    CID3v1Tag id3;
    ASSERT_TRUE(id3.read(*stream));
    EXPECT_EQ(stream->getPos(), 3);
    EXPECT_TRUE(id3.isPresent());
    EXPECT_EQ(text(id3.getTitle()), "Title");
    EXPECT_EQ(text(id3.getArtist()), "Artist");
    EXPECT_EQ(text(id3.getAlbum()), "Album");
    EXPECT_EQ(text(id3.getYear()), "1999");
    EXPECT_EQ(text(id3.getComment()), "Nice");
    EXPECT_EQ(id3.getTrack(), 7);
    EXPECT_EQ(id3.getGenre(), 17);
}

TEST(ID3v1Tag, TrackOnlyBehindAZeroAndIdInAnyCase)
{
    const struct
    {
        const char* id;
        Bytes comment;
        bool present;
        const char* expectedComment;
        std::int32_t track;
    } cases[] = {
        // A comment of 30 characters leaves no room for a track.
        {"TAG", b("'abcdefghijklmnopqrstuvwxyz0123'"), true, "abcdefghijklmnopqrstuvwxyz0123", 0},
        {"tag", b("'c'") + zeros(27) + b("00 0C"), true, "c", 12},
        {"Tag", b("'c'") + zeros(29), true, "c", 0},
        {"TAX", b("'c'"), false, "", 0},
    };
    for (const auto& testCase : cases) {
        const auto stream = memoryStream(record(testCase.id, "t", "", "", "", testCase.comment, 255));
        CID3v1Tag id3;
        EXPECT_EQ(id3.read(*stream), testCase.present) << testCase.id;
        EXPECT_EQ(text(id3.getComment()), testCase.expectedComment) << testCase.id;
        EXPECT_EQ(id3.getTrack(), testCase.track) << testCase.id;
    }
}

TEST(ID3v1Tag, ShortStreamHasNoRecord)
{
    const auto stream = memoryStream(b("'TAG'") + zeros(100));
    stream->seek(5);
    CID3v1Tag id3;
    EXPECT_FALSE(id3.read(*stream));
    EXPECT_FALSE(id3.isPresent());
    EXPECT_EQ(stream->getPos(), 5);
}

TEST(ID3v1Tag, WritesTheLayoutWithRoomForTheTrack)
{
    CID3v1Tag id3;
    id3.setTitle("A title that is longer than thirty characters");
    id3.setArtist(fenn::String::copyOfUTF32(U"Bj\u00F6rk \u0416"));
    id3.setAlbum("Album");
    id3.setYear("20011");
    id3.setComment("A comment of exactly thirty ch");
    id3.setTrack(9);
    id3.setGenre(-1);
    const auto stream = fenn::make<fenn::CMemoryIOStream>();
    id3.write(*stream);
    const Bytes expected = record("TAG", "A title that is longer than th", "Bj\xF6rk ?", "Album", "2001",
                                  b("'A comment of exactly thirty ' 00 09"), 255);
    EXPECT_EQ(hexDump(contents(*stream)), hexDump(expected));

    // Without a track the comment still loses its last two characters.
    id3.setTrack(0);
    id3.setGenre(80);
    const auto again = fenn::make<fenn::CMemoryIOStream>();
    id3.write(*again);
    CID3v1Tag readBack;
    ASSERT_TRUE(readBack.read(*memoryStream(contents(*again))));
    EXPECT_EQ(text(readBack.getComment()), "A comment of exactly thirty");
    EXPECT_EQ(readBack.getTrack(), 0);
    EXPECT_EQ(readBack.getGenre(), 80);
}

}  // namespace
