#include "gui/CPainter.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace fenn::gui {

CPainter::CSaved::CSaved(cairo_t* cr) : m_cr(cr)
{
    cairo_save(m_cr);
}

CPainter::CSaved::~CSaved()
{
    cairo_restore(m_cr);
}

void CPainter::clip(const CRect& rect)
{
    cairo_rectangle(m_cr, rect.x, rect.y, rect.width, rect.height);
    cairo_clip(m_cr);
}

void CPainter::translate(int dx, int dy)
{
    cairo_translate(m_cr, dx, dy);
}

void CPainter::setColor(CColor color)
{
    cairo_set_source_rgba(m_cr, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0,
                          color.alpha() / 255.0);
}

void CPainter::fillRect(const CRect& rect, CColor color)
{
    if (rect.isEmpty()) return;
    setColor(color);
    cairo_rectangle(m_cr, rect.x, rect.y, rect.width, rect.height);
    cairo_fill(m_cr);
}

void CPainter::roundedPath(const CRect& rect, double radius, double inset)
{
    const double x = rect.x + inset;
    const double y = rect.y + inset;
    const double width = rect.width - 2 * inset;
    const double height = rect.height - 2 * inset;
    const double r = std::max(0.0, std::min({radius, width / 2, height / 2}));
    cairo_new_sub_path(m_cr);
    cairo_arc(m_cr, x + width - r, y + r, r, -M_PI / 2, 0);
    cairo_arc(m_cr, x + width - r, y + height - r, r, 0, M_PI / 2);
    cairo_arc(m_cr, x + r, y + height - r, r, M_PI / 2, M_PI);
    cairo_arc(m_cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
    cairo_close_path(m_cr);
}

void CPainter::fillRoundedRect(const CRect& rect, double radius, CColor color)
{
    if (rect.isEmpty()) return;
    setColor(color);
    roundedPath(rect, radius, 0.0);
    cairo_fill(m_cr);
}

void CPainter::strokeRoundedRect(const CRect& rect, double radius, CColor color, double lineWidth)
{
    if (rect.isEmpty()) return;
    setColor(color);
    cairo_set_line_width(m_cr, lineWidth);
    roundedPath(rect, std::max(0.0, radius - lineWidth / 2), lineWidth / 2);
    cairo_stroke(m_cr);
}

void CPainter::drawLine(CPoint from, CPoint to, CColor color, double lineWidth)
{
    setColor(color);
    cairo_set_line_width(m_cr, lineWidth);
    // Half-pixel offsets keep odd-width lines on whole device pixels.
    const double offset = std::fmod(lineWidth, 2.0) == 1.0 ? 0.5 : 0.0;
    cairo_move_to(m_cr, from.x + (from.x == to.x ? offset : 0), from.y + (from.y == to.y ? offset : 0));
    cairo_line_to(m_cr, to.x + (from.x == to.x ? offset : 0), to.y + (from.y == to.y ? offset : 0));
    cairo_stroke(m_cr);
}

void CPainter::drawShadow(const CRect& rect, double radius, int spread, CColor color)
{
    // Rings of falling strength approximate a blur at a fraction of its cost.
    for (int i = spread; i > 0; --i) {
        const double strength = (1.0 - static_cast<double>(i) / (spread + 1)) / spread;
        const CRect ring{rect.x - i, rect.y - i + spread / 2, rect.width + 2 * i, rect.height + 2 * i};
        fillRoundedRect(ring, radius + i, color.withAlpha(static_cast<std::uint8_t>(color.alpha() * strength)));
    }
}

void CPainter::drawText(const CRect& rect, const String& text, const P<CFont>& font, CColor color, TextAlign align,
                        TextWrap wrap)
{
    if (rect.isEmpty() || text.isEmpty()) return;
    CTextLayout layout(font, text);
    layout.setWidth(rect.width, wrap);
    layout.setAlignment(align);
    const CSize size = layout.getSize();
    const int y = wrap == TextWrap::wrap ? rect.y : rect.y + (rect.height - size.height) / 2;
    const CSaved saved(m_cr);
    clip(rect);
    drawLayout(layout, {rect.x, y}, color);
}

void CPainter::drawLayout(const CTextLayout& layout, CPoint origin, CColor color)
{
    setColor(color);
    layout.draw(m_cr, origin);
}

void CPainter::drawSurface(cairo_surface_t* surface, const CRect& dest, double alpha)
{
    if (!surface || dest.isEmpty()) return;
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    if (width <= 0 || height <= 0) return;
    const CSaved saved(m_cr);
    cairo_translate(m_cr, dest.x, dest.y);
    cairo_scale(m_cr, static_cast<double>(dest.width) / width, static_cast<double>(dest.height) / height);
    cairo_set_source_surface(m_cr, surface, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(m_cr), CAIRO_EXTEND_PAD);
    cairo_rectangle(m_cr, 0, 0, width, height);
    cairo_clip(m_cr);
    cairo_paint_with_alpha(m_cr, alpha);
}

}  // namespace fenn::gui
