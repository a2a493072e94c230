// The rows, columns, selection, scrolling and sorting of CCellView; its
// painting is in CCellViewPaint.cpp and its mouse and keyboard handling in
// CCellViewInput.cpp.
#include "gui/widgets/CCellView.h"

#include <algorithm>
#include <climits>
#include <numeric>

#include "foundation/CObjectError.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

struct ColorAttribute
{
    const char* name;
    CellViewColor color;
};

constexpr ColorAttribute kColorAttributes[] = {
    {"selbackcolor", CellViewColor::selectionBack},
    {"seltextcolor", CellViewColor::selectionText},
    {"inactiveselbackcolor", CellViewColor::inactiveSelectionBack},
    {"inactiveseltextcolor", CellViewColor::inactiveSelectionText},
    {"evenbackcolor", CellViewColor::evenBack},
    {"oddbackcolor", CellViewColor::oddBack},
    {"eventextcolor", CellViewColor::evenText},
    {"oddtextcolor", CellViewColor::oddText},
    {"vlinescolor", CellViewColor::verticalLines},
    {"hlinescolor", CellViewColor::horizontalLines},
    {"headerbackcolor", CellViewColor::headerBack},
    {"headertextcolor", CellViewColor::headerText},
    {"selevenbackcolor", CellViewColor::selectedEvenBack},
    {"seloddbackcolor", CellViewColor::selectedOddBack},
    {"seleventextcolor", CellViewColor::selectedEvenText},
    {"seloddtextcolor", CellViewColor::selectedOddText},
    {"headerborderlightcolor", CellViewColor::headerBorderLight},
    {"headerborderdarkcolor", CellViewColor::headerBorderDark},
    {"headersortlightcolor", CellViewColor::headerSortLight},
    {"headersortdarkcolor", CellViewColor::headerSortDark},
    {"linehighlightcolor", CellViewColor::lineHighlight},
};

// Room above and below a header title.
constexpr int kHeaderPadding = 7;
// The narrowest a column gets, so that it can still be seen.
constexpr int kMinColumnWidth = 8;

}  // namespace

std::optional<CellViewColor> cellViewColorFromAttribute(const String& name)
{
    for (const ColorAttribute& attribute : kColorAttributes) {
        if (name.equalsNoCase(attribute.name)) return attribute.color;
    }
    return std::nullopt;
}

CCellView::CCellView()
{
    setFocusable(true);
    m_selection.setChangeHandler([this](int first, int last) {
        m_selectionChanged = true;
        invalidateRows(first, last);
    });
}

CCellView::~CCellView()
{
    if (m_model) m_model->removeModelListener(this);
}

// ---- columns ----

void CCellView::checkColumn(int column, const char* method) const
{
    if (column < 0 || column >= getColumnCount()) throw CInvalidArgError(this, method, "column");
}

int CCellView::addColumn(const String& title, int width, CellKind kind)
{
    CCellViewColumn column;
    column.title = title;
    column.width = std::max(kMinColumnWidth, width);
    column.kind = kind;
    column.align = kind == CellKind::text ? TextAlign::left : TextAlign::center;
    m_columns.push_back(std::move(column));
    invalidateLayout();
    invalidate();
    return getColumnCount() - 1;
}

const CCellViewColumn& CCellView::getColumn(int column) const
{
    checkColumn(column, "getColumn");
    return m_columns[static_cast<std::size_t>(column)];
}

void CCellView::setColumnWidth(int column, int width)
{
    checkColumn(column, "setColumnWidth");
    m_columns[static_cast<std::size_t>(column)].width = std::max(kMinColumnWidth, width);
    invalidateLayout();
    invalidate();
}

void CCellView::setColumnAlign(int column, TextAlign align)
{
    checkColumn(column, "setColumnAlign");
    m_columns[static_cast<std::size_t>(column)].align = align;
    invalidate();
}

void CCellView::setColumnComparator(int column, std::function<bool(int, int)> less)
{
    checkColumn(column, "setColumnComparator");
    m_columns[static_cast<std::size_t>(column)].less = std::move(less);
}

int CCellView::columnLeft(int column) const
{
    int x = getRowsRect().x;
    for (int i = 0; i < column; ++i) x += m_columns[static_cast<std::size_t>(i)].width;
    return x;
}

int CCellView::columnAt(int x) const
{
    int left = getRowsRect().x;
    for (int column = 0; column < getColumnCount(); ++column) {
        const int right = left + m_columns[static_cast<std::size_t>(column)].width;
        if (x >= left && x < right) return column;
        left = right;
    }
    return -1;
}

// ---- rows ----

void CCellView::setModel(P<ICellViewModel> model)
{
    if (model == m_model) return;
    if (m_model) m_model->removeModelListener(this);
    m_model = std::move(model);
    if (m_model) m_model->addModelListener(this);
    m_bar.setPosition(0);
    m_currentRow = -1;
    m_anchorRow = -1;
    cellViewModelChanged(0, kToTheEnd);
    invalidate();
}

int CCellView::toModelRow(int viewRow) const
{
    if (viewRow < 0 || viewRow >= m_rowCount) return -1;
    return m_order.empty() ? viewRow : m_order[static_cast<std::size_t>(viewRow)];
}

void CCellView::cellViewModelChanged(int firstRow, int rowCount)
{
    if (rowCount != kToTheEnd) {
        if (m_sortOrder != SortOrder::none && !m_order.empty()) {
            // Changed texts may change the order.
            sortBy(m_sortColumn, m_sortOrder);
        } else {
            invalidateRows(firstRow, firstRow + rowCount - 1);
        }
        return;
    }
    const int count = m_model ? std::max(0, m_model->getRowCount()) : 0;
    // Rows from firstRow on were replaced, so whatever was selected there is
    // gone; in sorted order any view row may show a replaced row.
    changeSelection([&] {
        m_selection.clearFrom(m_order.empty() ? firstRow : 0);
        m_selection.setRowCount(count);
    });
    m_rowCount = count;
    rebuildOrder();
    if (m_currentRow >= count) m_currentRow = count - 1;
    if (m_anchorRow >= count) m_anchorRow = count - 1;
    m_dragRow = -1;
    m_draggingRow = false;
    m_pressedButton = {};
    m_hoveredButton = {};
    const bool hadBar = m_bar.isNeeded();
    updateScrollRange();
    if (hadBar != m_bar.isNeeded() || !m_order.empty()) {
        invalidate();
        return;
    }
    // What lies above firstRow stays as it is.
    const CRect rows = getRowsRect();
    const long long top = rows.y + static_cast<long long>(firstRow) * getRowHeight() - m_bar.getPosition();
    const int from = static_cast<int>(std::clamp<long long>(top, rows.y, rows.bottom()));
    invalidate({rows.x, from, rows.width, rows.bottom() - from});
    invalidate(m_bar.getTrack());
}

// ---- selection and the current row ----

template <class F> void CCellView::changeSelection(F&& change)
{
    m_selectionChanged = false;
    change();
    if (m_selectionChanged) notify({Notification::selectionChanged});
}

void CCellView::setSelectionMode(SelectionMode mode)
{
    m_selectionMode = mode;
    if (mode == SelectionMode::single && m_selection.getCount() > 1) {
        const int keep =
            m_currentRow >= 0 && m_selection.isSelected(m_currentRow) ? m_currentRow : m_selection.getFirst();
        changeSelection([&] { m_selection.selectOnly(keep, keep); });
    }
}

void CCellView::select(int row, SelectAction action)
{
    if (row < 0 || row >= m_rowCount) return;
    if (m_selectionMode == SelectionMode::single) action = SelectAction::replace;
    if (m_anchorRow < 0 || m_anchorRow >= m_rowCount) m_anchorRow = row;
    changeSelection([&] {
        switch (action) {
        case SelectAction::replace:
            m_selection.selectOnly(row, row);
            m_anchorRow = row;
            break;
        case SelectAction::toggle:
            m_selection.toggle(row);
            m_anchorRow = row;
            break;
        case SelectAction::extend:
            m_selection.selectOnly(m_anchorRow, row);
            break;
        case SelectAction::extendAdd:
            m_selection.setRange(m_anchorRow, row, true);
            break;
        }
    });
    setCurrentRow(row);
    scrollToRow(row);
}

void CCellView::selectAll()
{
    if (m_selectionMode != SelectionMode::multiple) return;
    changeSelection([&] { m_selection.selectAll(); });
}

void CCellView::clearSelection()
{
    changeSelection([&] { m_selection.clear(); });
}

void CCellView::setCurrentRow(int row)
{
    if (row == m_currentRow) return;
    if (m_currentRow >= 0) invalidateRows(m_currentRow, m_currentRow);
    m_currentRow = row;
    if (row >= 0) invalidateRows(row, row);
}

// ---- scrolling ----

int CCellView::getRowHeight() const
{
    return getFont()->getLineHeight() + 2 * m_paddingY;
}

int CCellView::headerHeight() const
{
    return m_headerVisible ? getFont()->getLineHeight() + 2 * kHeaderPadding : 0;
}

CRect CCellView::getHeaderRect() const
{
    const CRect inner = getClientRect().inset(1, 1, 1, 1);
    return {inner.x, inner.y, inner.width, std::min(inner.height, headerHeight())};
}

CRect CCellView::getRowsRect() const
{
    const CRect inner = getClientRect().inset(1, 1, 1, 1);
    const int bar = m_bar.isNeeded() ? m_bar.getTrack().width : 0;
    return inner.inset(0, getHeaderRect().height, bar, 0);
}

CRect CCellView::getRowRect(int row) const
{
    if (row < 0 || row >= m_rowCount) return {};
    const CRect rows = getRowsRect();
    const long long top = rows.y + static_cast<long long>(row) * getRowHeight() - m_bar.getPosition();
    // Rows far outside the view are cut to just past it, which keeps every
    // coordinate in int range however long the list is.
    const int height = getRowHeight();
    const long long clampedTop = std::clamp<long long>(top, rows.y - 2LL * height, rows.bottom() + height);
    return {rows.x, static_cast<int>(clampedTop), rows.width, height};
}

CRect CCellView::getCellRect(int row, int column) const
{
    const CRect rowRect = getRowRect(row);
    if (rowRect.isEmpty() || column < 0 || column >= getColumnCount()) return {};
    return {columnLeft(column), rowRect.y, m_columns[static_cast<std::size_t>(column)].width, rowRect.height};
}

int CCellView::rowAt(CPoint point) const
{
    const CRect rows = getRowsRect();
    if (!rows.contains(point)) return -1;
    const long long row = (static_cast<long long>(point.y) - rows.y + m_bar.getPosition()) / getRowHeight();
    return row < m_rowCount ? static_cast<int>(row) : -1;
}

void CCellView::updateScrollRange()
{
    const CRect inner = getClientRect().inset(1, 1, 1, 1);
    const CRect body = inner.inset(0, getHeaderRect().height, 0, 0);
    const long long content = static_cast<long long>(m_rowCount) * getRowHeight();
    const int before = m_bar.getPosition();
    m_bar.setRange(static_cast<int>(std::min<long long>(content, INT_MAX / 2)), body.height);
    const int width = CStyle::get().scrollBarWidth;
    m_bar.setTrack({body.right() - width, body.y, width, body.height});
    if (m_bar.getPosition() != before) invalidate(body);
    if (m_pendingScrollRow >= 0 && body.height > 0) scrollToRow(m_pendingScrollRow);
}

void CCellView::onResized()
{
    updateScrollRange();
}

void CCellView::layoutChildren()
{
    // A new font or padding changes the row height, and asks for a layout pass.
    updateScrollRange();
    CWindow::layoutChildren();
}

void CCellView::setScrollPosition(int position)
{
    // Only the rows and the bar move; the header and the frame stay.
    if (m_bar.setPosition(position)) invalidate(getRowsRect().united(m_bar.getTrack()));
}

int CCellView::getFirstVisibleRow() const
{
    if (m_rowCount == 0) return -1;
    return std::min(m_rowCount - 1, m_bar.getPosition() / getRowHeight());
}

void CCellView::scrollToRow(int row)
{
    if (row < 0 || row >= m_rowCount) return;
    const int view = getRowsRect().height;
    // Before the first layout there is no room to measure; the row is
    // brought into view once the view has its size.
    m_pendingScrollRow = view > 0 ? -1 : row;
    if (view <= 0) return;
    const long long top = static_cast<long long>(row) * getRowHeight();
    const int position = m_bar.getPosition();
    if (top < position) {
        setScrollPosition(static_cast<int>(top));
    } else if (top + getRowHeight() > position + view) {
        setScrollPosition(static_cast<int>(top + getRowHeight() - view));
    }
}

int CCellView::pageRows() const
{
    return std::max(1, getRowsRect().height / getRowHeight() - 1);
}

void CCellView::invalidateRows(int first, int last)
{
    if (m_rowCount == 0) return;
    first = std::max(first, 0);
    last = std::min(last, m_rowCount - 1);
    if (first > last) return;
    // Only the part that shows: a change to ten thousand rows repaints one screen.
    const CRect area = getRowRect(first).united(getRowRect(last)).intersected(getRowsRect());
    if (!area.isEmpty()) invalidate(area);
}

void CCellView::invalidateHeaderColumn(int column)
{
    if (column < 0 || column >= getColumnCount()) return;
    const CRect header = getHeaderRect();
    invalidate(CRect{columnLeft(column), header.y, m_columns[static_cast<std::size_t>(column)].width, header.height}
                   .intersected(header));
}

// ---- sorting ----

void CCellView::rebuildOrder()
{
    const bool sorts = m_sortOrder != SortOrder::none && m_sortColumn >= 0 && m_sortColumn < getColumnCount() &&
                       m_columns[static_cast<std::size_t>(m_sortColumn)].less;
    if (!sorts) {
        m_order.clear();
        return;
    }
    m_order.resize(static_cast<std::size_t>(m_rowCount));
    std::iota(m_order.begin(), m_order.end(), 0);
    const auto& less = m_columns[static_cast<std::size_t>(m_sortColumn)].less;
    if (m_sortOrder == SortOrder::ascending) {
        std::stable_sort(m_order.begin(), m_order.end(), less);
    } else {
        std::stable_sort(m_order.begin(), m_order.end(), [&less](int a, int b) { return less(b, a); });
    }
}

void CCellView::sortBy(int column, SortOrder order)
{
    if (order == SortOrder::none) {
        column = -1;
    } else {
        checkColumn(column, "sortBy");
    }
    // The selection, the current row and the anchor stay on the same model rows.
    std::vector<int> selected = m_selection.getSelectedRows();
    for (int& row : selected) row = toModelRow(row);
    const int currentModelRow = toModelRow(m_currentRow);
    const int anchorModelRow = toModelRow(m_anchorRow);
    if (m_sortColumn != column) invalidateHeaderColumn(m_sortColumn);
    m_sortColumn = column;
    m_sortOrder = order;
    rebuildOrder();
    std::vector<int> viewRowOf(static_cast<std::size_t>(m_rowCount));
    for (int view = 0; view < m_rowCount; ++view) viewRowOf[static_cast<std::size_t>(toModelRow(view))] = view;
    const auto toView = [&](int modelRow) { return modelRow < 0 ? -1 : viewRowOf[static_cast<std::size_t>(modelRow)]; };
    changeSelection([&] {
        m_selection.clear();
        for (const int modelRow : selected) m_selection.setRange(toView(modelRow), toView(modelRow), true);
    });
    m_currentRow = toView(currentModelRow);
    m_anchorRow = toView(anchorModelRow);
    invalidate(getRowsRect());
    invalidateHeaderColumn(m_sortColumn);
}

// ---- look ----

void CCellView::setColor(CellViewColor which, CColor color)
{
    m_colors[static_cast<std::size_t>(which)] = color;
    invalidate();
}

CColor CCellView::getColor(CellViewColor which) const
{
    if (const std::optional<CColor>& set = m_colors[static_cast<std::size_t>(which)]) return *set;
    const CStyle& style = CStyle::get();
    switch (which) {
    case CellViewColor::selectionBack:
        return style.selectionBackground;
    case CellViewColor::selectionText:
        return style.selectionText;
    case CellViewColor::inactiveSelectionBack:
        return style.selectionInactive;
    case CellViewColor::inactiveSelectionText:
        return textColorOr(style.text);
    case CellViewColor::evenBack:
        return backColorOr(style.evenRow);
    case CellViewColor::oddBack:
        return style.oddRow;
    case CellViewColor::evenText:
    case CellViewColor::oddText:
        return textColorOr(style.text);
    case CellViewColor::verticalLines:
    case CellViewColor::horizontalLines:
        return style.gridLine;
    case CellViewColor::headerBack:
        return style.headerBackground;
    case CellViewColor::headerText:
        return style.textSecondary;
    case CellViewColor::selectedEvenBack:
    case CellViewColor::selectedOddBack:
        return getColor(CellViewColor::selectionBack);
    case CellViewColor::selectedEvenText:
    case CellViewColor::selectedOddText:
        return getColor(CellViewColor::selectionText);
    // The light edge vanishes into the header until it is given a colour
    // of its own; the dark one is the border the rest of the view has.
    case CellViewColor::headerBorderLight:
        return getColor(CellViewColor::headerBack);
    case CellViewColor::headerBorderDark:
        return style.border;
    case CellViewColor::headerSortLight:
        return getColor(CellViewColor::headerSortDark);
    case CellViewColor::headerSortDark:
    case CellViewColor::lineHighlight:
        return style.accent;
    }
    return style.text;
}

void CCellView::setGridLines(bool horizontal, bool vertical)
{
    m_horizontalLines = horizontal;
    m_verticalLines = vertical;
    invalidate();
}

void CCellView::setCellPadding(int horizontal, int vertical)
{
    m_paddingX = std::max(0, horizontal);
    m_paddingY = std::max(0, vertical);
    updateScrollRange();
    invalidateLayout();
    invalidate();
}

void CCellView::setLineHighlightSize(int size)
{
    m_lineHighlightSize = std::max(0, size);
    invalidate(getRowsRect());
}

void CCellView::setHeaderVisible(bool visible)
{
    if (visible == m_headerVisible) return;
    m_headerVisible = visible;
    updateScrollRange();
    invalidate();
}

CSize CCellView::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    // Room for the header and a few rows at least, eight rows by preference.
    const int rows = type == SizeType::min ? 3 : 8;
    int width = 2 + CStyle::get().scrollBarWidth;
    for (const CCellViewColumn& column : m_columns) width += column.width;
    if (type == SizeType::min) width = std::min(width, 120);
    return {width, 2 + headerHeight() + rows * getRowHeight()};
}

}  // namespace fenn::gui
