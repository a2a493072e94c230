#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include <fstream>

#include "foundation/CError.h"
#include "foundation/CPackageManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/CSystemExitAction.h"
#include "foundation/CURIError.h"
#include "foundation/Core.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "tests/support/TempFolder.h"

namespace {

using fenn::P;
using fenn::String;

std::atomic<int> g_liveActions{0};

// Records its number in a shared list when it runs.
class RecordAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    RecordAction(std::vector<int>& record, std::mutex& mutex, int number)
        : m_record(record), m_mutex(mutex), m_number(number)
    {
        ++g_liveActions;
    }
    ~RecordAction() override { --g_liveActions; }
    void execute() override
    {
        std::lock_guard lock(m_mutex);
        m_record.push_back(m_number);
    }

private:
    std::vector<int>& m_record;
    std::mutex& m_mutex;
    int m_number;
};

class FailingAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    void execute() override { throw fenn::CError("Error", "deliberate"); }
};

class SystemLoop : public ::testing::Test
{
protected:
    fenn::posix::CPlatformSession m_platform;
    P<fenn::posix::CSystem> m_system = fenn::make<fenn::posix::CSystem>();
    std::vector<int> m_record;
    std::mutex m_mutex;
};

TEST_F(SystemLoop, ActionsFromManyThreadsRunOnTheLoopThreadInPostingOrder)
{
    constexpr int kThreads = 4;
    constexpr int kPerThread = 250;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < kPerThread; ++i)
                m_system->postAction(fenn::make<RecordAction>(m_record, m_mutex, t * 1000 + i));
        });
    }
    for (std::thread& thread : threads) thread.join();
    // A failing action is logged and the loop goes on to the exit behind it.
    m_system->postAction(fenn::make<FailingAction>());
    m_system->postAction(fenn::make<fenn::CSystemExitAction>());
    fenn::setSystem(m_system);
    m_system->runMessageLoop();
    fenn::setSystem(nullptr);

    ASSERT_EQ(m_record.size(), static_cast<std::size_t>(kThreads * kPerThread));
    std::vector<int> next(kThreads, 0);
    for (int value : m_record) {
        const int thread = value / 1000;
        EXPECT_EQ(value % 1000, next[thread]++) << "thread " << thread << " out of order";
    }
    EXPECT_EQ(g_liveActions.load(), 0);
}

TEST_F(SystemLoop, PumpRunsWhatIsPendingAndUnrunActionsAreReleased)
{
    m_system->postAction(fenn::make<RecordAction>(m_record, m_mutex, 1));
    m_system->postAction(fenn::make<RecordAction>(m_record, m_mutex, 2));
    m_system->pump();
    EXPECT_EQ(m_record, (std::vector<int>{1, 2}));
    EXPECT_EQ(g_liveActions.load(), 0);

    m_system->postAction(fenn::make<RecordAction>(m_record, m_mutex, 3));
    EXPECT_EQ(g_liveActions.load(), 1);
    m_system->discardPending();
    EXPECT_EQ(g_liveActions.load(), 0);
    EXPECT_EQ(m_record.size(), 2u);
}

TEST(PlatformPackage, InstallsTheLoopAndTheDiskStreamsWhileItRuns)
{
    fenn::posix::CPlatformSession platform;
    tbtest::TempFolder folder;
    const std::string path = (folder / "a b%.txt").string();
    std::ofstream(path) << "data";

    P<fenn::CPackageManager> packages = fenn::startCore();
    packages->addPackage(fenn::make<fenn::posix::CPackage>());
    packages->startAll();
    EXPECT_TRUE(fenn::getSystem());
    P<fenn::IInStream> in =
        fenn::CStreamManager::getInstance()->openInStream(fenn::CURI::fromPath(String::copyOf(path)));
    char text[4];
    in->read(text, 4);
    EXPECT_EQ(std::string(text, 4), "data");
    in->close();

    packages->stopAll();
    EXPECT_FALSE(fenn::getSystem());
    EXPECT_THROW(fenn::CStreamManager::getInstance()->openInStream(fenn::CURI::fromPath(String::copyOf(path))),
                 fenn::CFileNotFoundError);
    packages = nullptr;
    fenn::stopCore();
}

}  // namespace
