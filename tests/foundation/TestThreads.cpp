#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <latch>
#include <thread>
#include <vector>

#include "foundation/CError.h"
#include "foundation/CMutexFactory.h"
#include "foundation/CMutexLock.h"
#include "foundation/CSignalFactory.h"
#include "foundation/CThreadLocalStorage.h"
#include "foundation/CThreadManager.h"

using namespace fenn;

namespace {

class FunctionAction : public CObject, public virtual IAction
{
public:
    explicit FunctionAction(std::function<void()> function) : function(std::move(function)) {}
    void execute() override { function(); }
    std::function<void()> function;
    P<IThread> thread;  // lets an action hold its own thread
};

std::atomic<int> g_liveTrackers{0};
class Tracker : public CObject
{
public:
    Tracker() { ++g_liveTrackers; }
    ~Tracker() override { --g_liveTrackers; }
};

TEST(Threads, MutexIsRecursiveAndExcludesOtherThreads)
{
    const P<IMutex> mutex = CMutexFactory::getInstance()->createMutex();
    const auto otherThreadGetsIt = [&mutex] {
        bool taken = false;
        std::thread([&] {
            if ((taken = mutex->tryLock())) mutex->unlock();
        }).join();
        return taken;
    };
    {
        const CMutexLock outer(mutex);
        {
            const CMutexLock inner(mutex);  // would block if not recursive
            EXPECT_FALSE(otherThreadGetsIt());
        }
        EXPECT_FALSE(otherThreadGetsIt());
    }
    EXPECT_TRUE(otherThreadGetsIt());
}

TEST(Threads, SignalWakesWaitersAsItsResetModeSays)
{
    // An automatic signal lets one waiter through and is clear again; a
    // manual one wakes all and stays set.
    for (const auto& [reset, waiters] : {std::pair{SignalReset::automatic, 1}, std::pair{SignalReset::manual, 3}}) {
        const P<ISignal> signal = CSignalFactory::getInstance()->createSignal(reset);
        EXPECT_FALSE(signal->waitFor(5));
        std::latch waiting(waiters + 1);
        std::vector<std::thread> threads;
        for (int i = 0; i < waiters; ++i) {
            threads.emplace_back([&] {
                waiting.arrive_and_wait();
                signal->wait();
            });
        }
        waiting.arrive_and_wait();
        signal->set();
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(signal->waitFor(0), reset == SignalReset::manual);
        signal->reset();
        EXPECT_FALSE(signal->isSet());
    }
}

TEST(Threads, ThreadRunsItsActionElsewhereAndKeepsItsError)
{
    const P<IThreadManager> threads = CThreadManager::getInstance();
    const P<ISignal> go = CSignalFactory::getInstance()->createSignal(SignalReset::manual);
    std::uint64_t ranOn = 0;
    const P<IThread> thread = threads->createThread(make<FunctionAction>([&] {
        go->wait();
        ranOn = threads->getCurrentThreadId();
    }));
    EXPECT_FALSE(thread->waitFor(0));
    go->set();
    thread->join();
    EXPECT_FALSE(thread->isRunning());
    EXPECT_NE(ranOn, threads->getCurrentThreadId());
    EXPECT_FALSE(thread->getError());

    const P<IThread> failing = threads->createThread(make<FunctionAction>([] { throw CError("Title", "it failed"); }));
    failing->join();
    ASSERT_TRUE(dynamic_cast<CError*>(failing->getError().get()));
    EXPECT_EQ(failing->getError()->getDescription().toStdString(), "it failed");

    // An action that holds the last count on its own thread: the thread
    // object then goes on that thread and must not wait for itself.
    const P<ISignal> released = CSignalFactory::getInstance()->createSignal(SignalReset::manual);
    const P<FunctionAction> selfHolding = make<FunctionAction>(nullptr);
    selfHolding->function = [&go, &released, body = selfHolding.get()] {
        go->wait();
        body->thread = nullptr;
        released->set();
    };
    go->reset();
    selfHolding->thread = threads->createThread(selfHolding);
    go->set();
    EXPECT_TRUE(released->waitFor(20000));
}

// With the address space capped near what is mapped now, no stack can be
// mapped for a new thread. Exits 0 when that gives the thread error.
[[noreturn]] void createThreadWithoutAddressSpace()
{
    std::ifstream statm("/proc/self/statm");
    unsigned long long pages = 0;
    statm >> pages;
    const rlim_t cap = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (1u << 20);
    const rlimit limit{cap, cap};
    if (setrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(2);
    try {
        CThreadManager::getInstance()->createThread(make<FunctionAction>([] {}));
        std::_Exit(3);
    } catch (const CError& error) {
        const std::string text = error.getDescription().toStdString();
        std::_Exit(text.starts_with("Error creating thread (") && text.ends_with(").") ? 0 : 4);
    }
}

TEST(ThreadsDeathTest, ThreadCreationWithoutAddressSpaceThrowsCError)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(createThreadWithoutAddressSpace(), ::testing::ExitedWithCode(0), "");
}

TEST(Threads, ThreadLocalValuesBelongToTheirThreadAndEndWithIt)
{
    constexpr std::uint32_t kKey = 0x43445047;  // "CDPG"
    const P<CThreadLocalStorageManager> manager = CThreadLocalStorageManager::getInstance();
    const P<IThreadLocalStorage> mine = manager->getStorage();
    const P<Tracker> mainValue = make<Tracker>();
    mine->setValue(kKey, mainValue);
    static std::atomic<int> cleanups{0};
    cleanups = 0;
    const P<ISimpleThreadLocalStorage> slot =
        CSimpleThreadLocalStorageFactory::getInstance()->createStorage([](void*) { ++cleanups; });
    slot->setValue(mainValue.get());
    const int liveBefore = g_liveTrackers;

    std::thread([&] {
        const P<IThreadLocalStorage> theirs = manager->getStorage();
        EXPECT_NE(theirs, mine);
        EXPECT_FALSE(theirs->getValue(kKey));
        EXPECT_EQ(slot->getValue(), nullptr);
        theirs->setValue(kKey, make<Tracker>());
        slot->setValue(theirs.get());
    }).join();

    // The thread's values went with it; the main thread's stay.
    EXPECT_EQ(g_liveTrackers.load(), liveBefore);
    EXPECT_EQ(cleanups.load(), 1);
    EXPECT_EQ(manager->getStorage(), mine);
    EXPECT_EQ(mine->getValue(kKey), mainValue);
    EXPECT_EQ(slot->getValue(), mainValue.get());
    mine->removeValue(kKey);
    EXPECT_EQ(mainValue->getReferenceCount(), 1);
    slot->setValue(nullptr);
}

}  // namespace
