#include "foundation/posix/SDLEventHandlers.h"

#include <algorithm>
#include <vector>

namespace fenn::posix {

namespace {

std::vector<ISDLEventHandler*>& handlers()
{
    static std::vector<ISDLEventHandler*> list;
    return list;
}

}  // namespace

void addSDLEventHandler(ISDLEventHandler* handler)
{
    if (handler && std::find(handlers().begin(), handlers().end(), handler) == handlers().end())
        handlers().push_back(handler);
}

void removeSDLEventHandler(ISDLEventHandler* handler)
{
    std::erase(handlers(), handler);
}

void dispatchToSDLEventHandlers(const SDL_Event& event)
{
    // A handler may add or remove handlers (a dialog opening or closing).
    const std::vector<ISDLEventHandler*> current = handlers();
    for (ISDLEventHandler* handler : current) {
        if (std::find(handlers().begin(), handlers().end(), handler) == handlers().end()) continue;
        if (handler->handleSDLEvent(event)) return;
    }
}

void runAfterSDLEvents()
{
    const std::vector<ISDLEventHandler*> current = handlers();
    for (ISDLEventHandler* handler : current) {
        if (std::find(handlers().begin(), handlers().end(), handler) != handlers().end()) handler->afterSDLEvents();
    }
}

}  // namespace fenn::posix
