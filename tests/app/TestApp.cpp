#include <gtest/gtest.h>

#include "app/CApp.h"
#include "app/Version.h"
#include "foundation/CError.h"
#include "foundation/CLogManager.h"
#include "tests/support/CaptureLog.h"
#include "foundation/CStreamManager.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

TEST(AppVersion, PacksAndParsesDottedVersions)
{
    struct Case
    {
        const char* text;
        std::uint32_t expected;
    };
    const Case cases[] = {
        {"3.50", (((3u << 8) | 50u) << 16)},    {"3.50.7", (((3u << 8) | 50u) << 16) | 7u}, {"3", 3u << 24}, {"", 0},
        {"1.2.3.4", tbx::makeVersion(1, 2, 3)}, {"2.7beta", tbx::makeVersion(2, 7, 0)},
    };
    for (const Case& c : cases) EXPECT_EQ(tbx::parseVersion(c.text), c.expected) << c.text;
    EXPECT_EQ(tbx::getVersionString(), fenn::String("3.50"));
    EXPECT_EQ(tbx::getVersionNumber(), tbx::makeVersion(3, 50, 0));
}

TEST(App, AnswersItsFixedFactsAndLogsExceptions)
{
    auto capture = fenn::make<tbtest::CaptureLog>();
    fenn::CLogManager::getInstance()->addLog(capture);
    {
        // Without a platform loop the application still starts and ends.
        auto app = fenn::make<tbx::CApp>();
        EXPECT_EQ(tbx::getApp(), static_cast<tbx::IApp*>(app.get()));
        EXPECT_EQ(app->getIllegalFileNameChars(), fenn::String("\\/:*?\"<>|"));
        EXPECT_EQ(app->getIllegalFileNameChars().getLength(), 9);
        EXPECT_EQ(app->getVersionString(), fenn::String("3.50"));
        EXPECT_EQ(app->getProductVersion(), app->makeVersion(3, 50, 0));
        EXPECT_TRUE(app->canExit());
        app->logException("Save", fenn::CError("Error", "The disk is full."));
    }
    EXPECT_EQ(tbx::getApp(), nullptr);
    const auto lines = capture->lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(lines.back().find("[app] ERROR: Exception during 'Save': The disk is full."), std::string::npos)
        << lines.back();
    fenn::CLogManager::getInstance()->removeLog(capture.get());
}

}  // namespace

namespace {

TEST(AppSettings, FirstStartIsSeenOnceAndTypedReadsKeepTheirDefaults)
{
    tbtest::TempFolder home;
    ASSERT_EQ(setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1), 0);
    ASSERT_EQ(setenv("XDG_DATA_HOME", (home / "data").c_str(), 1), 0);
    auto diskStreams = fenn::make<fenn::posix::CDiskStreamFactory>();
    fenn::CStreamManager::getInstance()->addFactory(diskStreams);
    {
        auto app = fenn::make<tbx::CApp>();
        EXPECT_TRUE(app->isFirstStart());
        app->setStringValue("tempFolder", "/var/tmp");
        app->setStringValue("empty", "");
        app->setIntValue("app.mode", 2);
        EXPECT_EQ(app->getStringValue("tempFolder", "none"), fenn::String("/var/tmp"));
        EXPECT_EQ(app->getStringValue("empty", "none"), fenn::String("none"));
        EXPECT_EQ(app->getIntValue("tempFolder", -1), -1);  // a text is not a number
        EXPECT_EQ(app->getStringValue("app.mode", "none"), fenn::String("none"));
        EXPECT_EQ(app->getMachineIntValue("app.mode", 7), 7);
    }
    // A second run of the program reads what the first one wrote.
    auto again = fenn::make<tbx::CApp>();
    EXPECT_FALSE(again->isFirstStart());
    EXPECT_EQ(again->getIntValue("app.mode", -1), 2);
    EXPECT_TRUE(std::filesystem::exists(home / "config" / "Quorrel Tonebench 3" / "settings.db"));
    // The log of the run went to the user's data folder, with the system report first.
    std::ifstream log(home / "data" / "Quorrel Tonebench 3" / "log.txt");
    std::string firstLine;
    std::getline(log, firstLine);
    EXPECT_NE(firstLine.find(": "), std::string::npos);
    fenn::CStreamManager::getInstance()->removeFactory(diskStreams.get());
}

}  // namespace
