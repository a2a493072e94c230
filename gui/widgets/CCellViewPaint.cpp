// The painting of CCellView: the header, the rows that cross the dirty
// area, the drop marker of a row drag, the scroll bar and the border.
#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/CTextLayout.h"
#include "gui/widgets/CCellView.h"

namespace fenn::gui {

namespace {

// The sort mark: a small triangle after the header title.
constexpr int kSortMarkWidth = 8;
constexpr int kSortMarkGap = 6;
// A button cell's button leaves this much of the row free above and below.
constexpr int kButtonInsetY = 3;
// Room between a text cell's icon and its text.
constexpr int kIconGap = 6;
// Header column separators stop short of the header's edges.
constexpr int kHeaderLineInset = 7;

void roundedClip(cairo_t* cr, const CRect& rect, double radius)
{
    const double x = rect.x;
    const double y = rect.y;
    const double r = std::max(0.0, std::min({radius, rect.width / 2.0, rect.height / 2.0}));
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + rect.width - r, y + r, r, -M_PI / 2, 0);
    cairo_arc(cr, x + rect.width - r, y + rect.height - r, r, 0, M_PI / 2);
    cairo_arc(cr, x + r, y + rect.height - r, r, M_PI / 2, M_PI);
    cairo_arc(cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
    cairo_clip(cr);
}

// One line of text centred vertically in rect, cut with an ellipsis.
void drawCellText(CPainter& painter, CTextLayout& layout, const CRect& rect, const String& text, CColor color,
                  TextAlign align)
{
    if (rect.width <= 0 || text.isEmpty()) return;
    layout.setText(text);
    layout.setWidth(rect.width, TextWrap::ellipsis);
    layout.setAlignment(align);
    const CSize size = layout.getSize();
    painter.drawLayout(layout, {rect.x, rect.y + (rect.height - size.height) / 2}, color);
}

// An image scaled to fit rect, keeping its proportions, placed by align.
void drawFitted(CPainter& painter, const P<IImage>& image, const CRect& rect, TextAlign align)
{
    if (!image || rect.isEmpty()) return;
    const CSize size = image->getSize();
    const double scale = std::min({1.0 * rect.width / size.width, 1.0 * rect.height / size.height, 1.0});
    const int width = std::max(1, static_cast<int>(size.width * scale));
    const int height = std::max(1, static_cast<int>(size.height * scale));
    const int x = align == TextAlign::left    ? rect.x
                  : align == TextAlign::right ? rect.right() - width
                                              : rect.x + (rect.width - width) / 2;
    painter.drawSurface(image->getSurface(), {x, rect.y + (rect.height - height) / 2, width, height});
}

}  // namespace

void CCellView::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    cairo_t* cr = painter.getCairo();
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(cr, &left, &top, &right, &bottom);
    const CRect dirty{static_cast<int>(std::floor(left)), static_cast<int>(std::floor(top)),
                      static_cast<int>(std::ceil(right) - std::floor(left)),
                      static_cast<int>(std::ceil(bottom) - std::floor(top))};
    const CRect client = getClientRect();
    const CRect inner = client.inset(1, 1, 1, 1);
    // A rounded clip makes cairo mask every fill and glyph, so only the
    // bands along the top and bottom edges, where the corners are, are
    // painted through it; the band between them gets a plain rectangle.
    const int radius = std::max(0, style.cornerRadius - 1);
    const CRect bands[] = {{inner.x, inner.y, inner.width, radius},
                           inner.inset(0, radius, 0, radius),
                           {inner.x, inner.bottom() - radius, inner.width, radius}};
    for (const CRect& band : bands) {
        const CRect area = band.intersected(dirty);
        if (area.isEmpty()) continue;
        const CPainter::CSaved saved = painter.save();
        if (&band != &bands[1]) roundedClip(cr, inner, radius);
        painter.clip(area);
        paintContent(painter, area);
    }
    painter.strokeRoundedRect(client, style.cornerRadius, hasFocus() ? style.accent : style.border);
}

void CCellView::paintContent(CPainter& painter, const CRect& dirty)
{
    const CStyle& style = CStyle::get();
    painter.fillRect(dirty, style.panelBackground);
    paintHeader(painter, dirty);
    const CRect rows = getRowsRect();
    const CRect rowsDirty = rows.intersected(dirty);
    if (!rowsDirty.isEmpty() && m_rowCount > 0) {
        const CPainter::CSaved saved = painter.save();
        painter.clip(rows);
        const int height = getRowHeight();
        const long long scroll = m_bar.getPosition();
        const int first = static_cast<int>((rowsDirty.y - rows.y + scroll) / height);
        const int last =
            static_cast<int>(std::min<long long>(m_rowCount - 1, (rowsDirty.bottom() - 1 - rows.y + scroll) / height));
        // One layout serves every cell: making a pango layout costs more than re-using one.
        CTextLayout text(getFont(), String());
        for (int row = first; row <= last; ++row) paintRow(painter, text, row, rowsDirty);
        if (m_draggingRow && m_dropGap >= 0) {
            const CRect marker = dropMarkerRect(m_dropGap);
            const int y = marker.y + marker.height / 2;
            painter.fillRect({marker.x + 4, y - 1, marker.width - 8, 2}, style.accent);
            painter.fillRoundedRect({marker.x + 1, y - 3, 6, 6}, 3, style.accent);
        }
    }
    if (!m_bar.getTrack().intersected(dirty).isEmpty()) m_bar.paint(painter, style.panelBackground);
}

void CCellView::paintHeader(CPainter& painter, const CRect& dirty)
{
    const CRect header = getHeaderRect();
    if (header.isEmpty() || header.intersected(dirty).isEmpty()) return;
    const CStyle& style = CStyle::get();
    const CColor light = getColor(CellViewColor::headerBorderLight);
    const CColor dark = getColor(CellViewColor::headerBorderDark);
    painter.fillRect(header, getColor(CellViewColor::headerBack));
    painter.drawLine({header.x, header.y}, {header.right(), header.y}, light);
    painter.drawLine({header.x, header.bottom() - 1}, {header.right(), header.bottom() - 1}, dark);
    CTextLayout text(getFont()->withWeight(FontWeight::bold), String());
    const CColor textColor = getColor(CellViewColor::headerText);
    int x = getRowsRect().x;
    for (int column = 0; column < getColumnCount() && x < header.right(); ++column) {
        const CCellViewColumn& info = m_columns[static_cast<std::size_t>(column)];
        const CRect cell{x, header.y, info.width, header.height - 1};
        x += info.width;
        if (cell.intersected(dirty).isEmpty()) continue;
        // A hovered or pressed column is flat: its fill covers the light edges.
        if (column > 0)
            painter.drawLine({cell.x, cell.y + kHeaderLineInset}, {cell.x, cell.bottom() - kHeaderLineInset}, light);
        if (m_pressedHeader == column && m_hoveredHeader == column) {
            painter.fillRect(cell, style.controlPressed);
        } else if (m_hoveredHeader == column || m_pressedHeader == column) {
            painter.fillRect(cell, style.controlHover);
        }
        const bool sorted = column == m_sortColumn && m_sortOrder != SortOrder::none;
        const CRect title = cell.inset(m_paddingX, 0, m_paddingX + (sorted ? kSortMarkWidth + kSortMarkGap : 0), 0);
        drawCellText(painter, text, title, info.title, textColor, info.align);
        if (sorted) {
            const int titleWidth = info.title.isEmpty() ? 0 : std::min(title.width, text.getSize().width);
            const int markLeft =
                info.align == TextAlign::left ? title.x + titleWidth + kSortMarkGap : title.right() + kSortMarkGap;
            paintSortMark(painter, markLeft, cell.y + cell.height / 2.0);
        }
        painter.drawLine({cell.right() - 1, cell.y + kHeaderLineInset},
                         {cell.right() - 1, cell.bottom() - kHeaderLineInset}, dark);
    }
}

void CCellView::paintSortMark(CPainter& painter, int left, double middle)
{
    cairo_t* cr = painter.getCairo();
    const double half = kSortMarkWidth / 2.0;
    const double tip = m_sortOrder == SortOrder::ascending ? -1.0 : 1.0;
    const auto triangle = [&] {
        cairo_move_to(cr, left, middle - tip * 2.0);
        cairo_line_to(cr, left + 2 * half, middle - tip * 2.0);
        cairo_line_to(cr, left + half, middle + tip * 3.0);
        cairo_close_path(cr);
    };
    const auto fill = [cr](CColor color) {
        cairo_set_source_rgba(cr, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0,
                              color.alpha() / 255.0);
        cairo_fill(cr);
    };
    const CColor dark = getColor(CellViewColor::headerSortDark);
    const CColor light = getColor(CellViewColor::headerSortLight);
    triangle();
    fill(dark);
    // The lit left half, as if the light came from the left; a second fill
    // of the same colour would only thicken the anti-aliased edges.
    if (light == dark) return;
    cairo_save(cr);
    cairo_rectangle(cr, left, middle - 4.0, half, 8.0);
    cairo_clip(cr);
    triangle();
    fill(light);
    cairo_restore(cr);
}

void CCellView::paintRow(CPainter& painter, CTextLayout& text, int row, const CRect& dirty)
{
    const CRect rect = getRowRect(row);
    const bool selected = m_selection.isSelected(row);
    const bool active = hasFocus();
    const bool even = row % 2 == 0;
    CColor back = getColor(even ? CellViewColor::evenBack : CellViewColor::oddBack);
    CColor fore = getColor(even ? CellViewColor::evenText : CellViewColor::oddText);
    if (selected && active) {
        back = getColor(even ? CellViewColor::selectedEvenBack : CellViewColor::selectedOddBack);
        fore = getColor(even ? CellViewColor::selectedEvenText : CellViewColor::selectedOddText);
    } else if (selected) {
        back = getColor(CellViewColor::inactiveSelectionBack);
        fore = getColor(CellViewColor::inactiveSelectionText);
    }
    painter.fillRect(rect, back);
    int x = rect.x;
    for (int column = 0; column < getColumnCount() && x < dirty.right(); ++column) {
        const int width = m_columns[static_cast<std::size_t>(column)].width;
        const CRect cell{x, rect.y, width, rect.height};
        x += width;
        if (cell.right() <= dirty.x) continue;
        paintCell(painter, text, row, column, cell, fore);
        if (m_verticalLines)
            painter.drawLine({cell.right() - 1, cell.y}, {cell.right() - 1, cell.bottom()},
                             getColor(CellViewColor::verticalLines));
    }
    if (m_horizontalLines)
        painter.drawLine({rect.x, rect.bottom() - 1}, {rect.right(), rect.bottom() - 1},
                         getColor(CellViewColor::horizontalLines));
    if (row == m_hoveredRow && m_lineHighlightSize > 0 && !m_draggingRow) {
        const int size = std::min(m_lineHighlightSize, rect.height);
        painter.fillRect({rect.x, rect.bottom() - size, rect.width, size}, getColor(CellViewColor::lineHighlight));
    }
    // The current row shows while the keyboard may move it: an outline,
    // unless it is the one selected row of a single selection.
    if (active && row == m_currentRow && (m_selectionMode == SelectionMode::multiple || !selected)) {
        const CColor outline = selected ? fore.withAlpha(170) : getColor(CellViewColor::selectionBack);
        painter.strokeRoundedRect(rect.inset(1, 1, 1, 1), 3, outline);
    }
}

CRect CCellView::buttonRect(const CRect& cell) const
{
    return cell.inset(std::min(m_paddingX, 4), kButtonInsetY, std::min(m_paddingX, 4), kButtonInsetY);
}

void CCellView::paintCell(CPainter& painter, CTextLayout& text, int row, int column, const CRect& cell,
                          CColor textColor)
{
    const CCellViewColumn& info = m_columns[static_cast<std::size_t>(column)];
    const int modelRow = toModelRow(row);
    if (!m_model || modelRow < 0) return;
    CRect content = cell.inset(m_paddingX, m_paddingY, m_paddingX, m_paddingY);
    switch (info.kind) {
    case CellKind::text: {
        if (const P<IImage> icon = m_model->getCellImage(modelRow, column)) {
            const int side = content.height;
            drawFitted(painter, icon, {content.x, content.y, side, side}, TextAlign::center);
            content = content.inset(side + kIconGap, 0, 0, 0);
        }
        drawCellText(painter, text, content, m_model->getCellText(modelRow, column), textColor, info.align);
        break;
    }
    case CellKind::image:
        drawFitted(painter, m_model->getCellImage(modelRow, column), content, info.align);
        break;
    case CellKind::button: {
        const CStyle& style = CStyle::get();
        const CellPlace place{row, column};
        const bool hovered = m_hoveredButton == place;
        const bool pressed = m_pressedButton == place && hovered;
        const CRect button = buttonRect(cell);
        const CColor fill = pressed ? style.controlPressed : hovered ? style.controlHover : style.controlBackground;
        painter.fillRoundedRect(button, style.cornerRadius - 2, fill);
        painter.strokeRoundedRect(button, style.cornerRadius - 2, hovered ? style.borderHover : style.border);
        drawCellText(painter, text, button.inset(4, 0, 4, 0), m_model->getCellText(modelRow, column), style.text,
                     TextAlign::center);
        break;
    }
    }
}

CRect CCellView::dropMarkerRect(int gap) const
{
    const CRect rows = getRowsRect();
    const long long y = rows.y + static_cast<long long>(gap) * getRowHeight() - m_bar.getPosition();
    const int clamped = static_cast<int>(std::clamp<long long>(y, rows.y - 8, rows.bottom() + 8));
    return {rows.x, clamped - 4, rows.width, 8};
}

}  // namespace fenn::gui
