// The cell view's optional colours: selected even and odd rows, the
// header's light and dark edges, the two-tone sort mark and the line
// highlight under the row the pointer is over.
#include <gtest/gtest.h>

#include <functional>

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

P<CCellView> makeView()
{
    auto view = make<CCellView>();
    view->addColumn("Title", 160);
    view->addColumn("Artist", 120);
    view->setModel(make<NumberedModel>(40));
    view->setSelectionMode(SelectionMode::multiple);
    return view;
}

// How many pixels of a frame rectangle pass a test.
int countIn(const tbtest::GuiTestFrame& test, const CRect& rect, const std::function<bool(CColor)>& passes)
{
    int count = 0;
    for (int y = rect.y; y < rect.bottom(); ++y) {
        for (int x = rect.x; x < rect.right(); ++x) count += passes(test.pixel(x, y)) ? 1 : 0;
    }
    return count;
}

TEST(CellViewLook, SelectedRowsAndTheHeaderTakeTheirOwnColours)
{
    tbtest::GuiTestFrame test(420, 360);
    auto view = makeView();
    auto other = make<CButton>("Elsewhere");
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    test.add(other);
    view->select(2);
    view->select(3, SelectAction::toggle);
    view->setFocus();
    test.render();
    const CStyle& style = CStyle::get();
    const auto backOf = [&](int row) {
        const CRect cell = view->toFrame(view->getCellRect(row, 1));
        return test.pixel(cell.right() - 4, cell.y + cell.height / 2);
    };
    const CRect header = view->toFrame(view->getHeaderRect());
    const CRect second = view->toFrame(view->getCellRect(0, 1));
    const int middle = header.y + header.height / 2;

    // Unset, the new colours keep the plain look: both selected rows in the
    // selection colour, no light edge to see, the separators in the border colour.
    EXPECT_EQ(backOf(2), style.selectionBackground);
    EXPECT_EQ(backOf(3), style.selectionBackground);
    EXPECT_EQ(test.pixel(header.x + 40, header.y), style.headerBackground);
    EXPECT_EQ(test.pixel(second.x, middle), style.headerBackground);
    EXPECT_EQ(test.pixel(second.x - 1, middle), style.border);

    const CColor red(200, 30, 30);
    const CColor green(30, 160, 60);
    const CColor light(255, 250, 200);
    const CColor dark(90, 40, 120);
    view->setColor(CellViewColor::selectedEvenBack, red);
    view->setColor(CellViewColor::selectedOddBack, green);
    view->setColor(CellViewColor::selectedEvenText, CColor(0, 0, 255));
    view->setColor(CellViewColor::selectedOddText, CColor(255, 255, 0));
    view->setColor(CellViewColor::headerBorderLight, light);
    view->setColor(CellViewColor::headerBorderDark, dark);
    test.render();
    EXPECT_EQ(backOf(2), red);
    EXPECT_EQ(backOf(3), green);
    // The title text of each row is drawn in its own colour.
    const CRect title2 = view->toFrame(view->getCellRect(2, 0));
    const CRect title3 = view->toFrame(view->getCellRect(3, 0));
    EXPECT_GT(countIn(test, title2, [](CColor c) { return c.blue() > 180 && c.red() < 150; }), 5);
    EXPECT_GT(countIn(test, title3, [](CColor c) { return c.green() > 200 && c.red() > 200; }), 5);
    EXPECT_EQ(test.pixel(header.x + 40, header.y), light);
    EXPECT_EQ(test.pixel(second.x, middle), light);
    EXPECT_EQ(test.pixel(second.x - 1, middle), dark);
    EXPECT_EQ(test.pixel(header.x + 40, header.bottom() - 1), dark);

    // Without the focus the inactive selection colour wins over both.
    other->setFocus();
    test.render();
    EXPECT_EQ(backOf(2), view->getColor(CellViewColor::inactiveSelectionBack));
    EXPECT_EQ(backOf(3), view->getColor(CellViewColor::inactiveSelectionBack));

    // The sort mark: dark, with its left half lit; unset, all accent.
    const CRect sortedCell{second.x, header.y, second.width, header.height};
    const CColor orange(255, 140, 0);
    const auto meanX = [&](CColor wanted) {
        int sum = 0;
        int count = 0;
        for (int y = sortedCell.y + 2; y < sortedCell.bottom() - 2; ++y) {
            for (int x = sortedCell.x + 2; x < sortedCell.right() - 2; ++x) {
                if (test.pixel(x, y) == wanted) sum += x, ++count;
            }
        }
        return count > 2 ? sum / count : -1;
    };
    view->sortBy(1, SortOrder::ascending);
    test.render();
    EXPECT_GT(meanX(style.accent), 0);
    view->setColor(CellViewColor::headerSortDark, dark);
    view->setColor(CellViewColor::headerSortLight, orange);
    test.render();
    EXPECT_EQ(meanX(style.accent), -1);
    ASSERT_GT(meanX(orange), 0);
    EXPECT_LT(meanX(orange), meanX(dark));
    view->setFocus();
    test.render();
    test.writePNG("cellview-colours");
}

TEST(CellViewLook, TheLineHighlightFollowsThePointer)
{
    tbtest::GuiTestFrame test(420, 360);
    auto view = makeView();
    test.add(view, {.horzGrow = 1, .vertGrow = 1});
    const CColor orange(255, 140, 0);
    view->setColor(CellViewColor::lineHighlight, orange);
    test.render();
    const auto bandRows = [&](int row) {
        const CRect rect = view->toFrame(view->getRowRect(row));
        int rowsOfBand = 0;
        for (int y = rect.y; y < rect.bottom(); ++y) rowsOfBand += test.pixel(rect.x + 100, y) == orange ? 1 : 0;
        return rowsOfBand;
    };
    const auto pointAt = [&](int row) {
        const CRect rect = view->toFrame(view->getRowRect(row));
        return CPoint{rect.x + 50, rect.y + rect.height / 2};
    };

    // Size 0, the default, shows nothing.
    test.frame().injectMouseMove(pointAt(4));
    test.render();
    EXPECT_EQ(view->getHoveredRow(), 4);
    EXPECT_EQ(bandRows(4), 0);

    view->setLineHighlightSize(3);
    test.render();
    EXPECT_EQ(bandRows(4), 3);
    const CRect row4 = view->toFrame(view->getRowRect(4));
    EXPECT_EQ(test.pixel(row4.x + 100, row4.bottom() - 1), orange);
    test.frame().injectMouseMove(pointAt(6));
    test.render();
    EXPECT_EQ(bandRows(4), 0);
    EXPECT_EQ(bandRows(6), 3);
    // The wheel brings another row under the pointer.
    const CPoint pointer = pointAt(6);
    test.frame().injectWheel(pointer, 0, 1);
    test.render();
    const CRect rows = view->getRowsRect();
    const int under = view->rowAt({rows.x + 50, rows.y + pointer.y - view->toFrame(rows).y});
    EXPECT_NE(under, 6);
    EXPECT_EQ(view->getHoveredRow(), under);
    EXPECT_EQ(bandRows(under), 3);
    // Larger than a row, the band covers the row; leaving the view takes it away.
    view->setLineHighlightSize(1000);
    test.render();
    EXPECT_EQ(bandRows(under), view->getRowHeight());
    test.frame().injectMouseLeft();
    test.render();
    EXPECT_EQ(view->getHoveredRow(), -1);
    EXPECT_EQ(bandRows(under), 0);
}

}  // namespace
