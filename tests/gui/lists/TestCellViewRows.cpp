// The cell view's headers and sorting, button cells, rows dragged to a new
// place and a model that changes under the view.
#include <gtest/gtest.h>

#include "foundation/CObjectError.h"
#include "gui/CStyle.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"
#include "tests/gui/lists/ListTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using fenn::String;
using liststest::NumberedModel;
using liststest::Recorder;

CPoint centreOf(const CCellView& view, const CRect& local)
{
    const CRect rect = view.toFrame(local);
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

CRect headerCell(const CCellView& view, int column)
{
    const CRect header = view.getHeaderRect();
    const CRect cell = view.getCellRect(view.getFirstVisibleRow(), column);
    return {cell.x, header.y, cell.width, header.height};
}

// Rows "Row 0" ... with a number column whose values are out of order.
P<CCellViewListModel> listModel(int rows)
{
    auto model = make<CCellViewListModel>();
    for (int row = 0; row < rows; ++row)
        model->addRow({String("Row ") + fenn::fromInt(row), fenn::fromInt((row * 7) % rows), "Open"});
    return model;
}

int numberAt(const CCellView& view, int viewRow)
{
    return std::stoi(view.getModel()->getCellText(view.toModelRow(viewRow), 1).toStdString());
}

TEST(CellViewRows, HeaderClicksTellTheColumnAndSortByItsComparator)
{
    tbtest::GuiTestFrame test(520, 400);
    auto model = listModel(20);
    auto view = make<CCellView>();
    view->addColumn("Name", 150);
    view->addColumn("Number", 100);
    view->setModel(model);
    view->setColumnComparator(1, [&](int a, int b) {
        return std::stoi(model->getCellText(a, 1).toStdString()) < std::stoi(model->getCellText(b, 1).toStdString());
    });
    auto recorder = make<Recorder>();
    view->addListener(recorder.get());
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    view->select(1);  // "Row 1", number 7
    const CColor headerBack = view->getColor(CellViewColor::headerBack);

    test.frame().injectClick(centreOf(*view, headerCell(*view, 1)));
    EXPECT_EQ(recorder->last(Notification::headerClicked).column, 1);
    EXPECT_EQ(view->getSortColumn(), 1);
    EXPECT_EQ(view->getSortOrder(), SortOrder::ascending);
    for (int row = 0; row < 20; ++row) EXPECT_EQ(numberAt(*view, row), row);
    // The selection stays on its model row.
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{7});
    EXPECT_EQ(view->toModelRow(7), 1);

    // The sort mark shows in the accent colour inside the sorted header cell only.
    test.frame().injectMouseLeft();
    test.render();
    const auto accentIn = [&](const CRect& local) {
        const CRect rect = view->toFrame(local);
        int found = 0;
        for (int y = rect.y; y < rect.bottom(); ++y) {
            for (int x = rect.x; x < rect.right(); ++x) found += test.pixel(x, y) == CStyle::get().accent ? 1 : 0;
        }
        return found;
    };
    EXPECT_GT(accentIn(headerCell(*view, 1)), 4);
    EXPECT_EQ(accentIn(headerCell(*view, 0)), 0);
    EXPECT_EQ(test.pixel(view->toFrame(headerCell(*view, 0)).x + 6, view->toFrame(headerCell(*view, 0)).y + 6),
              headerBack);

    test.frame().injectClick(centreOf(*view, headerCell(*view, 1)));
    EXPECT_EQ(view->getSortOrder(), SortOrder::descending);
    EXPECT_EQ(numberAt(*view, 0), 19);
    EXPECT_EQ(numberAt(*view, 19), 0);

    // A column without a comparator only tells; the application sorts.
    test.frame().injectClick(centreOf(*view, headerCell(*view, 0)));
    EXPECT_EQ(recorder->last(Notification::headerClicked).column, 0);
    EXPECT_EQ(recorder->count(Notification::headerClicked), 3);
    EXPECT_EQ(view->getSortColumn(), 1);
    view->sortBy(1, SortOrder::none);
    EXPECT_EQ(view->toModelRow(5), 5);
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{1});

    // A press on a header released over another header is no click.
    test.frame().injectMouseButton(centreOf(*view, headerCell(*view, 0)), MouseButton::left, true);
    test.frame().injectMouseMove(centreOf(*view, headerCell(*view, 1)));
    test.frame().injectMouseButton(centreOf(*view, headerCell(*view, 1)), MouseButton::left, false);
    EXPECT_EQ(recorder->count(Notification::headerClicked), 3);
}

TEST(CellViewRows, ButtonCellsTellRowAndColumnAndLeaveTheSelection)
{
    tbtest::GuiTestFrame test(520, 400);
    auto view = make<CCellView>();
    view->addColumn("Title", 160);
    view->addColumn("Artist", 120);
    view->addColumn("", 80, CellKind::button);
    view->setModel(make<NumberedModel>(500));
    auto recorder = make<Recorder>();
    view->addListener(recorder.get());
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    view->select(0);

    test.frame().injectClick(centreOf(*view, view->getCellRect(3, 2)));
    const CNotification clicked = recorder->last(Notification::cellClicked);
    EXPECT_EQ(clicked.index, 3);
    EXPECT_EQ(clicked.column, 2);
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{0});

    // The hovered button looks different from a resting one.
    test.render();
    const CRect hovered = view->toFrame(view->getCellRect(3, 2));
    const CRect resting = view->toFrame(view->getCellRect(5, 2));
    EXPECT_NE(test.pixel(hovered.x + 8, hovered.y + hovered.height / 2),
              test.pixel(resting.x + 8, resting.y + resting.height / 2));

    // Released elsewhere, or on the text column beside it, nothing is clicked.
    test.frame().injectMouseButton(centreOf(*view, view->getCellRect(4, 2)), MouseButton::left, true);
    test.frame().injectMouseMove(centreOf(*view, view->getCellRect(6, 2)));
    test.frame().injectMouseButton(centreOf(*view, view->getCellRect(6, 2)), MouseButton::left, false);
    test.frame().injectClick(centreOf(*view, view->getCellRect(4, 1)));
    EXPECT_EQ(recorder->count(Notification::cellClicked), 1);
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{4});
    // A double click on a button is two clicks, not an activation.
    test.frame().injectClick(centreOf(*view, view->getCellRect(2, 2)), 2);
    EXPECT_EQ(recorder->count(Notification::cellClicked), 3);
    EXPECT_EQ(recorder->count(Notification::activated), 0);
}

TEST(CellViewRows, DraggedRowsMoveWhereTheMarkerShows)
{
    tbtest::GuiTestFrame test(520, 400);
    auto model = listModel(12);
    auto view = make<CCellView>();
    view->addColumn("Name", 150);
    view->addColumn("Number", 100);
    view->setModel(model);
    std::vector<std::pair<int, int>> moves;
    view->setRowMovedHandler([&](int from, int to) {
        moves.push_back({from, to});
        model->moveRow(from, to);
    });
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    const int height = view->getRowHeight();
    CFrameWindow& frame = test.frame();
    const auto drag = [&](int row, int gap) {
        const CRect from = view->toFrame(view->getRowRect(row));
        const CPoint start{from.x + 40, from.y + height / 2};
        const CPoint end{start.x, view->toFrame(view->getRowsRect()).y + gap * height + 2};
        frame.injectMouseMove(start);
        frame.injectMouseButton(start, MouseButton::left, true);
        frame.injectMouseMove({start.x, (start.y + end.y) / 2});
        frame.injectMouseMove(end);
        frame.updateAndPaint();
        frame.injectMouseButton(end, MouseButton::left, false);
    };

    // Down: row 2 dropped in the gap above row 6 ends up as row 5.
    drag(2, 6);
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0], std::make_pair(2, 5));
    EXPECT_EQ(model->getCellText(5, 0), String("Row 2"));
    EXPECT_EQ(model->getCellText(2, 0), String("Row 3"));
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{5});
    // Up: row 8 dropped at the top.
    drag(8, 0);
    EXPECT_EQ(moves.back(), std::make_pair(8, 0));
    EXPECT_EQ(model->getCellText(0, 0), String("Row 8"));
    // Dropped on its own place, or moved less than the threshold, nothing moves.
    drag(4, 5);
    drag(4, 4);
    EXPECT_EQ(moves.size(), 2u);
    const CRect row3 = view->toFrame(view->getRowRect(3));
    frame.injectMouseButton({row3.x + 40, row3.y + 5}, MouseButton::left, true);
    frame.injectMouseMove({row3.x + 40, row3.y + 7});
    frame.injectMouseButton({row3.x + 40, row3.y + 7}, MouseButton::left, false);
    EXPECT_EQ(moves.size(), 2u);
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{3});

    // Sorted rows are the comparator's to order, not the mouse's.
    view->setColumnComparator(0, [&](int a, int b) { return model->getCellText(a, 0) < model->getCellText(b, 0); });
    view->sortBy(0, SortOrder::ascending);
    drag(2, 7);
    EXPECT_EQ(moves.size(), 2u);
}

TEST(CellViewRows, ModelChangesKeepTheSelectionAboveThem)
{
    tbtest::GuiTestFrame test(520, 400);
    auto model = make<NumberedModel>(100);
    auto view = make<CCellView>();
    view->addColumn("Title", 200);
    view->setModel(model);
    view->setSelectionMode(SelectionMode::multiple);
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    view->select(10);
    view->select(90, SelectAction::toggle);
    ASSERT_TRUE(view->getScrollBar().isNeeded());

    // Shrinking the list drops the rows that went; no bar is left for five rows.
    model->setRows(50);
    EXPECT_EQ(view->getRowCount(), 50);
    EXPECT_EQ(view->getSelection().getCount(), 0);
    view->select(3);
    view->select(40, SelectAction::toggle);
    model->setRows(5);
    EXPECT_EQ(view->getRowCount(), 5);
    EXPECT_EQ(view->getCurrentRow(), 4);
    EXPECT_FALSE(view->getScrollBar().isNeeded());
    EXPECT_EQ(view->getScrollPosition(), 0);
    test.render();

    // Rows added after the selected ones leave it alone.
    auto list = listModel(4);
    view->setModel(list);
    view->select(1);
    list->addRow({"Row 4", "4", "Open"});
    EXPECT_EQ(view->getRowCount(), 5);
    EXPECT_EQ(view->getSelection().getSelectedRows(), std::vector<int>{1});
    list->removeRow(0);
    EXPECT_EQ(view->getSelection().getCount(), 0);
    EXPECT_THROW(list->removeRow(4), fenn::CInvalidArgError);
    // A click below the last row clears the selection.
    view->select(2);
    const CRect rows = view->toFrame(view->getRowsRect());
    test.frame().injectClick({rows.x + 20, rows.bottom() - 5});
    EXPECT_EQ(view->getSelection().getCount(), 0);
}

}  // namespace
