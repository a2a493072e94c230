#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CObject.h"
#include "gui/CFrameWindow.h"
#include "gui/CWindow.h"

namespace edittest {

// Counts what windows tell it.
class Recorder : public fenn::CObject, public virtual fenn::gui::IWindowListener
{
public:
    void windowNotified(fenn::gui::CWindow& window, const fenn::gui::CNotification& notification) override
    {
        events.push_back({&window, notification.kind});
    }
    int count(const fenn::gui::CWindow* window, fenn::gui::Notification kind) const
    {
        int n = 0;
        for (const auto& [source, what] : events) n += source == window && what == kind ? 1 : 0;
        return n;
    }
    std::vector<std::pair<fenn::gui::CWindow*, fenn::gui::Notification>> events;
};

// Presses and releases a key.
inline void press(fenn::gui::CFrameWindow& frame, fenn::gui::Key key, std::uint32_t modifiers = fenn::gui::modifierNone)
{
    frame.injectKey({key, 0, modifiers}, true);
    frame.injectKey({key, 0, modifiers}, false);
}

// Presses and releases a character key with modifiers (Ctrl+C and the like).
inline void pressCharacter(fenn::gui::CFrameWindow& frame, char32_t character, std::uint32_t modifiers)
{
    frame.injectKey({fenn::gui::Key::character, character, modifiers}, true);
    frame.injectKey({fenn::gui::Key::character, character, modifiers}, false);
}

}  // namespace edittest
