#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TempFolder.h"
#include "tests/tags/TagTestSupport.h"

using namespace tbtest;
namespace fs = std::filesystem;

namespace {

CommandResult tagCommand(const std::string& arguments)
{
    return runCommand(std::string(TB_TONEBENCH_CLI) + " tag " + arguments);
}

class TagCommand : public ::testing::Test
{
protected:
    void SetUp() override
    {
        makeMP3(m_folder / "a.mp3");
        fs::copy_file(m_folder / "a.mp3", m_folder / "b.mp3");
        fs::copy_file(m_folder / "a.mp3", m_folder / "c.ogg");
    }

    std::string file(const char* name) const { return shellQuote((m_folder / name).string()); }

    TempFolder m_folder;
};

TEST_F(TagCommand, SetsFieldsOfSeveralFilesAndShowsThem)
{
    const CommandResult set =
        tagCommand("--set title='Song \xC3\xA4' --set artist=Band --set=genre=hiphop --set track=4 " + file("a.mp3") +
                   " " + file("b.mp3"));
    ASSERT_EQ(set.status, 0) << set.output;
    const CommandResult listing = runCommand("id3v2 -l " + file("b.mp3"));
    EXPECT_NE(listing.output.find("TIT2 (Title/songname/content description): Song \xC3\xA4"), std::string::npos)
        << listing.output;

    const CommandResult shown = tagCommand(file("a.mp3") + " " + file("b.mp3"));
    ASSERT_EQ(shown.status, 0) << shown.output;
    const std::string fields = "  title: Song \xC3\xA4\n  artist: Band\n  album:\n  track: 4\n  year:\n"
                               "  genre: Hip-Hop\n  comment:\n";
    EXPECT_EQ(shown.output,
              (m_folder / "a.mp3").string() + "\n" + fields + "\n" + (m_folder / "b.mp3").string() + "\n" + fields);
}

TEST_F(TagCommand, FailedFilesAreNamedAndTheOthersStillDone)
{
    const CommandResult result =
        tagCommand("--set title=Done " + file("missing.mp3") + " " + file("c.ogg") + " " + file("a.mp3"));
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("missing.mp3"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("'" + (m_folder / "c.ogg").string() + "': no tag format"), std::string::npos)
        << result.output;
    EXPECT_NE(tagCommand(file("a.mp3")).output.find("title: Done"), std::string::npos);
    EXPECT_EQ(tagCommand(file("c.ogg")).status, 1);
}

TEST_F(TagCommand, WrongCommandLinesAndHelp)
{
    const std::string wrong[] = {"", "--set", "--set title " + file("a.mp3"), "--set colour=red " + file("a.mp3"),
                                 "--frobnicate " + file("a.mp3")};
    for (const std::string& arguments : wrong) {
        const CommandResult result = tagCommand(arguments);
        EXPECT_EQ(result.status, 2) << arguments << "\n" << result.output;
        EXPECT_NE(result.output.find("--help"), std::string::npos) << result.output;
    }
    const CommandResult help = tagCommand("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("--set FIELD=VALUE"), std::string::npos) << help.output;
    EXPECT_EQ(readFile(m_folder / "a.mp3"), readFile(m_folder / "b.mp3")) << "nothing was changed";
}

}  // namespace
