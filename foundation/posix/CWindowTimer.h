#pragma once

#include <SDL.h>

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/TFrailArray.h"
#include "foundation/posix/CMessageWindow.h"

namespace fenn::posix {

// A periodic timer whose ticks arrive as timer messages on a message window
// and are handed to its listeners on the GUI thread. SDL's timer thread only
// queues the message; at most one tick per timer waits in the queue, so a
// slow loop gets one late tick, not a pile of them. Made, used and released
// on the GUI thread.
class CWindowTimer : public CObject, public virtual CMessageWindow::IMessageListener
{
public:
    class ITimerListener : public virtual IBase
    {
    public:
        virtual void timerFired(CWindowTimer* timer) = 0;
    };

    // The timer id that the window's timer messages carry as wParam.
    static constexpr std::uintptr_t kTimerId = 17;
    // The message id of timer messages.
    static constexpr std::uint32_t kTimerMessage = 0x0113;

    // Ticks on the given window, or on a window of its own when none is given.
    explicit CWindowTimer(P<CMessageWindow> window = nullptr);
    ~CWindowTimer() override;
    CWindowTimer(const CWindowTimer&) = delete;
    CWindowTimer& operator=(const CWindowTimer&) = delete;

    // Sets the period in milliseconds; throws CInvalidArgError below 1. A
    // running timer starts again with the new period, and ticks of the old
    // one that are still queued are dropped.
    void setInterval(std::int32_t milliseconds);
    std::int32_t getInterval() const { return m_interval; }

    // Starts ticking; nothing happens when it runs already. Throws
    // CInvalidObjectStateError without an interval, CError when SDL gives
    // no timer.
    void start();
    // Stops ticking and drops ticks that are still queued.
    void stop();
    bool isRunning() const { return m_key != 0; }

    P<CMessageWindow> getWindow() const { return m_window; }

    void addListener(ITimerListener* listener) { m_listeners.add(listener); }
    void addFrailListener(ITimerListener* listener) { m_listeners.addFrail(listener); }
    void removeListener(ITimerListener* listener) { m_listeners.remove(listener); }

    void messageReceived(CMessageWindow* window, const CMessageWindow::Message& message) override;

private:
    P<CMessageWindow> m_window;
    std::int32_t m_interval = 0;
    // The running system timer: our key in the table of running timers
    // (0 when stopped) and SDL's id.
    std::uint32_t m_key = 0;
    SDL_TimerID m_systemTimer = 0;
    TFrailArray<ITimerListener> m_listeners;
};

}  // namespace fenn::posix
