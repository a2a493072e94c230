#include "foundation/posix/CSystem.h"

#include "foundation/CError.h"
#include "foundation/CLogManager.h"
#include "foundation/posix/CMessageWindow.h"
#include "foundation/posix/SDLEventHandlers.h"

namespace fenn::posix {

namespace {

// SDL hands out event types from a fixed range, so they are registered once
// for the process and shared by every loop object.
std::uint32_t actionEventType()
{
    static const std::uint32_t type = SDL_RegisterEvents(1);
    return type;
}

}  // namespace

CSystem::CSystem() : m_actionEvent(actionEventType()), m_windowMessageEvent(CMessageWindow::getEventType())
{
    if (m_actionEvent == static_cast<std::uint32_t>(-1))
        throw CError("Platform error", String("No SDL event type is left for posted actions."));
}

CSystem::~CSystem()
{
    discardPending();
}

void CSystem::runMessageLoop()
{
    m_endRequested = false;
    while (!m_endRequested) {
        SDL_Event event;
        if (SDL_PollEvent(&event) == 0) {
            // One repaint per turn: everything pending has been handled.
            afterEventsGuarded();
            if (m_endRequested) break;
            if (SDL_WaitEvent(&event) == 0) {
                throw CError("Platform error",
                             String("Waiting for events failed: ") + String::copyOf(SDL_GetError()));
            }
        }
        dispatchGuarded(event);
    }
    m_endRequested = false;
}

void CSystem::endMessageLoop()
{
    m_endRequested = true;
    // An empty action event wakes the loop if it is waiting.
    SDL_Event wake{};
    wake.type = m_actionEvent;
    SDL_PushEvent(&wake);
}

void CSystem::postAction(P<IAction> action)
{
    if (!action) return;
    SDL_Event event{};
    event.type = m_actionEvent;
    event.user.data1 = action.detach();
    if (SDL_PushEvent(&event) != 1) {
        P<IAction> dropped(static_cast<IAction*>(event.user.data1), adopt);
        throw CError("Platform error", String("An action could not be posted: ") + String::copyOf(SDL_GetError()));
    }
}

void CSystem::pump()
{
    // SDL_PollEvent ends a round at a marker it queues behind the events
    // pending when the round began, so what a handler posts (a timer tick
    // among it) waits for the next pump instead of keeping this one going.
    SDL_Event event;
    while (!m_endRequested && SDL_PollEvent(&event) == 1) dispatchGuarded(event);
    afterEventsGuarded();
}

void CSystem::afterEventsGuarded()
{
    try {
        runAfterSDLEvents();
    } catch (const CException& error) {
        CLogManager::getInstance()->error("loop", String("Unhandled error while painting: ") + error.getDescription());
    }
}

void CSystem::discardPending()
{
    SDL_PumpEvents();
    SDL_Event events[64];
    int count = 0;
    while ((count = SDL_PeepEvents(events, 64, SDL_GETEVENT, m_actionEvent, m_actionEvent)) > 0) {
        for (int i = 0; i < count; ++i) P<IAction> dropped(static_cast<IAction*>(events[i].user.data1), adopt);
    }
}

void CSystem::dispatchGuarded(const SDL_Event& event)
{
    // An error that escapes a piece of work is logged and the loop goes on:
    // one failed action must not end the program.
    try {
        dispatch(event);
    } catch (const CException& error) {
        CLogManager::getInstance()->error("loop", String("Unhandled error: ") + error.getDescription());
    }
}

void CSystem::dispatch(const SDL_Event& event)
{
    if (event.type == m_actionEvent) {
        P<IAction> action(static_cast<IAction*>(event.user.data1), adopt);
        if (action) action->execute();
    } else if (event.type == m_windowMessageEvent) {
        CMessageWindow::dispatchEvent(event.user);
    } else if (event.type == SDL_QUIT) {
        if (m_quitHandler) {
            P<IAction> handler = m_quitHandler;
            handler->execute();
        } else {
            endMessageLoop();
        }
    } else {
        dispatchToSDLEventHandlers(event);
    }
}

}  // namespace fenn::posix
