#include "gui/CTextLayout.h"

#include <pango/pangocairo.h>

#include <algorithm>


namespace fenn::gui {


CTextLayout::CTextLayout(P<CFont> font, const String& text)
    : m_font(std::move(font)), m_layout(pango_layout_new(sharedPangoContext()))
{
    pango_layout_set_font_description(m_layout, m_font->getDescription());
    setText(text);
}

CTextLayout::~CTextLayout()
{
    g_object_unref(m_layout);
}

void CTextLayout::setText(const String& text)
{
    m_utf8 = text.toStdString();
    m_characters = text.getLength();
    pango_layout_set_text(m_layout, m_utf8.data(), static_cast<int>(m_utf8.size()));
}

void CTextLayout::setWidth(int width, TextWrap wrap)
{
    pango_layout_set_width(m_layout, width < 0 ? -1 : width * PANGO_SCALE);
    pango_layout_set_ellipsize(m_layout, wrap == TextWrap::ellipsis ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_NONE);
    pango_layout_set_wrap(m_layout, PANGO_WRAP_WORD_CHAR);
    if (wrap == TextWrap::ellipsis) pango_layout_set_height(m_layout, -1);
}

void CTextLayout::setAlignment(TextAlign align)
{
    pango_layout_set_alignment(m_layout, align == TextAlign::center  ? PANGO_ALIGN_CENTER
                                         : align == TextAlign::right ? PANGO_ALIGN_RIGHT
                                                                     : PANGO_ALIGN_LEFT);
}

CSize CTextLayout::getSize() const
{
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(m_layout, &width, &height);
    return {width, height};
}

int CTextLayout::getLineCount() const
{
    return pango_layout_get_line_count(m_layout);
}

int CTextLayout::getLineHeight() const
{
    return m_font->getLineHeight();
}

int CTextLayout::byteIndex(int index) const
{
    index = std::clamp(index, 0, m_characters);
    const char* start = m_utf8.data();
    return static_cast<int>(g_utf8_offset_to_pointer(start, index) - start);
}

int CTextLayout::characterIndex(int byte) const
{
    byte = std::clamp(byte, 0, static_cast<int>(m_utf8.size()));
    return static_cast<int>(g_utf8_pointer_to_offset(m_utf8.data(), m_utf8.data() + byte));
}

CRect CTextLayout::getCaretRect(int index) const
{
    PangoRectangle strong;
    pango_layout_get_cursor_pos(m_layout, byteIndex(index), &strong, nullptr);
    return {PANGO_PIXELS(strong.x), PANGO_PIXELS(strong.y), 1, std::max(1, PANGO_PIXELS(strong.height))};
}

int CTextLayout::getIndexAt(CPoint point) const
{
    int byte = 0;
    int trailing = 0;
    pango_layout_xy_to_index(m_layout, point.x * PANGO_SCALE, point.y * PANGO_SCALE, &byte, &trailing);
    int index = characterIndex(byte);
    if (trailing > 0) index = std::min(m_characters, index + trailing);
    return index;
}

int CTextLayout::getLineStart(int index) const
{
    int line = 0;
    int x = 0;
    pango_layout_index_to_line_x(m_layout, byteIndex(index), 0, &line, &x);
    PangoLayoutLine* layoutLine = pango_layout_get_line_readonly(m_layout, line);
    return layoutLine ? characterIndex(layoutLine->start_index) : 0;
}

int CTextLayout::getLineEnd(int index) const
{
    int line = 0;
    int x = 0;
    pango_layout_index_to_line_x(m_layout, byteIndex(index), 0, &line, &x);
    PangoLayoutLine* layoutLine = pango_layout_get_line_readonly(m_layout, line);
    if (!layoutLine) return m_characters;
    int end = characterIndex(layoutLine->start_index + layoutLine->length);
    // A wrapped line ends before the break; a line that ends with "\n" ends before it.
    if (end > 0 && end <= m_characters && end < m_characters) {
        const int byte = byteIndex(end - 1);
        if (m_utf8[static_cast<std::size_t>(byte)] == '\n') --end;
    }
    return end;
}

void CTextLayout::draw(cairo_t* cr, CPoint origin) const
{
    cairo_move_to(cr, origin.x, origin.y);
    pango_cairo_show_layout(cr, m_layout);
}

}  // namespace fenn::gui
