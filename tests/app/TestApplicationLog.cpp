#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "app/ApplicationLog.h"
#include "foundation/CStreamManager.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

namespace {

class ApplicationLog : public ::testing::Test
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
    std::mt19937 m_random{42};
};

TEST_F(ApplicationLog, TakesLogTxtThenRandomNamesThenGivesUp)
{
    // A folder name with characters that URIs escape.
    const std::filesystem::path folder = m_folder / "a b%#c";
    std::filesystem::create_directory(folder);
    auto first = tbx::openApplicationLog(folder, m_random);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->getURI().toPath(), fenn::String::copyOf((folder / "log.txt").string()));

    // A name that cannot be opened as a file sends the log to a random name.
    tbtest::TempFolder blocked;
    std::filesystem::create_directory(blocked / "log.txt");
    auto second = tbx::openApplicationLog(blocked.path(), m_random);
    ASSERT_TRUE(second);
    const std::string name = std::filesystem::path(second->getURI().toPath().toStdString()).filename().string();
    EXPECT_TRUE(std::regex_match(name, std::regex("log_[0-9A-F]{1,8}\\.txt"))) << name;

    // A folder that is not there at all: every try fails and the program goes on without a log.
    EXPECT_FALSE(tbx::openApplicationLog(m_folder / "missing" / "deeper", m_random));
}

TEST(SystemReport, NamesSystemProgramAndMemory)
{
    const auto lines = tbx::makeSystemReport();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_FALSE(lines[0].isEmpty());
    EXPECT_EQ(lines[1], fenn::String("Quorrel Tonebench 3 3.50"));
    EXPECT_TRUE(lines[2].isEmpty());
    EXPECT_TRUE(std::regex_match(lines[3].toStdString(), std::regex("Available physical memory: \\d+  MB")));
    EXPECT_TRUE(std::regex_match(lines[4].toStdString(), std::regex("Total physical memory: [1-9]\\d* MB")));
    EXPECT_TRUE(std::regex_match(lines[5].toStdString(), std::regex("Available virtual memory: \\d+ MB")));
    EXPECT_TRUE(std::regex_match(lines[6].toStdString(), std::regex("Total virtual memory: [1-9]\\d* MB")));
}

}  // namespace
