// The scroll panel (wheel, bars, keys, focus, hit tests on moved children)
// and the split panel (dragging the divider within the minimums).
#include <cairo.h>
#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "foundation/CObjectError.h"
#include "gui/CStyle.h"
#include "gui/image/CImage.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSplitPanel.h"
#include "gui/widgets/WidgetRegistration.h"
#include "tests/gui/lists/ListTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using liststest::Recorder;

// Content wider and taller than the panel: a row of six buttons above a
// column of thirty, in holder, which is the panel itself or its content window.
struct Content
{
    P<CWindow> holder;
    std::vector<P<CButton>> row;
    std::vector<P<CButton>> column;

    explicit Content(P<CWindow> window = make<CWindow>()) : holder(std::move(window))
    {
        auto layout = make<CGrowLayout>(Orientation::vertical);
        layout->setSpacing(8);
        layout->setMargins(8, 8, 8, 8);
        auto top = make<CGrowLayout>(Orientation::horizontal);
        top->setSpacing(8);
        for (int i = 0; i < 6; ++i) {
            row.push_back(make<CButton>(fenn::String("Wide ") + fenn::fromInt(i)));
            holder->addChild(row.back());
            top->addItem(row.back(), {});
        }
        layout->addItem(top, {});
        for (int i = 0; i < 30; ++i) {
            column.push_back(make<CButton>(fenn::String("Button ") + fenn::fromInt(i)));
            holder->addChild(column.back());
            layout->addItem(column.back(), {});
        }
        holder->setLayout(layout);
    }
};

CPoint centre(const CRect& rect)
{
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

// The panel's content is a window of its own, or the children of the panel's layout.
class ScrollPanelContent : public ::testing::TestWithParam<bool>
{
};

TEST_P(ScrollPanelContent, WheelAndShiftWheelMoveTheContentAndItsHitTests)
{
    tbtest::GuiTestFrame test(340, 260);
    auto panel = make<CScrollPanel>();
    const bool ownLayout = GetParam();
    Content content(ownLayout ? P<CWindow>(panel) : make<CWindow>());
    if (!ownLayout) panel->setContent(content.holder);
    test.add(panel, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    ASSERT_TRUE(panel->getBar(Orientation::vertical).isNeeded());
    ASSERT_TRUE(panel->getBar(Orientation::horizontal).isNeeded());
    const CRect viewport = panel->toFrame(panel->getViewport());
    EXPECT_EQ(viewport.width, panel->getBounds().width - CStyle::get().scrollBarWidth);
    EXPECT_GT(panel->getContentSize().height, 30 * 30);

    const int line = panel->getFont()->getLineHeight();
    test.frame().injectWheel(centre(viewport), 0, 2);
    EXPECT_EQ(panel->getScrollPosition(), (CPoint{0, 6 * line}));
    EXPECT_EQ(panel->getContentOffset(), (CPoint{0, -6 * line}));
    test.frame().injectWheel(centre(viewport), 0, 1, modifierShift);
    EXPECT_EQ(panel->getScrollPosition(), (CPoint{3 * line, 6 * line}));

    // A button's place worked out from its bounds and the scroll position
    // is where the mouse finds it and clicks it.
    const auto shownAt = [&](const CButton& button) {
        const CRect bounds = button.getBounds();
        const CPoint scroll = panel->getScrollPosition();
        return CPoint{viewport.x + bounds.x - scroll.x + bounds.width / 2,
                      viewport.y + bounds.y - scroll.y + bounds.height / 2};
    };
    auto recorder = make<Recorder>();
    content.column[4]->addListener(recorder.get());
    EXPECT_EQ(test.frame().hitTest(shownAt(*content.column[4])), content.column[4].get());
    test.frame().injectClick(shownAt(*content.column[4]));
    EXPECT_EQ(recorder->count(Notification::clicked), 1);
    // A child under the scroll bar is not hit through it.
    const CRect bar = panel->toFrame(panel->getBar(Orientation::vertical).getTrack());
    EXPECT_EQ(test.frame().hitTest({bar.x + 2, bar.y + 40}), panel.get());

    // At the end the wheel is not used, so an outer panel would get it.
    test.frame().injectWheel(centre(viewport), 0, 1000);
    EXPECT_EQ(panel->getScrollPosition().y, panel->getContentSize().height - panel->getViewport().height);
    EXPECT_FALSE(panel->onWheel({{10, 10}, 0, 1}));
    const P<CButton>& lastButton = content.column.back();
    EXPECT_EQ(test.frame().hitTest(shownAt(*lastButton)), lastButton.get());
}

INSTANTIATE_TEST_SUITE_P(WindowOrLayout, ScrollPanelContent, ::testing::Bool());

TEST(ScrollPanel, BarsDragAndPageAndShowTheHover)
{
    tbtest::GuiTestFrame test(340, 260);
    Content content;
    auto panel = make<CScrollPanel>();
    panel->setContent(content.holder);
    test.add(panel, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const CScrollBarPart& vertical = panel->getBar(Orientation::vertical);
    const CRect thumb = panel->toFrame(vertical.getThumbRect());
    const CColor resting = test.pixel(thumb.x + thumb.width / 2, thumb.y + thumb.height / 2);

    // The thumb follows the pointer, also outside the panel, while the button is held.
    test.frame().injectMouseMove(centre(thumb));
    test.render();
    EXPECT_TRUE(vertical.isHovered());
    EXPECT_NE(test.pixel(thumb.x + thumb.width / 2, thumb.y + thumb.height / 2), resting);
    test.frame().injectMouseButton(centre(thumb), MouseButton::left, true);
    test.frame().injectMouseMove({centre(thumb).x + 100, centre(thumb).y + 40});
    EXPECT_EQ(panel->toFrame(vertical.getThumbRect()).y, thumb.y + 40);
    const int dragged = panel->getScrollPosition().y;
    EXPECT_GT(dragged, 0);
    test.frame().injectMouseButton({centre(thumb).x + 100, centre(thumb).y + 40}, MouseButton::left, false);
    test.frame().injectMouseMove({centre(thumb).x, centre(thumb).y + 90});
    EXPECT_EQ(panel->getScrollPosition().y, dragged);
    EXPECT_FALSE(vertical.isDragging());

    // A press on the track below the thumb pages down by the view's height.
    const CRect track = panel->toFrame(vertical.getTrack());
    test.frame().injectClick({track.x + track.width / 2, track.bottom() - 3});
    EXPECT_EQ(panel->getScrollPosition().y, dragged + panel->getViewport().height);
    test.frame().injectMouseLeft();
    EXPECT_FALSE(vertical.isHovered());

    // Only vertical scrolling fits the content to the width and drops the other bar.
    panel->setScrollDirections(parseScrollDirections("VERT"));
    test.render();
    EXPECT_FALSE(panel->getBar(Orientation::horizontal).isNeeded());
    EXPECT_EQ(panel->getContentSize().width, panel->getViewport().width);
    EXPECT_EQ(parseScrollDirections("none"), ScrollDirections::none);
    EXPECT_THROW(parseScrollDirections("diagonal"), fenn::CInvalidArgError);
}

TEST(ScrollPanel, KeysScrollAndTabBringsTheFocusIntoView)
{
    tbtest::GuiTestFrame test(340, 260);
    Content content;
    auto panel = make<CScrollPanel>();
    panel->setContent(content.holder);
    test.add(panel, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const int line = panel->getFont()->getLineHeight();
    const int page = panel->getViewport().height - line;
    const int bottom = panel->getContentSize().height - panel->getViewport().height;

    panel->setFocus();
    const struct
    {
        Key key;
        int expected;
    } steps[] = {{Key::down, line},      {Key::down, 2 * line}, {Key::pageDown, 2 * line + page},
                 {Key::up, line + page}, {Key::end, bottom},    {Key::pageDown, bottom},
                 {Key::home, 0},         {Key::pageUp, 0}};
    for (const auto& step : steps) {
        test.frame().injectKey({step.key}, true);
        EXPECT_EQ(panel->getScrollPosition().y, step.expected) << static_cast<int>(step.key);
    }
    test.frame().injectKey({Key::right}, true);
    EXPECT_EQ(panel->getScrollPosition().x, line);

    // Keys a focused child leaves unused scroll its panel.
    content.column[0]->setFocus();
    test.frame().injectKey({Key::down}, true);
    EXPECT_EQ(panel->getScrollPosition().y, line);

    // Tab walks down the column; each button it reaches shows whole.
    const CRect viewport = panel->toFrame(panel->getViewport());
    for (int i = 1; i < 30; ++i) {
        test.frame().injectKey({Key::tab}, true);
        ASSERT_EQ(test.frame().getFocusWindow(), content.column[static_cast<std::size_t>(i)].get());
        const CRect shown = content.column[static_cast<std::size_t>(i)]->toFrame(
            content.column[static_cast<std::size_t>(i)]->getClientRect());
        EXPECT_EQ(shown.intersected(viewport), shown) << i;
    }
    EXPECT_GT(panel->getScrollPosition().y, 0);
    // Back to the first row of the content with Shift+Tab.
    for (int i = 0; i < 30; ++i) test.frame().injectKey({Key::tab, 0, modifierShift}, true);
    EXPECT_EQ(test.frame().getFocusWindow(), content.row[5].get());
    EXPECT_LE(panel->getScrollPosition().y, 8);
}

TEST(SplitPanel, DividerDragsWithinThePaneMinimums)
{
    tbtest::GuiTestFrame test(500, 300);
    auto left = make<CButton>("Left");
    auto right = make<CButton>("Right");
    auto split = make<CSplitPanel>(parseOrientation("horz"));
    split->setPanes(left, right);
    split->setMinimumPaneSizes(100, 150);
    auto recorder = make<Recorder>();
    split->addListener(recorder.get());
    test.add(split, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const int width = split->getBounds().width;
    // The first pane starts at its preferred width, raised to its minimum.
    EXPECT_EQ(split->getDividerPosition(), 100);
    EXPECT_EQ(split->getPane(0), left.get());

    const auto dragBy = [&](int dx, int dy) {
        const CPoint from = centre(split->toFrame(split->getDividerRect()));
        test.frame().injectMouseMove(from);
        test.frame().injectMouseButton(from, MouseButton::left, true);
        test.frame().injectMouseMove({from.x + dx, from.y + dy});
        test.frame().injectMouseButton({from.x + dx, from.y + dy}, MouseButton::left, false);
        test.render();
    };
    dragBy(120, 0);
    EXPECT_EQ(split->getDividerPosition(), 220);
    EXPECT_EQ(left->getBounds().width, 220);
    EXPECT_EQ(right->getBounds().x, split->getDividerRect().right());
    EXPECT_EQ(right->getBounds().right(), width);
    EXPECT_EQ(recorder->count(Notification::changed), 1);
    dragBy(-1000, 0);
    EXPECT_EQ(split->getDividerPosition(), 100);
    dragBy(1000, 40);
    EXPECT_EQ(right->getBounds().width, 150);
    // A narrower panel keeps the second pane's minimum.
    test.frame().setBounds({0, 0, 400, 300});
    test.render();
    EXPECT_EQ(right->getBounds().width, 150);
    EXPECT_EQ(right->getBounds().right(), split->getBounds().width);

    // Vertical: the panes stack and the divider runs across.
    split->setOrientation(parseOrientation("Vert"));
    split->setMinimumPaneSizes(60, 60);
    test.render();
    EXPECT_EQ(left->getBounds().width, split->getBounds().width);
    const int height = split->getBounds().height;
    dragBy(0, 1000);
    EXPECT_EQ(split->getDividerPosition(), height - split->getDividerRect().height - 60);
    dragBy(0, -1000);
    EXPECT_EQ(left->getBounds().height, 60);
    EXPECT_EQ(right->getBounds().y, 60 + split->getDividerRect().height);
    EXPECT_THROW(parseOrientation("diagonal"), fenn::CInvalidArgError);

    // The skin's centre image sits on the middle of the divider.
    auto grip = make<CImage>(CSize{20, 5});
    cairo_t* cr = cairo_create(grip->getSurface());
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_mark_dirty(grip->getSurface());
    split->setCenterImage(grip);
    test.render();
    const CPoint middle = centre(split->toFrame(split->getDividerRect()));
    EXPECT_EQ(test.pixel(middle.x, middle.y), CColor(255, 0, 0));
    EXPECT_NE(test.pixel(middle.x - 14, middle.y), CColor(255, 0, 0));
}

TEST(SplitPanel, TheBackImageStretchesBetweenItsMargins)
{
    // 7 by 20: five red rows, ten green and five blue; a vertical divider
    // keeps the red cap at the top and the blue one at the bottom.
    std::vector<std::uint8_t> rgba;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 7; ++x) {
            const std::uint8_t pixel[] = {static_cast<std::uint8_t>(y < 5 ? 255 : 0),
                                          static_cast<std::uint8_t>(y >= 5 && y < 15 ? 255 : 0),
                                          static_cast<std::uint8_t>(y >= 15 ? 255 : 0), 255};
            rgba.insert(rgba.end(), std::begin(pixel), std::end(pixel));
        }
    }
    auto image = make<CImage>(CSize{7, 20}, rgba);
    tbtest::GuiTestFrame test(300, 200);
    auto split = make<CSplitPanel>(Orientation::horizontal);
    split->setPanes(make<CButton>("Left"), make<CButton>("Right"));
    split->setBackImage(image, {0, 5, 0, 5});
    test.add(split, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const CRect divider = split->toFrame(split->getDividerRect());
    ASSERT_GT(divider.height, 100);
    const int x = divider.x + divider.width / 2;
    EXPECT_EQ(test.pixel(x, divider.y + 4), CColor(255, 0, 0));
    EXPECT_EQ(test.pixel(x, divider.y + 5), CColor(0, 255, 0));
    EXPECT_EQ(test.pixel(x, divider.y + divider.height / 2), CColor(0, 255, 0));
    EXPECT_EQ(test.pixel(x, divider.bottom() - 6), CColor(0, 255, 0));
    EXPECT_EQ(test.pixel(x, divider.bottom() - 5), CColor(0, 0, 255));
    EXPECT_EQ(split->getBackImage()->getMargins().top, 5);

    // Without margins the whole image stretches: the red takes a quarter.
    split->setBackImage(image);
    test.render();
    EXPECT_EQ(test.pixel(x, divider.y + divider.height / 8), CColor(255, 0, 0));
    EXPECT_EQ(test.pixel(x, divider.y + divider.height / 2), CColor(0, 255, 0));
    split->setBackImage(nullptr);
    test.render();
    EXPECT_NE(test.pixel(x, divider.y + 4), CColor(255, 0, 0));
    EXPECT_THROW(split->setBackImage(image, {-1, 0, 0, 0}), fenn::CInvalidArgError);
}

TEST(ListWidgets, LayoutFileNamesMakeTheWidgets)
{
    CWindowSystem system("default");
    registerListWidgets(system);
    auto parent = make<CWindow>();
    const P<CWindow> cellView = system.createWindow("CellView", parent.get());
    ASSERT_TRUE(cellView);
    EXPECT_EQ(cellView->getParent(), parent.get());
    // A cell view from a layout file comes with an empty model to fill.
    const auto* view = dynamic_cast<CCellView*>(cellView.get());
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->getModel());
    EXPECT_EQ(view->getRowCount(), 0);
    EXPECT_NE(dynamic_cast<CScrollPanel*>(system.createWindow("scrollpanel", nullptr).get()), nullptr);
    EXPECT_NE(dynamic_cast<CSplitPanel*>(system.createWindow("splitpanel", nullptr).get()), nullptr);
}

}  // namespace
