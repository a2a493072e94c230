#pragma once

#include <SDL.h>

#include <atomic>
#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/ISystem.h"

namespace fenn::posix {

// The platform object on Linux: the SDL event loop of the GUI thread. A
// posted action travels as an SDL user event that carries a counted
// reference, so it stays alive until it has run; actions run in posting
// order because SDL keeps its queue in order. Messages to message windows
// and timer ticks travel the same queue and are handed to their windows.
// Create it on the GUI thread after SDL's event subsystem has started.
class CSystem : public CObject, public virtual ISystem
{
public:
    CSystem();
    ~CSystem() override;

    void runMessageLoop() override;
    void endMessageLoop() override;
    void postAction(P<IAction> action) override;
    void pump() override;
    void setQuitRequestHandler(P<IAction> handler) override { m_quitHandler = std::move(handler); }

    // Releases posted actions that have not run. Called when the platform
    // stops, so nothing posted leaks.
    void discardPending();

private:
    void dispatch(const SDL_Event& event);
    void dispatchGuarded(const SDL_Event& event);
    void afterEventsGuarded();

    std::uint32_t m_actionEvent;
    std::uint32_t m_windowMessageEvent;
    std::atomic<bool> m_endRequested{false};
    P<IAction> m_quitHandler;
};

}  // namespace fenn::posix
