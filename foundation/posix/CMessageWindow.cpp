#include "foundation/posix/CMessageWindow.h"

#include <mutex>
#include <unordered_map>

#include "foundation/CError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn::posix {

namespace {

// The live windows by id. Ids count up and are never reused, so an old
// message cannot reach a new window that got the same id.
class CWindowTable
{
public:
    std::uint32_t add(CMessageWindow* window)
    {
        std::lock_guard lock(m_mutex);
        const std::uint32_t id = ++m_lastId;
        m_windows.emplace(id, window);
        return id;
    }

    void remove(std::uint32_t id)
    {
        std::lock_guard lock(m_mutex);
        m_windows.erase(id);
    }

    // A counted reference to the window, or null when it has gone. Windows
    // are released on the GUI thread, the only caller, so one found here is
    // not in its destructor.
    P<CMessageWindow> find(std::uint32_t id) const
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_windows.find(id);
        return found == m_windows.end() ? nullptr : P<CMessageWindow>(found->second);
    }

private:
    mutable std::mutex m_mutex;
    std::uint32_t m_lastId = 0;
    std::unordered_map<std::uint32_t, CMessageWindow*> m_windows;
};

CWindowTable& windowTable()
{
    static CWindowTable* const table = new CWindowTable();
    return *table;
}

struct DiscardFilter
{
    std::uint32_t eventType;
    std::uint32_t windowId;
    std::uint32_t messageId;
    std::optional<std::uintptr_t> wParam;
};

// Runs under SDL's queue lock: it must take no lock of its own.
int SDLCALL keepUnlessDiscarded(void* userdata, SDL_Event* event)
{
    const auto& filter = *static_cast<const DiscardFilter*>(userdata);
    const SDL_UserEvent& user = event->user;
    const bool discard = event->type == filter.eventType && user.windowID == filter.windowId &&
                         static_cast<std::uint32_t>(user.code) == filter.messageId &&
                         (!filter.wParam || reinterpret_cast<std::uintptr_t>(user.data1) == *filter.wParam);
    return discard ? 0 : 1;
}

}  // namespace

std::uint32_t CMessageWindow::getEventType()
{
    static const std::uint32_t type = SDL_RegisterEvents(1);
    return type;
}

CMessageWindow::CMessageWindow()
{
    if (getEventType() == static_cast<std::uint32_t>(-1)) throw CError(String(), localize(texts::createWindowError));
    m_id = windowTable().add(this);
}

CMessageWindow::~CMessageWindow()
{
    windowTable().remove(m_id);
}

bool CMessageWindow::postMessage(std::uint32_t windowId, const Message& message)
{
    SDL_Event event{};
    event.type = getEventType();
    event.user.windowID = windowId;
    event.user.code = static_cast<Sint32>(message.id);
    event.user.data1 = reinterpret_cast<void*>(message.wParam);
    event.user.data2 = reinterpret_cast<void*>(message.lParam);
    return SDL_PushEvent(&event) == 1;
}

void CMessageWindow::discardPendingMessages(std::uint32_t messageId, std::optional<std::uintptr_t> wParam) const
{
    DiscardFilter filter{getEventType(), m_id, messageId, wParam};
    SDL_FilterEvents(&keepUnlessDiscarded, &filter);
}

void CMessageWindow::dispatchEvent(const SDL_UserEvent& event)
{
    const P<CMessageWindow> window = windowTable().find(event.windowID);
    if (!window) return;
    window->deliver(Message{static_cast<std::uint32_t>(event.code), reinterpret_cast<std::uintptr_t>(event.data1),
                            reinterpret_cast<std::intptr_t>(event.data2)});
}

void CMessageWindow::deliver(const Message& message)
{
    m_listeners.notify([this, &message](IMessageListener& listener) { listener.messageReceived(this, message); });
}

}  // namespace fenn::posix
