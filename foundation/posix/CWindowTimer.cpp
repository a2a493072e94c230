#include "foundation/posix/CWindowTimer.h"

#include <mutex>
#include <unordered_map>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn::posix {

namespace {

// The running timers, by a key that SDL's callback gets in place of a
// pointer. SDL_RemoveTimer does not wait for a callback that is running at
// that moment, so the callback must never hold anything that the timer
// frees: it looks its key up here and stops when the key has gone.
class CRunningTimers
{
public:
    std::uint32_t add(std::uint32_t windowId)
    {
        std::lock_guard lock(m_mutex);
        do {
            ++m_lastKey;
        } while (m_lastKey == 0 || m_timers.contains(m_lastKey));
        m_timers.emplace(m_lastKey, Entry{windowId, false});
        return m_lastKey;
    }

    void remove(std::uint32_t key)
    {
        std::lock_guard lock(m_mutex);
        m_timers.erase(key);
    }

    // Queues a tick unless one is waiting already; false when the key has gone.
    bool tick(std::uint32_t key)
    {
        // The lock is held while the message is pushed, so once remove has
        // returned no further tick of that key can reach the queue.
        std::lock_guard lock(m_mutex);
        const auto found = m_timers.find(key);
        if (found == m_timers.end()) return false;
        Entry& entry = found->second;
        if (!entry.pending) {
            entry.pending = CMessageWindow::postMessage(
                entry.windowId, CMessageWindow::Message{CWindowTimer::kTimerMessage, CWindowTimer::kTimerId,
                                                        static_cast<std::intptr_t>(key)});
        }
        return true;
    }

    // The queued tick has been taken; the next one may be queued.
    void ticked(std::uint32_t key)
    {
        std::lock_guard lock(m_mutex);
        if (const auto found = m_timers.find(key); found != m_timers.end()) found->second.pending = false;
    }

private:
    struct Entry
    {
        std::uint32_t windowId;
        bool pending;
    };

    std::mutex m_mutex;
    std::uint32_t m_lastKey = 0;
    std::unordered_map<std::uint32_t, Entry> m_timers;
};

CRunningTimers& runningTimers()
{
    static CRunningTimers* const timers = new CRunningTimers();
    return *timers;
}

// Runs on SDL's timer thread.
Uint32 SDLCALL onSystemTimer(Uint32 interval, void* param)
{
    const auto key = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(param));
    return runningTimers().tick(key) ? interval : 0;
}

}  // namespace

CWindowTimer::CWindowTimer(P<CMessageWindow> window) : m_window(window ? std::move(window) : make<CMessageWindow>())
{
    m_window->addFrailListener(this);
}

CWindowTimer::~CWindowTimer()
{
    stop();
    m_window->removeListener(this);
}

void CWindowTimer::setInterval(std::int32_t milliseconds)
{
    if (milliseconds < 1) throw CInvalidArgError(this, "setInterval", localize(texts::windowTimerIntervalGEZero));
    m_interval = milliseconds;
    if (isRunning()) {
        stop();
        start();
    }
}

void CWindowTimer::start()
{
    if (isRunning()) return;
    if (m_interval < 1) throw CInvalidObjectStateError(this, "the timer has no interval");
    const std::uint32_t key = runningTimers().add(m_window->getId());
    const SDL_TimerID systemTimer = SDL_AddTimer(static_cast<Uint32>(m_interval), &onSystemTimer,
                                                 reinterpret_cast<void*>(static_cast<std::uintptr_t>(key)));
    if (systemTimer == 0) {
        runningTimers().remove(key);
        throw CError(String(), String("A timer could not be started: ") + String::copyOf(SDL_GetError()));
    }
    m_key = key;
    m_systemTimer = systemTimer;
}

void CWindowTimer::stop()
{
    if (!isRunning()) return;
    runningTimers().remove(m_key);
    SDL_RemoveTimer(m_systemTimer);
    m_key = 0;
    m_systemTimer = 0;
    m_window->discardPendingMessages(kTimerMessage, kTimerId);
}

void CWindowTimer::messageReceived(CMessageWindow* /*window*/, const CMessageWindow::Message& message)
{
    if (message.id != kTimerMessage || message.wParam != kTimerId) return;
    // A tick of a run that has ended, already taken out of the queue when
    // the timer stopped.
    if (m_key == 0 || static_cast<std::uint32_t>(message.lParam) != m_key) return;
    runningTimers().ticked(m_key);
    // A listener may release the timer.
    const P<CWindowTimer> self(this);
    m_listeners.notify([this](ITimerListener& listener) { listener.timerFired(this); });
}

}  // namespace fenn::posix
