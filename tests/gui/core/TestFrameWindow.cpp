#include <cairo.h>
#include <gtest/gtest.h>

#include <vector>

#include "foundation/CObjectError.h"
#include "gui/CStyle.h"
#include "gui/widgets/CButton.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

// Counts what windows tell it.
class Recorder : public fenn::CObject, public virtual IWindowListener
{
public:
    void windowNotified(CWindow& window, const CNotification& notification) override
    {
        events.push_back({&window, notification.kind});
    }
    int count(const CWindow* window, Notification kind) const
    {
        int n = 0;
        for (const auto& [source, what] : events) n += source == window && what == kind ? 1 : 0;
        return n;
    }
    std::vector<std::pair<CWindow*, Notification>> events;
};

P<CButton> button(const char* text, const char* id)
{
    auto made = make<CButton>(text);
    made->setId(id);
    return made;
}

TEST(FrameWindow, MouseAndKeyboardReachTheRightButton)
{
    tbtest::GuiTestFrame test;
    auto recorder = make<Recorder>();
    auto ok = button("OK", "ok");
    auto cancel = button("Cancel", "cancel");
    auto off = button("Off", "off");
    off->setEnabled(false);
    for (const auto& b : {ok, cancel, off}) {
        b->addListener(recorder.get());
        test.add(b);
    }
    test.render();
    EXPECT_EQ(test.frame().findWindow("cancel"), cancel.get());

    test.frame().injectClick(test.centreOf(*cancel));
    test.frame().injectClick(test.centreOf(*off));
    EXPECT_EQ(recorder->count(cancel.get(), Notification::clicked), 1);
    EXPECT_EQ(recorder->count(ok.get(), Notification::clicked), 0);
    EXPECT_EQ(recorder->count(off.get(), Notification::clicked), 0);
    EXPECT_TRUE(cancel->hasFocus());

    // A press that is released elsewhere is no click.
    test.frame().injectMouseButton(test.centreOf(*ok), MouseButton::left, true);
    test.frame().injectMouseMove(test.centreOf(*cancel));
    test.frame().injectMouseButton(test.centreOf(*cancel), MouseButton::left, false);
    EXPECT_EQ(recorder->count(ok.get(), Notification::clicked), 0);

    // Tab runs through the enabled buttons and wraps; Space clicks.
    test.frame().setFocusWindow(nullptr);
    test.frame().injectKey({Key::tab}, true);
    EXPECT_TRUE(ok->hasFocus());
    EXPECT_TRUE(test.frame().isFocusVisible());
    test.frame().injectKey({Key::tab}, true);
    test.frame().injectKey({Key::tab}, true);
    EXPECT_TRUE(ok->hasFocus());
    test.frame().injectKey({Key::tab, 0, modifierShift}, true);
    EXPECT_TRUE(cancel->hasFocus());
    test.frame().injectKey({Key::space}, true);
    EXPECT_EQ(recorder->count(cancel.get(), Notification::clicked), 2);

    // Hiding the focused window takes the focus away.
    cancel->setVisible(false);
    EXPECT_EQ(test.frame().getFocusWindow(), nullptr);
}

TEST(FrameWindow, AcceleratorsRunWhenNoWindowUsesTheKey)
{
    tbtest::GuiTestFrame test;
    auto ok = button("OK", "ok");
    test.add(ok);
    int help = 0;
    int escape = 0;
    int save = 0;
    test.frame().addAccelerator("F1", [&] { ++help; });
    test.frame().addAccelerator("escape", [&] { ++escape; });
    test.frame().addAccelerator("Ctrl+S", [&] { ++save; });
    test.frame().injectKey({Key::f1}, true);
    test.frame().injectKey({Key::escape}, true);
    test.frame().injectKey({Key::character, U's', modifierControl}, true);
    test.frame().injectKey({Key::character, U's'}, true);
    EXPECT_EQ(help, 1);
    EXPECT_EQ(escape, 1);
    EXPECT_EQ(save, 1);
    // Enter on a focused button is the button's, not the frame's.
    int enter = 0;
    test.frame().addAccelerator("Enter", [&] { ++enter; });
    ok->setFocus();
    test.frame().injectKey({Key::enter}, true);
    EXPECT_EQ(enter, 0);
    test.frame().setFocusWindow(nullptr);
    test.frame().injectKey({Key::enter}, true);
    EXPECT_EQ(enter, 1);
    EXPECT_THROW(test.frame().addAccelerator("Hyper+Q", [] {}), fenn::CInvalidArgError);
    EXPECT_THROW(test.frame().addAccelerator("F13", [] {}), fenn::CInvalidArgError);
}

TEST(FrameWindow, PaintsOnlyWhatChangedAndFollowsTheSize)
{
    tbtest::GuiTestFrame test(300, 200);
    auto first = button("First", "first");
    auto second = button("Second", "second");
    test.add(first, {.horzGrow = 1});
    test.add(second);
    test.render();
    // The growing button spans the frame inside its margins.
    EXPECT_EQ(first->getBounds().x, 12);
    EXPECT_EQ(first->getBounds().width, 300 - 24);
    EXPECT_LT(second->getBounds().width, 300 - 24);
    EXPECT_GT(second->getBounds().y, first->getBounds().bottom());
    const CColor background = CStyle::get().windowBackground;
    EXPECT_EQ(test.pixel(2, 2), background);
    EXPECT_NE(test.pixel(test.centreOf(*first).x - 30, test.centreOf(*first).y), background);

    // Hovering the second button repaints that button alone.
    test.frame().injectMouseMove(test.centreOf(*second));
    const std::vector<CRect> painted = test.frame().updateAndPaint();
    ASSERT_FALSE(painted.empty());
    for (const CRect& rect : painted) {
        EXPECT_TRUE(rect.intersected(second->toFrame(second->getClientRect())) == rect)
            << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height;
    }
    EXPECT_TRUE(test.frame().updateAndPaint().empty());

    // Windows inside windows paint at their place in the frame.
    auto panel = fenn::make<CWindow>();
    panel->setBackColor(CColor(200, 30, 30));
    auto inner = fenn::make<CWindow>();
    inner->setBackColor(CColor(30, 200, 30));
    panel->addChild(inner);
    test.add(panel, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    inner->setBounds({20, 10, 30, 20});
    test.render();
    const CRect innerRect = inner->toFrame(inner->getClientRect());
    EXPECT_EQ(innerRect.x, panel->getBounds().x + 20);
    EXPECT_EQ(test.pixel(innerRect.x + 5, innerRect.y + 5), CColor(30, 200, 30));
    EXPECT_EQ(test.pixel(innerRect.x - 5, innerRect.y + 5), CColor(200, 30, 30));

    // A new size lays the tree out again before the next paint.
    test.frame().setBounds({0, 0, 500, 200});
    test.render();
    EXPECT_EQ(first->getBounds().width, 500 - 24);
}

TEST(FrameWindow, ScaledFramesPaintMoreDevicePixels)
{
    tbtest::GuiTestFrame test(200, 100, 2.0);
    auto ok = button("OK", "ok");
    test.add(ok);
    test.render();
    EXPECT_EQ(cairo_image_surface_get_width(test.frame().getBuffer()), 400);
    EXPECT_EQ(cairo_image_surface_get_height(test.frame().getBuffer()), 200);
    // The button's left edge in layout pixels is at twice that in device pixels.
    const CColor background = CStyle::get().windowBackground;
    const CPoint centre = test.centreOf(*ok);
    EXPECT_NE(test.pixel(centre.x * 2, centre.y * 2), background);
    EXPECT_EQ(test.pixel(8 * 2, centre.y * 2), background);
}

TEST(FrameWindow, ToolTipsShowForTheWindowUnderThePointerAndGoWhenItMoves)
{
    tbtest::GuiTestFrame test;
    auto ok = button("OK", "ok");
    ok->setToolTipText("Starts the conversion");
    auto plain = button("Plain", "plain");
    test.add(ok);
    test.add(plain);
    test.render();
    test.frame().injectMouseMove(test.centreOf(*ok));
    test.frame().showPendingToolTip();
    ASSERT_NE(test.frame().getToolTip(), nullptr);
    EXPECT_TRUE(test.frame().getToolTip()->getText().equals("Starts the conversion"));
    // It lies below the pointer, inside the frame, and lets clicks through.
    const CRect tip = test.frame().getToolTip()->getBounds();
    EXPECT_GT(tip.y, test.centreOf(*ok).y);
    EXPECT_LE(tip.right(), 400);
    EXPECT_EQ(test.frame().hitTest({tip.x + 2, tip.y + 2}), test.frame().hitTest({tip.x + 2, tip.y + 2}));
    EXPECT_NE(test.frame().hitTest({tip.x + 2, tip.y + 2}), test.frame().getToolTip());
    test.frame().injectMouseMove(test.centreOf(*plain));
    EXPECT_EQ(test.frame().getToolTip(), nullptr);
    test.frame().showPendingToolTip();
    EXPECT_EQ(test.frame().getToolTip(), nullptr);
}

TEST(FrameWindow, PopupsCloseOnAPressOutsideThemAndOnEscape)
{
    tbtest::GuiTestFrame test;
    auto ok = button("OK", "ok");
    auto recorder = make<Recorder>();
    ok->addListener(recorder.get());
    test.add(ok);
    test.render();
    auto popup = make<CButton>("In the pop-up");
    popup->addListener(recorder.get());
    test.frame().openPopup(popup, {100, 150, 150, 40});
    test.render();
    EXPECT_EQ(test.frame().hitTest({120, 160}), popup.get());
    test.frame().injectClick({120, 160});
    EXPECT_EQ(recorder->count(popup.get(), Notification::clicked), 1);
    // The press outside closes the pop-up and does not reach the button under it.
    test.frame().injectClick(test.centreOf(*ok));
    EXPECT_EQ(recorder->count(popup.get(), Notification::closed), 1);
    EXPECT_EQ(recorder->count(ok.get(), Notification::clicked), 0);
    EXPECT_FALSE(test.frame().hasPopups());
    test.frame().openPopup(popup, {100, 150, 150, 40});
    test.frame().injectKey({Key::escape}, true);
    EXPECT_FALSE(test.frame().hasPopups());
}

}  // namespace
