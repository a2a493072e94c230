#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "foundation/CLogManager.h"
#include "foundation/CURIError.h"
#include "tags/CMP3FileTag.h"
#include "tags/CMP3FileTagFactory.h"
#include "tags/CMusicGenreList.h"
#include "tests/support/CaptureLog.h"
#include "tests/support/TempFolder.h"
#include "tests/tags/FailingStreamFactory.h"
#include "tests/tags/TagTestSupport.h"

using namespace tbx;
using namespace tbtest;
namespace fs = std::filesystem;

namespace {

std::string text(const fenn::String& value)
{
    return value.toStdString();
}

struct Fields
{
    std::string title, artist, album, track, year, genre, comment;
    bool operator==(const Fields&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Fields& fields)
{
    return out << "{" << fields.title << "|" << fields.artist << "|" << fields.album << "|" << fields.track << "|"
               << fields.year << "|" << fields.genre << "|" << fields.comment << "}";
}

Fields fieldsOf(const IMediaFileTag& tag)
{
    return {text(tag.getTitle()), text(tag.getArtist()), text(tag.getAlbum()),  text(tag.getTrack()),
            text(tag.getYear()),  text(tag.getGenre()),  text(tag.getComment())};
}

// "TAG:key=value" lines of ffprobe, by key.
std::map<std::string, std::string> ffprobeTags(const fs::path& file)
{
    const CommandResult probe =
        runCommand("ffprobe -v quiet -show_entries format_tags -of default=nw=1 " + shellQuote(file.string()));
    std::map<std::string, std::string> tags;
    std::istringstream lines(probe.output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        if (line.rfind("TAG:", 0) == 0 && equals != std::string::npos)
            tags[line.substr(4, equals - 4)] = line.substr(equals + 1);
    }
    return tags;
}

bool hasTemporaryFiles(const fs::path& folder)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".tmp") return true;
    }
    return false;
}

class MP3FileTag : public ::testing::Test
{
protected:
    void SetUp() override
    {
        makeMP3(m_folder / "plain.mp3");
        m_audio = readFile(m_folder / "plain.mp3");
        fs::copy_file(m_folder / "plain.mp3", m_file);
    }

    fenn::P<IMediaFileTag> open(const fs::path& file) { return m_factory->createTag(fileURI(file)); }

    void tagWith(const std::string& command)
    {
        const CommandResult result = runCommand(command + " " + shellQuote(m_file.string()));
        ASSERT_EQ(result.status, 0) << command << "\n" << result.output;
    }

    TempFolder m_folder;
    fs::path m_file = m_folder / "song.mp3";
    Bytes m_audio;
    fenn::P<CMusicGenreList> m_genres = fenn::make<CMusicGenreList>();
    fenn::P<CMP3FileTagFactory> m_factory = fenn::make<CMP3FileTagFactory>(m_genres);
};

TEST_F(MP3FileTag, WritesTagsThatIndependentReadersRead)
{
    const fenn::P<IMediaFileTag> tag = open(m_file);
    ASSERT_TRUE(tag);
    EXPECT_EQ(fieldsOf(*tag), Fields{});
    EXPECT_FALSE(tag->hasChanges());
    tag->setTitle(fenn::String::copyOfUTF32(U"T\u00EFtle"));
    tag->setArtist("Artist");
    tag->setAlbum("Album");
    tag->setTrack("3/12");
    tag->setYear("2001");
    tag->setGenre("hip hop");
    tag->setComment("Sub");
    EXPECT_TRUE(tag->hasChanges());
    tag->saveChanges();
    EXPECT_FALSE(tag->hasChanges());
    EXPECT_FALSE(hasTemporaryFiles(m_folder.path()));

    const Fields expected{"T\u00EFtle", "Artist", "Album", "3/12", "2001", "Hip-Hop", "Sub"};
    EXPECT_EQ(fieldsOf(*tag), expected);
    EXPECT_EQ(fieldsOf(*open(m_file)), expected);

    // The audio follows the new tag unchanged, and no ID3v1 record was added.
    const Bytes file = readFile(m_file);
    ASSERT_GT(file.size(), 10u);
    const std::size_t tagSize = 10 + (file[6] << 21 | file[7] << 14 | file[8] << 7 | file[9]);
    EXPECT_EQ(file.size(), tagSize + m_audio.size());
    EXPECT_TRUE(std::equal(m_audio.begin(), m_audio.end(), file.begin() + static_cast<std::ptrdiff_t>(tagSize)));

    const std::map<std::string, std::string> expectedProbe = {
        {"title", expected.title}, {"artist", "Artist"}, {"album", "Album"}, {"track", "3/12"},
        {"date", "2001"},          {"genre", "Hip-Hop"}, {"TIT3", "Sub"}};
    EXPECT_EQ(ffprobeTags(m_file), expectedProbe);

    // U+00FF before a terminator makes the tag unsynchronised. FFmpeg takes
    // the frame sizes of such a version 2.3 tag as sizes on disk, so only
    // the two readers that follow the published layout are asked.
    tag->setTitle(fenn::String::copyOfUTF32(U"T\u00EFtle \u00FF"));
    tag->saveChanges();
    EXPECT_EQ(readFile(m_file)[5] & 0x80, 0x80);
    EXPECT_EQ(text(open(m_file)->getTitle()), "T\u00EFtle \u00FF");

    const CommandResult listing = runCommand("id3v2 -l " + shellQuote(m_file.string()));
    const std::string lines[] = {"TIT2 (Title/songname/content description): T\u00EFtle \u00FF",
                                 "TPE1 (Lead performer(s)/Soloist(s)): Artist",
                                 "TRCK (Track number/Position in set): 3/12", "TCON (Content type): Hip-Hop (7)",
                                 "TIT3 (Subtitle/Description refinement): Sub"};
    for (const std::string& line : lines)
        EXPECT_NE(listing.output.find(line), std::string::npos) << line << "\n" << listing.output;
    EXPECT_EQ(listing.output.find("id3v1 tag info"), std::string::npos) << listing.output;

    const CommandResult eyeD3 = runCommand("eyeD3 --no-color " + shellQuote(m_file.string()));
    for (const std::string& line :
         {std::string("title: T\u00EFtle \u00FF"), std::string("album: Album"), std::string("genre: Hip-Hop")})
        EXPECT_NE(eyeD3.output.find(line), std::string::npos) << line << "\n" << eyeD3.output;
}

TEST_F(MP3FileTag, ReadsTagsOfOtherPrograms)
{
    const struct
    {
        const char* name;
        std::string command;
        Fields expected;
    } cases[] = {
        // COMM is not the comment field: it comes from the ID3v1 record.
        {"id3v2",
         "id3v2 -t Title -a Artist -A Album -y 2001 -T 3/12 -g 17 -c Cmt",
         {"Title", "Artist", "Album", "3/12", "2001", "Rock", "Cmt"}},
        {"eyeD3 Latin-1",
         "eyeD3 -Q --to-v2.3 --encoding latin1 -t 'Title \xC3\xA9' -a Artist -A Album -n 3 -N 12 -G Rock "
         "--text-frame TIT3:Sub",
         {"Title \u00E9", "Artist", "Album", "03/12", "", "Rock", "Sub"}},
        {"eyeD3 UTF-16",
         "eyeD3 -Q --to-v2.3 --encoding utf16 -t 'Title \xC3\xA9' -a Artist -G 'Jazz+Funk'",
         {"Title \u00E9", "Artist", "", "", "", "Jazz+Funk", ""}},
    };
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.name);
        fs::copy_file(m_folder / "plain.mp3", m_file, fs::copy_options::overwrite_existing);
        tagWith(testCase.command);
        const fenn::P<IMediaFileTag> tag = open(m_file);
        EXPECT_EQ(fieldsOf(*tag), testCase.expected);
    }

    // LAME writes UTF-16 behind a little-endian mark, the genre as a name
    // and an ID3v1 record.
    const fs::path wav = m_folder / "sine.wav";
    ASSERT_EQ(runCommand("sox -n -r 44100 -c 1 " + shellQuote(wav.string()) + " synth 0.1 sine 300").status, 0);
    const fs::path lamed = m_folder / "lame.mp3";
    const CommandResult lame = runCommand("lame --quiet --tt Title --ta Artist --tl Album --ty 2001 --tn 3/12 "
                                          "--tg 'Trip-Hop' --tc Cmt " +
                                          shellQuote(wav.string()) + " " + shellQuote(lamed.string()));
    ASSERT_EQ(lame.status, 0) << lame.output;
    EXPECT_EQ(fieldsOf(*open(lamed)), (Fields{"Title", "Artist", "Album", "3/12", "2001", "Trip-Hop", "Cmt"}));
}

TEST_F(MP3FileTag, KeepsAnID3v1RecordOnlyWhereThereWasOne)
{
    tagWith("id3v2 -t Title -a Artist -T 4 -g 0");
    const Bytes before = readFile(m_file);
    ASSERT_EQ(std::string(before.end() - 128, before.end() - 125), "TAG");
    const fenn::P<IMediaFileTag> tag = open(m_file);
    tag->setTrack("7/9");
    tag->setComment("A comment long enough to be cut");
    tag->setGenre("Polka Dots");
    tag->saveChanges();

    const Bytes after = readFile(m_file);
    ASSERT_GE(after.size(), m_audio.size() + 128);
    const Bytes record(after.end() - 128, after.end());
    EXPECT_EQ(std::string(record.begin(), record.begin() + 3), "TAG");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data()) + 3), "Title");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data()) + 97, 28), "A comment long enough to be ");
    EXPECT_EQ(record[125], 0);
    EXPECT_EQ(record[126], 7);
    EXPECT_EQ(record[127], 255) << "an unknown genre clears it";
    // The audio sits between the two tags as it was.
    EXPECT_TRUE(
        std::equal(m_audio.begin(), m_audio.end(), after.end() - 128 - static_cast<std::ptrdiff_t>(m_audio.size())));

    const fenn::P<IMediaFileTag> again = open(m_file);
    EXPECT_EQ(text(again->getTrack()), "7/9");
    EXPECT_EQ(text(again->getGenre()), "");
    EXPECT_EQ(text(again->getComment()), "A comment long enough to be cut");
}

TEST_F(MP3FileTag, FallsBackToID3v1AndMissingFieldsAreEmpty)
{
    tagWith("id3v2 -1 -t Title -a Artist -A Album -y 1999 -T 5 -g 32 -c Note");
    const fenn::P<IMediaFileTag> tag = open(m_file);
    EXPECT_EQ(fieldsOf(*tag), (Fields{"Title", "Artist", "Album", "5", "1999", "Classical", "Note"}));

    fs::copy_file(m_folder / "plain.mp3", m_file, fs::copy_options::overwrite_existing);
    tagWith("id3v2 -1 -t Title");
    EXPECT_EQ(text(open(m_file)->getTrack()), "") << "no track is empty, not 0";
}

TEST_F(MP3FileTag, Version22TagStays22)
{
    writeFile(m_file,
              tag(2, 0, frame22("TT2", b("00 'Old' 00")) + frame22("TCO", b("00 '(8)'")) + zeros(20)) + m_audio);
    const fenn::P<IMediaFileTag> mp3Tag = open(m_file);
    EXPECT_EQ(text(mp3Tag->getTitle()), "Old");
    EXPECT_EQ(text(mp3Tag->getGenre()), "Jazz");
    mp3Tag->setTitle("New title");
    mp3Tag->setArtist("Someone");
    mp3Tag->saveChanges();
    const Bytes expectedTag = tag(2, 0,
                                  frame22("TT2", b("00 'New title' 00")) + frame22("TCO", b("00 '(8)'")) +
                                      frame22("TP1", b("00 'Someone' 00")));
    EXPECT_EQ(hexDump(readFile(m_file)), hexDump(expectedTag + m_audio));
}

TEST_F(MP3FileTag, Version24TagIsKeptAndNotChanged)
{
    tagWith("eyeD3 -Q --to-v2.4 -t Four");
    const Bytes before = readFile(m_file);
    ASSERT_EQ(before[3], 4);
    const fenn::P<IMediaFileTag> tag = open(m_file);
    EXPECT_EQ(text(tag->getTitle()), "");
    try {
        tag->setTitle("x");
        FAIL() << "a 2.4 tag was changed";
    } catch (const fenn::CFileError& error) {
        EXPECT_NE(text(error.getDescription()).find("ID3v2.4"), std::string::npos);
        EXPECT_NE(text(error.getDescription()).find("song.mp3"), std::string::npos);
    }
    EXPECT_FALSE(tag->hasChanges());
    tag->saveChanges();
    EXPECT_EQ(readFile(m_file), before);
}

TEST_F(MP3FileTag, FailedSaveLeavesTheOriginalUntouched)
{
    tagWith("id3v2 -t Before");
    const Bytes before = readFile(m_file);
    const fenn::P<IMediaFileTag> tag = open(m_file);
    tag->setTitle("After");
    const auto log = fenn::make<tbtest::CaptureLog>();
    fenn::CLogManager::getInstance()->addLog(log);
    {
        // The old tag reads; the copy of the audio behind it fails.
        const auto failing = fenn::make<FailingStreamFactory>(fileURI(m_file), 3000);
        const ScopedStreamFactory scope(failing);
        EXPECT_THROW(tag->saveChanges(), fenn::CStreamError);
        EXPECT_EQ(failing->getOpenCount(), 1);
    }
    fenn::CLogManager::getInstance()->removeLog(log.get());
    EXPECT_EQ(readFile(m_file), before);
    EXPECT_FALSE(hasTemporaryFiles(m_folder.path()));
    EXPECT_TRUE(tag->hasChanges());
    bool logged = false;
    for (const std::string& line : log->lines())
        logged = logged || line.find("CMP3FileTag: copyStreamData") != std::string::npos;
    EXPECT_TRUE(logged);

    tag->saveChanges();
    EXPECT_EQ(text(open(m_file)->getTitle()), "After");
}

TEST_F(MP3FileTag, SavingWithoutChangesWritesNothing)
{
    tagWith("id3v2 -t Same");
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(24);
    fs::last_write_time(m_file, old);
    const fenn::P<IMediaFileTag> tag = open(m_file);
    tag->saveChanges();
    EXPECT_EQ(fs::last_write_time(m_file), old);
    EXPECT_FALSE(hasTemporaryFiles(m_folder.path()));
}

TEST_F(MP3FileTag, FactoryAnswersByExtension)
{
    const struct
    {
        const char* name;
        bool mp3;
    } cases[] = {{"a.mp3", true},  {"b.MP3", true}, {"c.Mp3", true},
                 {"d.ogg", false}, {"mp3", false},  {"e.mp3.wav", false}};
    for (const auto& testCase : cases) {
        fs::copy_file(m_folder / "plain.mp3", m_folder / testCase.name);
        EXPECT_EQ(bool(open(m_folder / testCase.name)), testCase.mp3) << testCase.name;
    }
    EXPECT_THROW(open(m_folder / "missing.mp3"), fenn::CFileNotFoundError);
}

}  // namespace
