// The mouse and keyboard side of CCellView: selection by click and key,
// header and button-cell clicks, the scroll bar, the wheel and dragging
// rows to a new place.
#include <algorithm>
#include <cstdlib>

#include "gui/CFrameWindow.h"
#include "gui/widgets/CCellView.h"

namespace fenn::gui {

namespace {

// The wheel scrolls this many rows a notch.
constexpr int kWheelRows = 3;
// A press must move this far before it drags a row, so that a shaky click
// stays a click.
constexpr int kDragThreshold = 4;

bool has(std::uint32_t modifiers, Modifier modifier)
{
    return (modifiers & modifier) != 0;
}

}  // namespace

void CCellView::updateHover(CPoint point)
{
    const bool inside = isHovered() || (getFrame() && getFrame()->getCaptureWindow() == this);
    const int header = inside && getHeaderRect().contains(point) ? columnAt(point.x) : -1;
    if (header != m_hoveredHeader) {
        invalidateHeaderColumn(m_hoveredHeader);
        m_hoveredHeader = header;
        invalidateHeaderColumn(header);
    }
    CellPlace button;
    if (inside && getRowsRect().contains(point)) {
        const int row = rowAt(point);
        const int column = columnAt(point.x);
        if (row >= 0 && column >= 0 && m_columns[static_cast<std::size_t>(column)].kind == CellKind::button &&
            buttonRect(getCellRect(row, column)).contains(point))
            button = {row, column};
    }
    if (!(button == m_hoveredButton)) {
        if (m_hoveredButton.row >= 0) invalidate(getCellRect(m_hoveredButton.row, m_hoveredButton.column));
        m_hoveredButton = button;
        if (button.row >= 0) invalidate(getCellRect(button.row, button.column));
    }
    if (m_bar.setHovered(inside && m_bar.contains(point))) invalidate(m_bar.getTrack());
    const int row = inside && getRowsRect().contains(point) ? rowAt(point) : -1;
    if (row != m_hoveredRow) {
        // Only the line highlight shows which row the pointer is over.
        if (m_lineHighlightSize > 0) {
            invalidateRows(m_hoveredRow, m_hoveredRow);
            invalidateRows(row, row);
        }
        m_hoveredRow = row;
    }
}

void CCellView::onMouseLeave()
{
    updateHover({-1, -1});
}

bool CCellView::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    const CPoint point = event.position;
    CFrameWindow* frame = getFrame();
    if (m_bar.contains(point)) {
        setScrollPosition(m_bar.press(point));
        if (m_bar.isDragging()) {
            m_barDragged = true;
            if (frame) frame->captureMouse(this);
            invalidate(m_bar.getTrack());
        }
        return true;
    }
    if (getHeaderRect().contains(point)) {
        m_pressedHeader = columnAt(point.x);
        invalidateHeaderColumn(m_pressedHeader);
        return true;
    }
    if (!getRowsRect().contains(point)) return true;
    const int row = rowAt(point);
    const int column = columnAt(point.x);
    if (row >= 0 && column >= 0 && m_columns[static_cast<std::size_t>(column)].kind == CellKind::button &&
        buttonRect(getCellRect(row, column)).contains(point)) {
        // A button cell acts like a button and leaves the selection alone.
        m_pressedButton = {row, column};
        m_hoveredButton = m_pressedButton;
        invalidate(getCellRect(row, column));
        return true;
    }
    const bool control = has(event.modifiers, modifierControl);
    const bool shift = has(event.modifiers, modifierShift);
    if (row < 0) {
        if (!control && !shift) clearSelection();
        return true;
    }
    const SelectAction action = shift && control ? SelectAction::extendAdd
                                : shift          ? SelectAction::extend
                                : control        ? SelectAction::toggle
                                                 : SelectAction::replace;
    select(row, action);
    if (m_rowMoved && m_order.empty() && action == SelectAction::replace) {
        m_dragRow = row;
        m_pressPoint = point;
    }
    return true;
}

bool CCellView::onMouseMove(const CMouseEvent& event)
{
    const CPoint point = event.position;
    if (m_barDragged) {
        setScrollPosition(m_bar.drag(point));
        return true;
    }
    if (m_dragRow >= 0) {
        if (!m_draggingRow && std::abs(point.y - m_pressPoint.y) >= kDragThreshold) {
            m_draggingRow = true;
            if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
        }
        if (m_draggingRow) {
            // Above or below the rows the list scrolls a row for each move.
            const CRect rows = getRowsRect();
            if (point.y < rows.y) setScrollPosition(getScrollPosition() - getRowHeight());
            if (point.y >= rows.bottom()) setScrollPosition(getScrollPosition() + getRowHeight());
            const int gap = dropGapAt(point.y);
            if (gap != m_dropGap) {
                if (m_dropGap >= 0) invalidate(dropMarkerRect(m_dropGap));
                m_dropGap = gap;
                invalidate(dropMarkerRect(gap));
            }
        }
        return true;
    }
    updateHover(point);
    return m_pressedHeader >= 0 || m_pressedButton.row >= 0;
}

int CCellView::dropGapAt(int y) const
{
    const CRect rows = getRowsRect();
    const long long offset = static_cast<long long>(y) - rows.y + m_bar.getPosition();
    const long long gap = (offset + getRowHeight() / 2) / getRowHeight();
    return static_cast<int>(std::clamp<long long>(gap, 0, m_rowCount));
}

bool CCellView::onMouseUp(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    const CPoint point = event.position;
    const P<CWindow> keep(this);
    if (m_barDragged) {
        m_bar.release();
        m_barDragged = false;
        invalidate(m_bar.getTrack());
    } else if (m_pressedHeader >= 0) {
        const int pressed = m_pressedHeader;
        m_pressedHeader = -1;
        invalidateHeaderColumn(pressed);
        if (getHeaderRect().contains(point) && columnAt(point.x) == pressed) headerClicked(pressed);
    } else if (m_pressedButton.row >= 0) {
        const CellPlace pressed = m_pressedButton;
        m_pressedButton = {};
        invalidate(getCellRect(pressed.row, pressed.column));
        const bool stillOver = getRowsRect().contains(point) && rowAt(point) == pressed.row &&
                               columnAt(point.x) == pressed.column &&
                               buttonRect(getCellRect(pressed.row, pressed.column)).contains(point);
        if (stillOver) notify({Notification::cellClicked, pressed.row, pressed.column});
    } else if (m_draggingRow) {
        finishRowDrag();
    }
    m_dragRow = -1;
    if (CFrameWindow* frame = getFrame(); frame && frame->getCaptureWindow() == this) frame->releaseCapture();
    updateHover(point);
    return true;
}

void CCellView::headerClicked(int column)
{
    const CCellViewColumn& info = m_columns[static_cast<std::size_t>(column)];
    if (info.less) {
        const bool reverse = m_sortColumn == column && m_sortOrder == SortOrder::ascending;
        sortBy(column, reverse ? SortOrder::descending : SortOrder::ascending);
    }
    notify({Notification::headerClicked, -1, column});
}

void CCellView::finishRowDrag()
{
    const int from = m_dragRow;
    const int gap = m_dropGap;
    if (m_dropGap >= 0) invalidate(dropMarkerRect(m_dropGap));
    m_draggingRow = false;
    m_dropGap = -1;
    m_dragRow = -1;
    if (from < 0 || gap < 0) return;
    // Taking the row out first shifts the gaps below it up by one.
    const int to = gap > from ? gap - 1 : gap;
    if (to == from || !m_rowMoved) return;
    const RowMovedHandler handler = m_rowMoved;
    handler(from, to);
    select(to, SelectAction::replace);
}

void CCellView::onDoubleClick(const CMouseEvent& event)
{
    const int row = rowAt(event.position);
    const int column = columnAt(event.position.x);
    if (row < 0) return;
    if (column >= 0 && m_columns[static_cast<std::size_t>(column)].kind == CellKind::button) return;
    notify({Notification::activated, row});
}

bool CCellView::onWheel(const CWheelEvent& event)
{
    if (event.deltaY == 0 || has(event.modifiers, modifierShift)) return false;
    const int before = getScrollPosition();
    setScrollPosition(before + event.deltaY * kWheelRows * getRowHeight());
    // Other rows have come under the pointer.
    updateHover(event.position);
    return getScrollPosition() != before;
}

void CCellView::moveCurrent(int row, std::uint32_t modifiers)
{
    if (m_rowCount == 0) return;
    row = std::clamp(row, 0, m_rowCount - 1);
    const bool multiple = m_selectionMode == SelectionMode::multiple;
    if (multiple && has(modifiers, modifierShift)) {
        select(row, has(modifiers, modifierControl) ? SelectAction::extendAdd : SelectAction::extend);
    } else if (multiple && has(modifiers, modifierControl)) {
        setCurrentRow(row);
        scrollToRow(row);
    } else {
        select(row, SelectAction::replace);
    }
}

bool CCellView::onKeyDown(const CKeyEvent& event)
{
    if (has(event.modifiers, modifierAlt)) return false;
    const int current = m_currentRow;
    switch (event.key) {
    case Key::up:
        moveCurrent(current < 0 ? 0 : current - 1, event.modifiers);
        return true;
    case Key::down:
        moveCurrent(current + 1, event.modifiers);
        return true;
    case Key::pageUp:
        moveCurrent(std::max(0, current) - pageRows(), event.modifiers);
        return true;
    case Key::pageDown:
        moveCurrent(std::max(0, current) + pageRows(), event.modifiers);
        return true;
    case Key::home:
        moveCurrent(0, event.modifiers);
        return true;
    case Key::end:
        moveCurrent(m_rowCount - 1, event.modifiers);
        return true;
    case Key::enter:
        if (current < 0) return false;
        notify({Notification::activated, current});
        return true;
    case Key::space:
        if (current < 0) return false;
        select(current, has(event.modifiers, modifierControl) ? SelectAction::toggle : SelectAction::replace);
        return true;
    case Key::character:
        if (event.character == U'a' && event.modifiers == modifierControl &&
            m_selectionMode == SelectionMode::multiple) {
            selectAll();
            return true;
        }
        return false;
    default:
        return false;
    }
}

}  // namespace fenn::gui
