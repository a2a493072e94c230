#pragma once

#include <SDL.h>

#include <cstdint>
#include <optional>

#include "foundation/CObject.h"
#include "foundation/TFrailArray.h"

namespace fenn::posix {

// Brings messages to the GUI thread. A window is an entry in a table of
// live windows; a message is an SDL user event that names its target by id
// and carries two numbers, so a message that arrives after its window has
// gone finds no entry and is dropped. Messages arrive in the order in which
// they were posted. Windows are made, used and released on the GUI thread;
// other threads post by id and never hold a window.
class CMessageWindow : public CObject
{
public:
    struct Message
    {
        std::uint32_t id = 0;
        std::uintptr_t wParam = 0;
        std::intptr_t lParam = 0;
    };

    class IMessageListener : public virtual IBase
    {
    public:
        virtual void messageReceived(CMessageWindow* window, const Message& message) = 0;
    };

    // Throws CError when SDL has no event type left for window messages.
    CMessageWindow();
    ~CMessageWindow() override;
    CMessageWindow(const CMessageWindow&) = delete;
    CMessageWindow& operator=(const CMessageWindow&) = delete;

    // Never 0, and never used again in this process once the window is gone.
    std::uint32_t getId() const { return m_id; }

    // Listeners are told from the last added to the first.
    void addListener(IMessageListener* listener) { m_listeners.add(listener); }
    void addFrailListener(IMessageListener* listener) { m_listeners.addFrail(listener); }
    void removeListener(IMessageListener* listener) { m_listeners.remove(listener); }

    void postMessage(const Message& message) const { postMessage(m_id, message); }
    // Queues a message for a window; any thread. False if SDL's queue
    // refused it.
    static bool postMessage(std::uint32_t windowId, const Message& message);

    // Takes this window's queued messages with the given id out of SDL's
    // queue, or only those that also carry the given wParam.
    void discardPendingMessages(std::uint32_t messageId, std::optional<std::uintptr_t> wParam = std::nullopt) const;

    // The SDL event type of window messages, registered once per process;
    // (Uint32)-1 if SDL had none left.
    static std::uint32_t getEventType();
    // Hands a window message event to its window, if that still exists.
    // Called by the event loop on the GUI thread.
    static void dispatchEvent(const SDL_UserEvent& event);

private:
    void deliver(const Message& message);

    std::uint32_t m_id = 0;
    TFrailArray<IMessageListener> m_listeners;
};

}  // namespace fenn::posix
