#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/CObjectError.h"
#include "foundation/posix/CMessageWindow.h"
#include "foundation/posix/CPackage.h"
#include "foundation/posix/CWindowTimer.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::posix::CMessageWindow;
using fenn::posix::CWindowTimer;

class RecordingListener : public fenn::CObject, public virtual CMessageWindow::IMessageListener
{
public:
    void messageReceived(CMessageWindow* window, const CMessageWindow::Message& message) override
    {
        EXPECT_EQ(std::this_thread::get_id(), guiThread);
        EXPECT_EQ(window->getId(), windowId);
        received.push_back(message);
    }

    std::thread::id guiThread = std::this_thread::get_id();
    std::uint32_t windowId = 0;
    std::vector<CMessageWindow::Message> received;
};

class CountingTimerListener : public fenn::CObject, public virtual CWindowTimer::ITimerListener
{
public:
    void timerFired(CWindowTimer* timer) override
    {
        EXPECT_EQ(std::this_thread::get_id(), guiThread);
        EXPECT_EQ(timer, expected);
        ++fired;
        if (onFire) onFire();
    }

    std::thread::id guiThread = std::this_thread::get_id();
    CWindowTimer* expected = nullptr;
    int fired = 0;
    std::function<void()> onFire;
};

// Waits until SDL's timer thread has run this many 1 ms ticks of its own:
// proof that this much timer time has passed, without guessing with a sleep.
void awaitTimerThreadTicks(int ticks)
{
    static std::mutex mutex;
    static std::condition_variable done;
    static int left = 0;
    {
        std::lock_guard lock(mutex);
        left = ticks;
    }
    SDL_AddTimer(
        1,
        [](Uint32 interval, void*) -> Uint32 {
            std::lock_guard lock(mutex);
            if (--left > 0) return interval;
            done.notify_all();
            return 0;
        },
        nullptr);
    std::unique_lock lock(mutex);
    done.wait(lock, [] { return left <= 0; });
}

class MessageWindow : public ::testing::Test
{
protected:
    // Pumps the way a long job does, until the condition holds; false when
    // it did not come within a generous time.
    bool pumpUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            m_system->pump();
            std::this_thread::yield();
        }
        return true;
    }

    // The window messages for a window that wait in SDL's queue.
    static int queuedFor(const CMessageWindow& window)
    {
        SDL_Event events[256];
        const int count =
            SDL_PeepEvents(events, 256, SDL_PEEKEVENT, CMessageWindow::getEventType(), CMessageWindow::getEventType());
        int matching = 0;
        for (int i = 0; i < count; ++i) matching += events[i].user.windowID == window.getId() ? 1 : 0;
        return matching;
    }

    fenn::posix::CPlatformSession m_platform;
    P<fenn::posix::CSystem> m_system = make<fenn::posix::CSystem>();
};

TEST_F(MessageWindow, MessagesFromManyThreadsArriveOnTheGuiThreadEachInItsOrder)
{
    constexpr int kThreads = 4;
    constexpr int kPerThread = 500;
    const P<CMessageWindow> window = make<CMessageWindow>();
    const P<RecordingListener> listener = make<RecordingListener>();
    listener->windowId = window->getId();
    window->addListener(listener.get());

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, id = window->getId()] {
            for (int i = 0; i < kPerThread; ++i) {
                EXPECT_TRUE(
                    CMessageWindow::postMessage(id, CMessageWindow::Message{0x400u + static_cast<std::uint32_t>(t),
                                                                            static_cast<std::uintptr_t>(i), -i}));
            }
        });
    }
    ASSERT_TRUE(pumpUntil([&] { return listener->received.size() == kThreads * kPerThread; }));
    for (std::thread& thread : threads) thread.join();

    std::vector<std::uintptr_t> next(kThreads, 0);
    for (const CMessageWindow::Message& message : listener->received) {
        const std::uint32_t thread = message.id - 0x400u;
        ASSERT_LT(thread, static_cast<std::uint32_t>(kThreads));
        EXPECT_EQ(message.wParam, next[thread]) << "thread " << thread << " out of order";
        EXPECT_EQ(message.lParam, -static_cast<std::intptr_t>(next[thread]));
        ++next[thread];
    }
    window->removeListener(listener.get());
}

TEST_F(MessageWindow, MessageToAWindowThatHasGoneIsDropped)
{
    const P<RecordingListener> listener = make<RecordingListener>();
    P<CMessageWindow> window = make<CMessageWindow>();
    const std::uint32_t goneId = window->getId();
    window->addListener(listener.get());
    window->postMessage({1, 2, 3});
    CMessageWindow::postMessage(goneId, {4, 5, 6});
    window = nullptr;
    // A new window never takes the old one's id.
    EXPECT_NE(make<CMessageWindow>()->getId(), goneId);
    m_system->pump();
    EXPECT_TRUE(listener->received.empty());
}

TEST_F(MessageWindow, TimerFiresOnTheGuiThreadWhileAJobPumps)
{
    const P<CWindowTimer> timer = make<CWindowTimer>();
    const P<CountingTimerListener> listener = make<CountingTimerListener>();
    listener->expected = timer.get();
    timer->addListener(listener.get());
    timer->setInterval(5);
    timer->start();
    EXPECT_TRUE(timer->isRunning());
    ASSERT_TRUE(pumpUntil([&] { return listener->fired >= 3; }));

    // A listener may stop the timer; nothing fires afterwards.
    listener->onFire = [&] { timer->stop(); };
    ASSERT_TRUE(pumpUntil([&] { return !timer->isRunning(); }));
    const int fired = listener->fired;
    awaitTimerThreadTicks(10);
    m_system->pump();
    EXPECT_EQ(listener->fired, fired);
}

TEST_F(MessageWindow, TimerTicksDoNotPileUpAndARestartDropsTheOldOnes)
{
    P<CWindowTimer> timer = make<CWindowTimer>();
    const P<CountingTimerListener> listener = make<CountingTimerListener>();
    listener->expected = timer.get();
    timer->addListener(listener.get());
    timer->setInterval(1);
    timer->start();

    // Many periods pass while the loop does not run: one tick waits.
    awaitTimerThreadTicks(30);
    EXPECT_EQ(queuedFor(*timer->getWindow()), 1);
    m_system->pump();
    EXPECT_EQ(listener->fired, 1);

    // A new interval restarts the timer and drops the tick that waits.
    awaitTimerThreadTicks(10);
    EXPECT_EQ(queuedFor(*timer->getWindow()), 1);
    timer->setInterval(60000);
    EXPECT_TRUE(timer->isRunning());
    EXPECT_EQ(queuedFor(*timer->getWindow()), 0);
    m_system->pump();
    EXPECT_EQ(listener->fired, 1);

    for (std::int32_t bad : {0, -1}) {
        try {
            timer->setInterval(bad);
            ADD_FAILURE() << bad << " was taken";
        } catch (const fenn::CInvalidArgError& error) {
            EXPECT_NE(error.getDescription().toStdString().find("window timer intervals have to be >=0"),
                      std::string::npos);
        }
    }
    EXPECT_EQ(timer->getInterval(), 60000);

    // A timer released with a tick queued takes the tick with it.
    const P<CMessageWindow> window = timer->getWindow();
    timer->setInterval(1);
    awaitTimerThreadTicks(10);
    timer->removeListener(listener.get());
    timer = nullptr;
    EXPECT_EQ(queuedFor(*window), 0);
}

}  // namespace
