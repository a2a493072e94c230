#include "gui/dialogs/CFileDialogParts.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "foundation/CException.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/dialogs/CFileIcons.h"

namespace fenn::gui {

namespace {

// The name column never gets narrower than this, even in a small dialog.
constexpr int kMinNameWidth = 160;
// The warning mark of the error line and the room around it.
constexpr int kMarkSize = 16;
constexpr int kNoticePadding = 10;

// The path of a "file" URI without a trailing "/" (but "/" itself).
std::string folderPath(const CURI& folder)
{
    std::string path = folder.toPath().toStdString();
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

}  // namespace

CURI canonicalFolder(const CURI& folder)
{
    if (!folder.isScheme("file")) return folder;
    try {
        return CURI::fromPath(String::copyOf(folderPath(folder)));
    } catch (const CException&) {
        return folder;
    }
}

String displayPath(const CURI& place)
{
    if (!place.isScheme("file")) return place.getURI();
    try {
        return String::copyOf(folderPath(place));
    } catch (const CException&) {
        return place.getURI();
    }
}

void CFolderView::setEmptyText(const String& text)
{
    if (text == m_emptyText) return;
    m_emptyText = text;
    invalidate();
}

void CFolderView::paint(CPainter& painter)
{
    CCellView::paint(painter);
    if (getRowCount() > 0 || m_emptyText.isEmpty()) return;
    const CRect rows = getRowsRect();
    // The hint sits in the upper part, where the eye looks for the first rows.
    const CRect hint{rows.x, rows.y + rows.height / 4, rows.width, getRowHeight() * 2};
    painter.drawText(hint, m_emptyText, getFont(), CStyle::get().textSecondary, TextAlign::center, TextWrap::ellipsis);
}

void CFolderView::onResized()
{
    CCellView::onResized();
    if (getColumnCount() == 0) return;
    // Room for the scroll bar is kept whether it shows or not, so the
    // columns do not jump when a folder with more rows comes.
    int others = 2 + CStyle::get().scrollBarWidth;
    for (int column = 1; column < getColumnCount(); ++column) others += getColumn(column).width;
    setColumnWidth(0, std::max(kMinNameWidth, getClientRect().width - others));
}

void CNoticeLine::setText(const String& text)
{
    CWindow::setText(text);
    setToolTipText(text);
    invalidate();
}

CSize CNoticeLine::computeSize(SizeType type)
{
    const int height = std::max(CStyle::get().controlHeight, getFont()->getLineHeight() + 12);
    if (type == SizeType::max) return {kUnboundedExtent, height};
    return {type == SizeType::min ? 0 : getFont()->measureText(getText()).width + kMarkSize + 3 * kNoticePadding,
            height};
}

void CNoticeLine::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    painter.fillRoundedRect(area, style.cornerRadius, style.errorBackground);
    painter.strokeRoundedRect(area, style.cornerRadius, style.errorText.withAlpha(60));
    // A filled circle with an exclamation mark cut out of it.
    cairo_t* cr = painter.getCairo();
    const double centreX = kNoticePadding + kMarkSize / 2.0;
    const double centreY = area.height / 2.0;
    setSourceColor(cr, style.errorText);
    cairo_new_path(cr);
    cairo_arc(cr, centreX, centreY, kMarkSize / 2.0, 0, 2 * M_PI);
    cairo_fill(cr);
    setSourceColor(cr, style.errorBackground);
    cairo_set_line_width(cr, 1.8);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(cr, centreX, centreY - 4.0);
    cairo_line_to(cr, centreX, centreY + 0.8);
    cairo_stroke(cr);
    cairo_arc(cr, centreX, centreY + 3.9, 1.05, 0, 2 * M_PI);
    cairo_fill(cr);
    const CRect text = area.inset(kNoticePadding * 2 + kMarkSize, 0, kNoticePadding, 0);
    painter.drawText(text, getText(), getFont(), style.errorText, TextAlign::left, TextWrap::ellipsis);
}

CSize CUpButton::computeSize(SizeType)
{
    const int side = CStyle::get().controlHeight;
    return {side, side};
}

void CUpButton::paint(CPainter& painter)
{
    CButton::paint(painter);
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    cairo_t* cr = painter.getCairo();
    const double x = area.width / 2.0;
    // The button's face sits a pixel above its shadow.
    const double y = (area.height - (isPressed() ? 0 : 1)) / 2.0;
    setSourceColor(cr, isEnabled() ? style.text : style.textDisabled);
    cairo_set_line_width(cr, 1.6);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_new_path(cr);
    cairo_move_to(cr, x, y + 5.5);
    cairo_line_to(cr, x, y - 5.5);
    cairo_move_to(cr, x - 5.0, y - 0.5);
    cairo_line_to(cr, x, y - 5.5);
    cairo_line_to(cr, x + 5.0, y - 0.5);
    cairo_stroke(cr);
}

}  // namespace fenn::gui
