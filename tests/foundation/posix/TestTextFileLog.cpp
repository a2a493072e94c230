#include <gtest/gtest.h>

#include <ctime>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "foundation/CStreamManager.h"
#include "foundation/CTextFileLog.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

namespace {

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class TextFileLog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_factory = fenn::make<fenn::posix::CDiskStreamFactory>();
        fenn::CStreamManager::getInstance()->addFactory(m_factory);
    }
    void TearDown() override { fenn::CStreamManager::getInstance()->removeFactory(m_factory.get()); }

    fenn::P<fenn::posix::CDiskStreamFactory> m_factory;
    tbtest::TempFolder m_folder;
};

TEST_F(TextFileLog, WritesTheLineFormatAndStartsEmptyAtEveryOpen)
{
    const std::filesystem::path path = m_folder / "log.txt";
    std::ofstream(path) << "left over from the last run\n";

    // 2026-11-22 14:05:09 local time.
    std::tm when{};
    when.tm_year = 126;
    when.tm_mon = 10;
    when.tm_mday = 22;
    when.tm_hour = 14;
    when.tm_min = 5;
    when.tm_sec = 9;
    when.tm_isdst = -1;
    const std::int64_t time = static_cast<std::int64_t>(std::mktime(&when)) * 1000;

    auto log = fenn::make<fenn::CTextFileLog>(fenn::String::copyOf(path.string()));
    log->log(fenn::LogLevel::debug, "app", "not written at the default threshold", time);
    log->log(fenn::LogLevel::info, "", "plain line", time);
    log->log(fenn::LogLevel::warning, "convert", "first\nsecond\n \t\n", time);
    log->log(fenn::LogLevel::error, "cd", "failed", time);
    log->log(static_cast<fenn::LogLevel>(7), "", "odd level", time);
    // Others may read the file while the log has it open.
    EXPECT_EQ(readFile(path),
              "14:05:09: plain line\n"
              "14:05:09 [convert] Warning: first\n    second\n"
              "14:05:09 [cd] ERROR: failed\n"
              "14:05:09 UnknownLogLevel: odd level\n");

    log->setLevel(fenn::LogLevel::debug);
    log->debug("app", "now it is");
    log = nullptr;
    EXPECT_TRUE(std::regex_search(readFile(path), std::regex(R"(\d\d:\d\d:\d\d \[app\] debug: now it is\n$)")));

    fenn::make<fenn::CTextFileLog>(fenn::String::copyOf(path.string()));
    EXPECT_EQ(readFile(path), "");
}

}  // namespace
