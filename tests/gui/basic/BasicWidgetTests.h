#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "gui/CWindow.h"
#include "gui/image/CImage.h"
#include "gui/layout/CGrowLayout.h"

namespace basictest {

// Keeps what windows tell it.
class Recorder : public fenn::CObject, public virtual fenn::gui::IWindowListener
{
public:
    struct Event
    {
        fenn::gui::CWindow* window;
        fenn::gui::CNotification notification;
    };

    void windowNotified(fenn::gui::CWindow& window, const fenn::gui::CNotification& notification) override
    {
        events.push_back({&window, notification});
    }
    int count(const fenn::gui::CWindow* window, fenn::gui::Notification kind) const;
    // The index of the last notification of that kind from window, or -2 if none came.
    int lastIndex(const fenn::gui::CWindow* window, fenn::gui::Notification kind) const;

    std::vector<Event> events;
};

// An image of one colour, or of two colours split into left and right halves.
fenn::P<fenn::gui::CImage> solidImage(fenn::gui::CSize size, fenn::gui::CColor left, fenn::gui::CColor right);
fenn::P<fenn::gui::CImage> solidImage(fenn::gui::CSize size, fenn::gui::CColor color);

// A plain window that lines up its children with a grow layout.
fenn::P<fenn::gui::CWindow> makeBox(fenn::gui::Orientation orientation, int spacing = 8);
// Adds child to a window made by makeBox (as a child and to its layout).
void addTo(fenn::gui::CWindow& box, const fenn::P<fenn::gui::CWindow>& child,
           const fenn::gui::CLayoutParams& params = {});

}  // namespace basictest
