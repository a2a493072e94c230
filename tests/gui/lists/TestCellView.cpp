// The cell view with a long model: keyboard and mouse selection, the
// wheel, and what a change repaints.
#include <gtest/gtest.h>

#include "gui/CStyle.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"
#include "tests/gui/lists/ListTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using liststest::NumberedModel;
using liststest::Recorder;

constexpr int kRows = 10000;

P<CCellView> makeView(const P<ICellViewModel>& model, SelectionMode mode = SelectionMode::multiple)
{
    auto view = make<CCellView>();
    view->addColumn("Title", 160);
    view->addColumn("Artist", 120);
    view->addColumn("Length", 70);
    view->setModel(model);
    view->setSelectionMode(mode);
    return view;
}

CPoint centreOfRow(const CCellView& view, int row)
{
    const CRect rect = view.toFrame(view.getCellRect(row, 0));
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

std::vector<int> rows(std::initializer_list<int> list)
{
    return list;
}

void press(CFrameWindow& frame, CPoint point, std::uint32_t modifiers = modifierNone)
{
    frame.injectMouseMove(point, modifiers);
    frame.injectMouseButton(point, MouseButton::left, true, 1, modifiers);
    frame.injectMouseButton(point, MouseButton::left, false, 1, modifiers);
}

TEST(CellView, KeysWalkTenThousandRowsAndReadOnlyWhatShows)
{
    tbtest::GuiTestFrame test(520, 400);
    auto model = make<NumberedModel>(kRows);
    auto view = makeView(model);
    auto recorder = make<Recorder>();
    view->addListener(recorder.get());
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    ASSERT_EQ(view->getRowCount(), kRows);
    const int visible = view->getRowsRect().height / view->getRowHeight();
    ASSERT_GT(visible, 5);
    // Painting reads the cells on screen, not the list (the rows along the
    // rounded top and bottom edges may be painted twice).
    EXPECT_GT(model->cellsRead, 0);
    EXPECT_LE(model->cellsRead, (visible + 3) * 3);

    view->setFocus();
    test.frame().injectKey({Key::end}, true);
    EXPECT_EQ(view->getCurrentRow(), kRows - 1);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({kRows - 1}));
    const int rowsHeight = view->getRowsRect().height;
    EXPECT_EQ(view->getFirstVisibleRow(), (kRows * view->getRowHeight() - rowsHeight) / view->getRowHeight());
    const CRect last = view->getRowRect(kRows - 1);
    EXPECT_EQ(last.bottom(), view->getRowsRect().bottom());
    model->cellsRead = 0;
    test.render();
    EXPECT_LE(model->cellsRead, (visible + 3) * 3);

    test.frame().injectKey({Key::home}, true);
    EXPECT_EQ(view->getCurrentRow(), 0);
    EXPECT_EQ(view->getScrollPosition(), 0);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({0}));

    // Shift extends from the anchor; Ctrl moves without selecting; Ctrl+Space toggles.
    test.frame().injectKey({Key::down}, true);
    test.frame().injectKey({Key::down}, true);
    test.frame().injectKey({Key::down, 0, modifierShift}, true);
    test.frame().injectKey({Key::down, 0, modifierShift}, true);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({2, 3, 4}));
    test.frame().injectKey({Key::up, 0, modifierShift}, true);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({2, 3}));
    test.frame().injectKey({Key::down, 0, modifierControl}, true);
    test.frame().injectKey({Key::down, 0, modifierControl}, true);
    test.frame().injectKey({Key::down, 0, modifierControl}, true);
    EXPECT_EQ(view->getCurrentRow(), 6);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({2, 3}));
    test.frame().injectKey({Key::space, 0, modifierControl}, true);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({2, 3, 6}));

    // A page moves by what shows, less one row for context.
    test.frame().injectKey({Key::pageDown}, true);
    EXPECT_EQ(view->getCurrentRow(), 6 + visible - 1);
    EXPECT_EQ(view->getSelection().getCount(), 1);
    test.frame().injectKey({Key::end, 0, modifierShift}, true);
    EXPECT_EQ(view->getSelection().getCount(), kRows - (6 + visible - 1));
    test.frame().injectKey({Key::character, U'a', modifierControl}, true);
    EXPECT_EQ(view->getSelection().getCount(), kRows);
    test.frame().injectKey({Key::pageUp}, true);
    EXPECT_EQ(view->getSelection().getCount(), 1);
    EXPECT_EQ(view->getCurrentRow(), kRows - 1 - (visible - 1));

    // Enter activates the current row; every selection change was told.
    test.frame().injectKey({Key::enter}, true);
    EXPECT_EQ(recorder->last(Notification::activated).index, kRows - visible);
    EXPECT_GE(recorder->count(Notification::selectionChanged), 10);
}

TEST(CellView, ClicksSelectWithControlAndShift)
{
    tbtest::GuiTestFrame test(520, 400);
    auto view = makeView(make<NumberedModel>(kRows));
    auto recorder = make<Recorder>();
    view->addListener(recorder.get());
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    CFrameWindow& frame = test.frame();

    press(frame, centreOfRow(*view, 1));
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({1}));
    press(frame, centreOfRow(*view, 3), modifierControl);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({1, 3}));
    press(frame, centreOfRow(*view, 5), modifierControl);
    press(frame, centreOfRow(*view, 1), modifierControl);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({3, 5}));
    // Shift selects from the anchor (the row last clicked) and drops the rest.
    press(frame, centreOfRow(*view, 3));
    press(frame, centreOfRow(*view, 6), modifierShift);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({3, 4, 5, 6}));
    press(frame, centreOfRow(*view, 0), modifierShift);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({0, 1, 2, 3}));
    press(frame, centreOfRow(*view, 9), modifierControl);
    press(frame, centreOfRow(*view, 11), modifierShift | modifierControl);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({0, 1, 2, 3, 9, 10, 11}));
    // A double click activates the row it selects.
    const int told = recorder->count(Notification::selectionChanged);
    EXPECT_EQ(told, 9);
    frame.injectClick(centreOfRow(*view, 4), 2);
    EXPECT_EQ(recorder->last(Notification::activated).index, 4);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({4}));

    // A single selection ignores the modifiers.
    view->setSelectionMode(SelectionMode::single);
    press(frame, centreOfRow(*view, 2), modifierControl);
    press(frame, centreOfRow(*view, 5), modifierShift);
    EXPECT_EQ(view->getSelection().getSelectedRows(), rows({5}));
    test.frame().injectKey({Key::character, U'a', modifierControl}, true);
    EXPECT_EQ(view->getSelection().getCount(), 1);
}

TEST(CellView, WheelScrollsThreeRowsANotchAndRepaintsOnlyTheRows)
{
    tbtest::GuiTestFrame test(520, 400);
    auto view = makeView(make<NumberedModel>(kRows));
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const CPoint inside = centreOfRow(*view, 2);
    const CRect rowsInFrame = view->toFrame(view->getRowsRect().united(view->getScrollBar().getTrack()));
    const CRect headerInFrame = view->toFrame(view->getHeaderRect());

    test.frame().injectWheel(inside, 0, 1);
    EXPECT_EQ(view->getFirstVisibleRow(), 3);
    EXPECT_EQ(view->getScrollPosition(), 3 * view->getRowHeight());
    const std::vector<CRect> painted = test.frame().updateAndPaint();
    ASSERT_FALSE(painted.empty());
    for (const CRect& rect : painted) {
        EXPECT_EQ(rect.intersected(rowsInFrame), rect);
        EXPECT_TRUE(rect.intersected(headerInFrame).isEmpty());
    }
    // The top row painted is the fourth of the list.
    EXPECT_EQ(view->rowAt({view->getRowsRect().x + 5, view->getRowsRect().y + 1}), 3);

    test.frame().injectWheel(inside, 0, -2);
    EXPECT_EQ(view->getFirstVisibleRow(), 0);
    EXPECT_TRUE(test.frame().updateAndPaint().size() >= 1);
    test.frame().injectWheel(inside, 0, -1);
    EXPECT_TRUE(test.frame().updateAndPaint().empty());
    test.frame().injectWheel(inside, 0, 5000);
    const int visible = view->getRowsRect().height / view->getRowHeight();
    EXPECT_EQ(view->getScrollPosition(), view->getScrollBar().getMaxPosition());
    EXPECT_GE(view->getFirstVisibleRow(), kRows - visible - 1);

    // Dragging the thumb to the top of its track comes back to the first row.
    const CRect thumb = view->toFrame(view->getScrollBar().getThumbRect());
    const CPoint grab{thumb.x + thumb.width / 2, thumb.y + thumb.height / 2};
    test.frame().injectMouseMove(grab);
    test.frame().injectMouseButton(grab, MouseButton::left, true);
    test.frame().injectMouseMove({grab.x + 200, grab.y - 2000});
    test.frame().injectMouseButton({grab.x + 200, grab.y - 2000}, MouseButton::left, false);
    EXPECT_EQ(view->getScrollPosition(), 0);
}

TEST(CellView, SelectingARowRepaintsThatRowInTheActiveOrInactiveColours)
{
    tbtest::GuiTestFrame test(520, 440);
    auto view = makeView(make<NumberedModel>(kRows));
    auto other = make<CButton>("Elsewhere");
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.add(other);
    test.render();
    view->select(3);
    view->setFocus();
    test.render();

    test.frame().injectKey({Key::down}, true);
    const CRect involved = view->toFrame(view->getRowRect(3).united(view->getRowRect(4)));
    const std::vector<CRect> painted = test.frame().updateAndPaint();
    ASSERT_FALSE(painted.empty());
    for (const CRect& rect : painted) EXPECT_EQ(rect.intersected(involved), rect);

    // Ctrl+A over ten thousand rows repaints what shows of them.
    test.frame().injectKey({Key::character, U'a', modifierControl}, true);
    for (const CRect& rect : test.frame().updateAndPaint())
        EXPECT_EQ(rect.intersected(view->toFrame(view->getRowsRect())), rect);
    view->select(4);
    test.render();

    // Beside the short artist texts the row shows its colours.
    const auto backOf = [&](int row) {
        const CRect cell = view->toFrame(view->getCellRect(row, 1));
        return test.pixel(cell.right() - 4, cell.y + cell.height / 2);
    };
    EXPECT_EQ(backOf(4), view->getColor(CellViewColor::selectionBack));
    EXPECT_EQ(backOf(2), view->getColor(CellViewColor::evenBack));
    EXPECT_EQ(backOf(5), view->getColor(CellViewColor::oddBack));
    EXPECT_NE(view->getColor(CellViewColor::evenBack), view->getColor(CellViewColor::oddBack));
    other->setFocus();
    test.render();
    EXPECT_EQ(backOf(4), view->getColor(CellViewColor::inactiveSelectionBack));
    // Colours set through the layout file's attribute names win.
    const auto attribute = cellViewColorFromAttribute("OddBackColor");
    ASSERT_TRUE(attribute.has_value());
    view->setColor(*attribute, CColor(250, 240, 200));
    test.render();
    EXPECT_EQ(backOf(5), CColor(250, 240, 200));
    EXPECT_FALSE(cellViewColorFromAttribute("oddcolour").has_value());
}

}  // namespace
