#include <clocale>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "gui/dialogs/CDesktopFolders.h"
#include "gui/dialogs/CFolderModel.h"
#include "tests/gui/dialogs/DialogTestSupport.h"

namespace {

using namespace fenn::gui;
using dialogstest::DialogTest;
using fenn::CURI;
using fenn::FileTime;
using fenn::make;
using fenn::String;

// A local time as milliseconds since 1970.
FileTime localMillis(int year, int month, int day, int hour, int minute)
{
    std::tm time{};
    time.tm_year = year - 1900;
    time.tm_mon = month - 1;
    time.tm_mday = day;
    time.tm_hour = hour;
    time.tm_min = minute;
    time.tm_isdst = -1;
    return static_cast<FileTime>(std::mktime(&time)) * 1000;
}

// Sets an environment variable for the life of the object.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const char* name, const std::string& value) : m_name(name)
    {
        if (const char* old = std::getenv(name)) m_old = old;
        ::setenv(name, value.c_str(), 1);
    }
    ~ScopedEnvironment()
    {
        if (m_old) {
            ::setenv(m_name, m_old->c_str(), 1);
        } else {
            ::unsetenv(m_name);
        }
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

TEST(FolderModel, MatchesPatternsInAnyCaseAndFormatsTimes)
{
    struct Match
    {
        const char* name;
        const char* pattern;
        bool matches;
    };
    const Match matches[] = {
        {"Take.WAV", "*.wav", true},   {"take.wav", "*.mp3;*.wav", true}, {"take.wav", " *.mp3 ; *.WAV ", true},
        {"take.wave", "*.wav", false}, {"take.wav", "*.mp3", false},      {"anything", "", true},
        {"anything", "*", true},       {"a.flac", ";;", false},           {"Track 01.Mp3", "track ??.mp3", true},
    };
    for (const Match& test : matches)
        EXPECT_EQ(CFolderModel::matchesPattern(test.name, test.pattern), test.matches)
            << test.name << " " << test.pattern;

    // Month names as the C locale writes them.
    const std::string oldLocale = std::setlocale(LC_TIME, nullptr);
    std::setlocale(LC_TIME, "C");
    const FileTime now = localMillis(2024, 3, 1, 10, 30);
    struct Time
    {
        FileTime time;
        const char* shown;
    };
    const Time times[] = {
        {localMillis(2024, 3, 1, 0, 5), "Today, 00:05"},
        {localMillis(2024, 2, 29, 23, 59), "Yesterday, 23:59"},
        {localMillis(2024, 2, 28, 9, 0), "28 Feb"},
        {localMillis(2023, 12, 31, 9, 0), "31 Dec 2023"},
        // A time ahead of now (a clock set wrong) shows its full date.
        {localMillis(2024, 7, 4, 9, 0), "4 Jul 2024"},
    };
    for (const Time& test : times) EXPECT_EQ(CFolderModel::formatModified(test.time, now), test.shown);
    // Across a year end, the day before is still yesterday.
    EXPECT_EQ(CFolderModel::formatModified(localMillis(2023, 12, 31, 18, 0), localMillis(2024, 1, 1, 8, 0)),
              "Yesterday, 18:00");
    std::setlocale(LC_TIME, oldLocale.c_str());
}

class FolderModelOnDisk : public DialogTest
{
};

TEST_F(FolderModelOnDisk, ShowsEntriesWithTheirFactsAndKeepsFailuresForTheCaller)
{
    auto model = make<CFolderModel>();
    model->load(uriOf(""));
    const int song = model->findRow("Song.wav");
    ASSERT_GE(song, 0);
    EXPECT_EQ(model->getCellText(song, CFolderModel::kSizeColumn), model->getCellText(song, 1));
    EXPECT_NE(model->getCellText(song, CFolderModel::kSizeColumn).toStdString().find("10"), std::string::npos);
    EXPECT_NE(model->getCellText(song, CFolderModel::kModifiedColumn), "");
    const int albums = model->findRow("Albums");
    EXPECT_EQ(model->getCellText(albums, CFolderModel::kSizeColumn), "");
    EXPECT_TRUE(model->getEntry(albums).isFolder);
    EXPECT_EQ(model->getEntry(albums).uri, uriOf("Albums"));
    // Folders, audio files and other files have icons of their own.
    const auto icon = [&](const char* name) { return model->getCellImage(model->findRow(name), 0).get(); };
    EXPECT_NE(icon("Albums"), nullptr);
    EXPECT_NE(icon("Albums"), icon("Song.wav"));
    EXPECT_EQ(icon("Song.wav"), icon("b.mp3"));
    EXPECT_NE(icon("Song.wav"), icon("c.txt"));
    EXPECT_EQ(model->getCellImage(song, CFolderModel::kSizeColumn), nullptr);
    EXPECT_THROW(model->getEntry(model->getRowCount()), fenn::CInvalidArgError);

    // A folder that is not there: no rows, the error goes on.
    EXPECT_THROW(model->load(uriOf("missing")), fenn::CFileNotFoundError);
    EXPECT_EQ(model->getRowCount(), 0);
    EXPECT_EQ(model->getFolder(), uriOf("missing"));
    // Reading again after the folder appears finds its entries.
    std::filesystem::create_directory(m_folder / "missing");
    write("missing/new.wav", "1");
    model->reload();
    EXPECT_EQ(model->getRowCount(), 1);
}

TEST_F(FolderModelOnDisk, DesktopFoldersFollowTheUserDirsFile)
{
    if (CDesktopFolders::askUserDir("HOME").isEmpty()) GTEST_SKIP() << "xdg-user-dir is not installed";
    const std::filesystem::path home = m_folder / "home";
    std::filesystem::create_directories(home / "config");
    ScopedEnvironment homeVariable("HOME", home.string());
    ScopedEnvironment config("XDG_CONFIG_HOME", (home / "config").string());
    std::ofstream(home / "config" / "user-dirs.dirs") << "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n";
    const auto folders = CDesktopFolders::read();
    EXPECT_EQ(folders->home, CURI::fromPath(String::copyOf(home.string())));
    EXPECT_EQ(folders->desktop, CURI::fromPath(String::copyOf((home / "Schreibtisch").string())));
    // Not set: the usual folder under home.
    EXPECT_EQ(folders->music, CURI::fromPath(String::copyOf((home / "Music").string())));
}

}  // namespace
