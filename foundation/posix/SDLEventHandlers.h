#pragma once

#include <SDL.h>

namespace fenn::posix {

// Takes the SDL events that the loop itself does not handle (window, mouse,
// keyboard, text, drops) and repaints when a turn of the loop has handled
// every pending event. The GUI toolkit's frames register one each. GUI
// thread only.
class ISDLEventHandler
{
public:
    virtual ~ISDLEventHandler() = default;
    // True when the event was this handler's.
    virtual bool handleSDLEvent(const SDL_Event& event) = 0;
    // The queue is empty: paint what changed.
    virtual void afterSDLEvents() = 0;
};

// The handler must be removed before it goes.
void addSDLEventHandler(ISDLEventHandler* handler);
void removeSDLEventHandler(ISDLEventHandler* handler);
// Offers the event to the handlers in order of registration.
void dispatchToSDLEventHandlers(const SDL_Event& event);
void runAfterSDLEvents();

}  // namespace fenn::posix
