#include "gui/widgets/CDropListPopup.h"

#include <cairo.h>

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CDropList.h"

namespace fenn::gui {

namespace {

// Room above and below the rows inside the list's border.
constexpr int kListPadding = 4;
// The column left of the text that holds the chosen entry's check mark.
constexpr int kCheckColumn = 24;

int rowHeight()
{
    return std::max(26, CStyle::get().font->getLineHeight() + 10);
}

}  // namespace

CDropListPopup::CDropListPopup(CDropList* owner) : m_owner(owner) {}

int CDropListPopup::heightFor(int count)
{
    const int rows = std::clamp(count, 1, kMaxVisibleRows);
    return rows * rowHeight() + 2 * kListPadding + kShadowMargin + 2;
}

int CDropListPopup::getCount() const
{
    return m_owner ? m_owner->getEntryCount() : 0;
}

int CDropListPopup::getVisibleRows() const
{
    return std::max(1, (getPanel().height - 2 * kListPadding) / rowHeight());
}

CRect CDropListPopup::getPanel() const
{
    return getClientRect().inset(kShadowMargin, 0, kShadowMargin, kShadowMargin + 2);
}

CRect CDropListPopup::getRowRect(int index) const
{
    const CRect panel = getPanel();
    return {panel.x + kListPadding, panel.y + kListPadding + (index - m_firstRow) * rowHeight(),
            panel.width - 2 * kListPadding, rowHeight()};
}

int CDropListPopup::rowAt(CPoint point) const
{
    const CRect panel = getPanel().inset(0, kListPadding, 0, kListPadding);
    if (!panel.contains(point)) return -1;
    const int index = m_firstRow + (point.y - panel.y) / rowHeight();
    return index < getCount() ? index : -1;
}

void CDropListPopup::scrollTo(int firstRow)
{
    firstRow = std::clamp(firstRow, 0, std::max(0, getCount() - getVisibleRows()));
    if (firstRow == m_firstRow) return;
    m_firstRow = firstRow;
    invalidate();
}

void CDropListPopup::setHighlight(int index)
{
    const int count = getCount();
    index = count == 0 ? -1 : std::clamp(index, 0, count - 1);
    if (index >= 0) {
        if (index < m_firstRow) scrollTo(index);
        if (index >= m_firstRow + getVisibleRows()) scrollTo(index - getVisibleRows() + 1);
    }
    if (index == m_highlight) return;
    m_highlight = index;
    invalidate();
}

void CDropListPopup::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect panel = getPanel();
    painter.drawShadow(panel, style.cornerRadius, kShadowMargin, style.shadow);
    painter.fillRoundedRect(panel, style.cornerRadius, style.panelBackground);
    painter.strokeRoundedRect(panel, style.cornerRadius, style.border);
    if (!m_owner) return;
    const CPainter::CSaved saved = painter.save();
    painter.clip(panel.inset(1, 1, 1, 1));
    const P<CFont> font = m_owner->getFont();
    const int count = getCount();
    const int last = std::min(count, m_firstRow + getVisibleRows() + 1);
    for (int index = m_firstRow; index < last; ++index) {
        const CRect row = getRowRect(index);
        const bool highlighted = index == m_highlight;
        if (highlighted) painter.fillRoundedRect(row, style.cornerRadius - 2, style.selectionBackground);
        const CColor text = highlighted ? style.selectionText : style.text;
        if (index == m_owner->getSelectedIndex()) {
            // A check mark drawn as a path looks the same in every font.
            cairo_t* cr = painter.getCairo();
            const double x = row.x + 7;
            const double y = row.y + row.height / 2.0;
            cairo_set_source_rgba(cr, text.red() / 255.0, text.green() / 255.0, text.blue() / 255.0, 1.0);
            cairo_set_line_width(cr, 1.8);
            cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
            cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
            cairo_move_to(cr, x, y);
            cairo_line_to(cr, x + 3.5, y + 3.5);
            cairo_line_to(cr, x + 10, y - 4);
            cairo_stroke(cr);
        }
        painter.drawText(row.inset(kCheckColumn, 0, 8, 0), m_owner->getEntry(index), font, text);
    }
    if (count > getVisibleRows()) {
        // A thin thumb tells that the list scrolls and where it stands.
        const CRect track = panel.inset(panel.width - 7, kListPadding, 3, kListPadding);
        const int height = std::max(16, track.height * getVisibleRows() / count);
        const int top = track.y + (track.height - height) * m_firstRow / std::max(1, count - getVisibleRows());
        painter.fillRoundedRect({track.x, top, 4, height}, 2, style.borderHover);
    }
}

bool CDropListPopup::onMouseMove(const CMouseEvent& event)
{
    const int row = rowAt(event.position);
    if (row >= 0) setHighlight(row);
    return true;
}

void CDropListPopup::onClick(const CMouseEvent& event)
{
    const int row = rowAt(event.position);
    if (row >= 0 && m_owner) m_owner->chooseFromList(row);
}

bool CDropListPopup::onWheel(const CWheelEvent& event)
{
    scrollTo(m_firstRow + event.deltaY);
    return true;
}

void CDropListPopup::onFrameChanged()
{
    // The frame took the pop-up away: a choice, Escape or a press outside.
    if (!getFrame() && m_owner) m_owner->listClosed();
}

}  // namespace fenn::gui
