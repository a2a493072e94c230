#include "tests/gui/basic/BasicWidgetTests.h"

#include <cstdint>

namespace basictest {

using namespace fenn::gui;

int Recorder::count(const CWindow* window, Notification kind) const
{
    int n = 0;
    for (const Event& event : events) n += event.window == window && event.notification.kind == kind ? 1 : 0;
    return n;
}

int Recorder::lastIndex(const CWindow* window, Notification kind) const
{
    int index = -2;
    for (const Event& event : events) {
        if (event.window == window && event.notification.kind == kind) index = event.notification.index;
    }
    return index;
}

fenn::P<CImage> solidImage(CSize size, CColor left, CColor right)
{
    std::vector<std::uint8_t> rgba;
    rgba.reserve(static_cast<std::size_t>(size.width * size.height * 4));
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const CColor color = x < size.width / 2 ? left : right;
            rgba.insert(rgba.end(), {color.red(), color.green(), color.blue(), color.alpha()});
        }
    }
    return fenn::make<CImage>(size, rgba);
}

fenn::P<CImage> solidImage(CSize size, CColor color)
{
    return solidImage(size, color, color);
}

fenn::P<CWindow> makeBox(Orientation orientation, int spacing)
{
    auto box = fenn::make<CWindow>();
    auto layout = fenn::make<CGrowLayout>(orientation);
    layout->setSpacing(spacing);
    box->setLayout(layout);
    return box;
}

void addTo(CWindow& box, const fenn::P<CWindow>& child, const CLayoutParams& params)
{
    box.addChild(child);
    box.getLayout()->addItem(child, params);
}

}  // namespace basictest
