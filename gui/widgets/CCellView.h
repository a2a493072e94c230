#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "gui/CWindow.h"
#include "gui/widgets/CCellViewSelection.h"
#include "gui/widgets/CScrollBarPart.h"
#include "gui/widgets/ICellViewModel.h"

namespace fenn::gui {

class CTextLayout;

// What the cells of a column show: the model's text (with its image as an
// icon, if any), the model's image alone, or a button labelled with the
// model's text.
enum class CellKind {
    text,
    image,
    button,
};

enum class SelectionMode {
    single,
    multiple,
};

enum class SortOrder {
    none,
    ascending,
    descending,
};

// How a selection changes: to the one row, the row toggled, or the rows
// from the anchor (the row last clicked or moved to without Shift) to the
// row, replacing the selection or added to it.
enum class SelectAction {
    replace,
    toggle,
    extend,
    extendAdd,
};

// The colours of a cell view that a window or layout file may set. The
// selected even and odd rows of a focused view follow the selection colours
// until they are set; the header's border is a light edge (top, and left
// of each column) and a dark one (bottom, and the column separators); the
// sort mark is dark with a lit left half when the light colour differs;
// the line highlight marks the row under the pointer.
enum class CellViewColor {
    selectionBack,
    selectionText,
    inactiveSelectionBack,
    inactiveSelectionText,
    evenBack,
    oddBack,
    evenText,
    oddText,
    verticalLines,
    horizontalLines,
    headerBack,
    headerText,
    selectedEvenBack,
    selectedOddBack,
    selectedEvenText,
    selectedOddText,
    headerBorderLight,
    headerBorderDark,
    headerSortLight,
    headerSortDark,
    lineHighlight,
};
inline constexpr std::size_t kCellViewColorCount = 21;

// The colour a layout file's attribute sets ("selbackcolor",
// "evenbackcolor", "vlinescolor", "headertextcolor", ...; any case), or
// none for another name.
std::optional<CellViewColor> cellViewColorFromAttribute(const String& name);

struct CCellViewColumn
{
    String title;
    int width = 0;
    CellKind kind = CellKind::text;
    TextAlign align = TextAlign::left;
    // "Less than" on two model rows; a column with one sorts on a header click.
    std::function<bool(int modelRowA, int modelRowB)> less;
};

// A table of rows under a row of column headers, with its own vertical
// scroll bar. The rows come from an ICellViewModel one visible cell at a
// time, so long lists cost only what shows; paint walks just the rows in
// the dirty area, scrolling repaints the rows area alone and a selection
// change repaints just the rows that changed.
//
// Rows: single or multiple selection (click, Ctrl+click toggles,
// Shift+click selects from the anchor, Ctrl+A all), keyboard movement
// (arrows, PageUp/PageDown, Home/End; Shift extends, Ctrl moves without
// selecting and Ctrl+Space toggles), Notification::activated (index the
// row) on a double click or Enter, Notification::cellClicked (index the
// row, column the column) when a button cell is clicked, and
// Notification::selectionChanged. A header click tells
// Notification::headerClicked (column the column); a column with a
// comparator also sorts the rows, ascending first and then reversed, and
// shows the order as a mark. While rows show in the model's order and a
// row-moved handler is set, rows may be dragged to a new place: a line
// marks where the row would drop, and the handler hears the move as
// (from, to), to being the row's index after the move; the handler moves
// the model's row (and tells the model's listeners).
//
// Row numbers in this interface are view rows (the model's rows in the
// sorted order); toModelRow maps them. Owned by its parent window; holds
// its model and listens to it frail. GUI thread.
class CCellView : public CWindow, public virtual ICellViewModelListener
{
public:
    using RowMovedHandler = std::function<void(int from, int to)>;

    CCellView();
    ~CCellView() override;

    // ---- columns ----
    // Returns the new column's index.
    int addColumn(const String& title, int width, CellKind kind = CellKind::text);
    int getColumnCount() const { return static_cast<int>(m_columns.size()); }
    const CCellViewColumn& getColumn(int column) const;
    // Width, alignment and comparator of a column; CInvalidArgError for a
    // column that does not exist.
    void setColumnWidth(int column, int width);
    void setColumnAlign(int column, TextAlign align);
    void setColumnComparator(int column, std::function<bool(int modelRowA, int modelRowB)> less);

    // ---- rows ----
    void setModel(P<ICellViewModel> model);
    P<ICellViewModel> getModel() const { return m_model; }
    int getRowCount() const { return m_rowCount; }
    int toModelRow(int viewRow) const;

    // ---- selection and the current row ----
    void setSelectionMode(SelectionMode mode);
    SelectionMode getSelectionMode() const { return m_selectionMode; }
    const CCellViewSelection& getSelection() const { return m_selection; }
    // Selects and makes row the current row (scrolled into view).
    void select(int row, SelectAction action = SelectAction::replace);
    void selectAll();
    void clearSelection();
    int getCurrentRow() const { return m_currentRow; }

    // ---- scrolling ----
    // Pixels of rows scrolled past at the top.
    int getScrollPosition() const { return m_bar.getPosition(); }
    void setScrollPosition(int position);
    int getFirstVisibleRow() const;
    void scrollToRow(int row);

    // ---- sorting and moving rows ----
    // Sorts by the column's comparator (SortOrder::none goes back to the
    // model's order); without a comparator only the mark changes, for an
    // application that sorts its model itself.
    void sortBy(int column, SortOrder order);
    int getSortColumn() const { return m_sortColumn; }
    SortOrder getSortOrder() const { return m_sortOrder; }
    void setRowMovedHandler(RowMovedHandler handler) { m_rowMoved = std::move(handler); }

    // ---- look ----
    void setColor(CellViewColor which, CColor color);
    CColor getColor(CellViewColor which) const;
    // Lines between rows ("hlines") and between columns ("vlines").
    void setGridLines(bool horizontal, bool vertical);
    // Room inside each cell ("hpad", "vpad").
    void setCellPadding(int horizontal, int vertical);
    // The band under the row the pointer is over ("linehighlightsize"), in
    // pixels, at most the row height; 0 shows none.
    void setLineHighlightSize(int size);
    int getLineHighlightSize() const { return m_lineHighlightSize; }
    void setHeaderVisible(bool visible);
    int getRowHeight() const;

    // ---- geometry, in the view's coordinates ----
    CRect getHeaderRect() const;
    // The rows' area: below the header, left of the scroll bar.
    CRect getRowsRect() const;
    CRect getRowRect(int row) const;
    CRect getCellRect(int row, int column) const;
    // The row or column at a point of the rows area, or -1.
    int rowAt(CPoint point) const;
    int columnAt(int x) const;
    const CScrollBarPart& getScrollBar() const { return m_bar; }
    // The row under the pointer, or -1.
    int getHoveredRow() const { return m_hoveredRow; }

    // ---- ICellViewModelListener ----
    void cellViewModelChanged(int firstRow, int rowCount) override;

    // ---- CWindow ----
    CSize computeSize(SizeType type) override;
    void layoutChildren() override;
    void paint(CPainter& painter) override;
    void onMouseLeave() override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    void onDoubleClick(const CMouseEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;

protected:
    void onResized() override;

private:
    struct CellPlace
    {
        int row = -1;
        int column = -1;
        friend bool operator==(const CellPlace&, const CellPlace&) = default;
    };

    void checkColumn(int column, const char* method) const;
    int headerHeight() const;
    // Works out whether the scroll bar shows and its range, after the size,
    // the row count or the row height changed.
    void updateScrollRange();
    void invalidateRows(int first, int last);
    void invalidateHeaderColumn(int column);
    void setCurrentRow(int row);
    // Runs a change of the selection and tells listeners if it changed anything.
    template <class F> void changeSelection(F&& change);
    void moveCurrent(int row, std::uint32_t modifiers);
    int pageRows() const;
    void rebuildOrder();
    int columnLeft(int column) const;
    CRect buttonRect(const CRect& cell) const;
    // The drop gap (0..rowCount) nearest to y while a row is dragged.
    int dropGapAt(int y) const;
    CRect dropMarkerRect(int gap) const;
    void finishRowDrag();
    void headerClicked(int column);
    // Updates which header column and button cell are under the pointer.
    void updateHover(CPoint point);

    // Painting (CCellViewPaint.cpp).
    void paintContent(CPainter& painter, const CRect& dirty);
    void paintHeader(CPainter& painter, const CRect& dirty);
    // The triangle of the sort order, left being its left edge, middle its centre line.
    void paintSortMark(CPainter& painter, int left, double middle);
    void paintRow(CPainter& painter, CTextLayout& text, int row, const CRect& dirty);
    void paintCell(CPainter& painter, CTextLayout& text, int row, int column, const CRect& cell, CColor textColor);

    std::vector<CCellViewColumn> m_columns;
    P<ICellViewModel> m_model;
    int m_rowCount = 0;
    // The model row of each view row while sorted; empty in the model's order.
    std::vector<int> m_order;
    CCellViewSelection m_selection;
    bool m_selectionChanged = false;
    SelectionMode m_selectionMode = SelectionMode::single;
    int m_currentRow = -1;
    int m_anchorRow = -1;
    // A row to scroll to that was asked for before the view had a size, or -1.
    int m_pendingScrollRow = -1;
    CScrollBarPart m_bar{Orientation::vertical};
    int m_sortColumn = -1;
    SortOrder m_sortOrder = SortOrder::none;
    RowMovedHandler m_rowMoved;

    std::array<std::optional<CColor>, kCellViewColorCount> m_colors;
    bool m_horizontalLines = false;
    bool m_verticalLines = false;
    int m_paddingX = 8;
    int m_paddingY = 4;
    bool m_headerVisible = true;
    int m_lineHighlightSize = 0;

    // Mouse state: the header column or button cell pressed and hovered,
    // the bar being dragged, and the row pressed for a drag and where it would drop.
    int m_pressedHeader = -1;
    int m_hoveredHeader = -1;
    int m_hoveredRow = -1;
    CellPlace m_pressedButton;
    CellPlace m_hoveredButton;
    bool m_barDragged = false;
    int m_dragRow = -1;
    CPoint m_pressPoint;
    bool m_draggingRow = false;
    int m_dropGap = -1;
};

}  // namespace fenn::gui
