#include "gui/widgets/CTextEditWindow.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/Clipboard.h"

namespace fenn::gui {

namespace {

// The byte offset of a character index in a layout's UTF-8 text.
int byteOffset(PangoLayout* layout, int index)
{
    const char* text = pango_layout_get_text(layout);
    return static_cast<int>(g_utf8_offset_to_pointer(text, std::max(0, index)) - text);
}

// The top and bottom of a line of the layout, in pixels.
std::pair<int, int> lineExtent(PangoLayout* layout, int line)
{
    PangoLayoutIter* iter = pango_layout_get_iter(layout);
    for (int i = 0; i < line; ++i) pango_layout_iter_next_line(iter);
    int top = 0;
    int bottom = 0;
    pango_layout_iter_get_line_yrange(iter, &top, &bottom);
    pango_layout_iter_free(iter);
    return {PANGO_PIXELS(top), PANGO_PIXELS(bottom)};
}

int utf8Length(const std::u32string& text, std::size_t count)
{
    int bytes = 0;
    for (std::size_t i = 0; i < count && i < text.size(); ++i) {
        const char32_t c = text[i];
        bytes += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    }
    return bytes;
}

// A selected line break shows as this much room after the end of its line.
constexpr int kLineBreakWidth = 6;

}  // namespace

CTextEditWindow::CTextEditWindow(TextLines lines) : m_model(lines)
{
    setFocusable(true);
}

CTextEditWindow::~CTextEditWindow() = default;

void CTextEditWindow::setText(const String& text)
{
    clearComposition();
    m_model.setText(text);
    m_preferredX = -1;
    CWindow::setText(m_model.getText());
    invalidateTextLayout();
    scrollToCaret();
}

void CTextEditWindow::setEditMode(EditMode mode)
{
    if (mode == m_mode) return;
    m_mode = mode;
    clearComposition();
    invalidate();
}

void CTextEditWindow::setPlaceholder(const String& text)
{
    m_placeholder = text;
    invalidate();
}

void CTextEditWindow::setMaxLength(int maxLength)
{
    m_model.setMaxLength(maxLength);
    CWindow::setText(m_model.getText());
    invalidateTextLayout();
    scrollToCaret();
}

void CTextEditWindow::setFrameStyle(EditFrameStyle style)
{
    m_frameStyle = style;
    invalidateTextLayout();
}

void CTextEditWindow::select(int anchor, int caret)
{
    m_model.select(anchor, caret);
    m_preferredX = -1;
    scrollToCaret();
    invalidate();
}

void CTextEditWindow::selectAll()
{
    select(0, m_model.getLength());
}

void CTextEditWindow::copy()
{
    if (m_model.hasSelection()) getClipboard()->setText(m_model.getSelectedText());
}

bool CTextEditWindow::cut()
{
    if (isReadOnly() || !m_model.hasSelection()) return false;
    copy();
    m_model.eraseSelection();
    userEdited();
    return true;
}

bool CTextEditWindow::paste()
{
    if (isReadOnly()) return false;
    const String text = getClipboard()->getText();
    if (text.isEmpty() || !m_model.insert(text)) return false;
    userEdited();
    return true;
}

bool CTextEditWindow::undo()
{
    if (isReadOnly() || !m_model.undo()) return false;
    userEdited();
    return true;
}

bool CTextEditWindow::redo()
{
    if (isReadOnly() || !m_model.redo()) return false;
    userEdited();
    return true;
}

// ---- layout ----

void CTextEditWindow::onResized()
{
    invalidateTextLayout();
    scrollToCaret();
}

void CTextEditWindow::invalidateTextLayout()
{
    m_layoutValid = false;
    invalidate();
}

CTextLayout& CTextEditWindow::getTextLayout() const
{
    const P<CFont> font = getFont();
    if (!m_layout || font != m_layoutFont) {
        m_layout = std::make_unique<CTextLayout>(font, String());
        m_layoutFont = font;
        m_layoutValid = false;
    }
    if (m_layoutValid) return *m_layout;
    const std::u32string& text = m_model.getCharacters();
    const std::size_t caret = static_cast<std::size_t>(m_model.getCaret());
    std::u32string shown = text;
    if (!m_composition.empty()) shown.insert(caret, m_composition);
    m_layout->setText(String::copyOfUTF32(shown));
    configureLayout(*m_layout);
    PangoAttrList* attributes = pango_attr_list_new();
    // Every line gets the font's height: pango (1.50) gives empty lines half
    // a line when the context is scaled, and a line with an emoji from a
    // fallback font would otherwise stand taller than the rest.
    pango_attr_list_insert(attributes, pango_attr_line_height_new_absolute(font->getLineHeight() * PANGO_SCALE));
    if (!m_composition.empty()) {
        PangoAttribute* underline = pango_attr_underline_new(PANGO_UNDERLINE_SINGLE);
        underline->start_index = static_cast<guint>(utf8Length(shown, caret));
        underline->end_index = static_cast<guint>(utf8Length(shown, caret + m_composition.size()));
        pango_attr_list_insert(attributes, underline);
    }
    pango_layout_set_attributes(m_layout->getPangoLayout(), attributes);
    pango_attr_list_unref(attributes);
    m_layoutValid = true;
    return *m_layout;
}

int CTextEditWindow::toShownIndex(int index) const
{
    return index < m_model.getCaret() ? index : index + static_cast<int>(m_composition.size());
}

int CTextEditWindow::fromShownIndex(int index) const
{
    const int caret = m_model.getCaret();
    const int composed = static_cast<int>(m_composition.size());
    if (index <= caret) return index;
    return index < caret + composed ? caret : index - composed;
}

CRect CTextEditWindow::getLayoutCaretRect() const
{
    const int shown = m_model.getCaret() + (m_composition.empty() ? 0 : m_compositionCursor);
    return getTextLayout().getCaretRect(shown);
}

CRect CTextEditWindow::getLayoutCaretLine() const
{
    const CRect caret = getLayoutCaretRect();
    PangoLayout* layout = getTextLayout().getPangoLayout();
    const int shown = m_model.getCaret() + (m_composition.empty() ? 0 : m_compositionCursor);
    int line = 0;
    int x = 0;
    pango_layout_index_to_line_x(layout, byteOffset(layout, shown), FALSE, &line, &x);
    const auto [top, bottom] = lineExtent(layout, line);
    return {caret.x, top, 1, bottom - top};
}

CRect CTextEditWindow::getCaretRect() const
{
    const CPoint origin = getLayoutOrigin();
    return getLayoutCaretRect().translated(origin.x, origin.y);
}

int CTextEditWindow::indexAt(CPoint point) const
{
    const CPoint origin = getLayoutOrigin();
    return fromShownIndex(getTextLayout().getIndexAt({point.x - origin.x, point.y - origin.y}));
}

std::vector<CRect> CTextEditWindow::selectionRects(int shownStart, int shownEnd) const
{
    std::vector<CRect> rects;
    PangoLayout* layout = getTextLayout().getPangoLayout();
    const int startByte = byteOffset(layout, shownStart);
    const int endByte = byteOffset(layout, shownEnd);
    const char* text = pango_layout_get_text(layout);
    const int textBytes = static_cast<int>(std::char_traits<char>::length(text));
    PangoLayoutIter* iter = pango_layout_get_iter(layout);
    do {
        PangoLayoutLine* line = pango_layout_iter_get_line_readonly(iter);
        const int lineStart = line->start_index;
        const int lineEnd = line->start_index + line->length;
        if (lineStart > endByte) break;
        int top = 0;
        int bottom = 0;
        pango_layout_iter_get_line_yrange(iter, &top, &bottom);
        const CRect lineRect{0, PANGO_PIXELS(top), 0, PANGO_PIXELS(bottom) - PANGO_PIXELS(top)};
        if (lineEnd >= startByte) {
            int* ranges = nullptr;
            int count = 0;
            pango_layout_line_get_x_ranges(line, std::max(startByte, lineStart), std::min(endByte, lineEnd), &ranges,
                                           &count);
            int right = 0;
            for (int i = 0; i < count; ++i) {
                const int left = PANGO_PIXELS(ranges[2 * i]);
                right = PANGO_PIXELS(ranges[2 * i + 1]);
                rects.push_back({left, lineRect.y, right - left, lineRect.height});
            }
            g_free(ranges);
            // A line break inside the selection shows as a little room after the line.
            if (endByte > lineEnd && lineEnd < textBytes && text[lineEnd] == '\n') {
                PangoRectangle logical;
                pango_layout_line_get_pixel_extents(line, nullptr, &logical);
                const int x = count > 0 ? right : logical.x + logical.width;
                rects.push_back({x, lineRect.y, kLineBreakWidth, lineRect.height});
            }
        }
    } while (pango_layout_iter_next_line(iter));
    pango_layout_iter_free(iter);
    return rects;
}

int CTextEditWindow::lineStartAt(int index) const
{
    return fromShownIndex(getTextLayout().getLineStart(toShownIndex(index)));
}

int CTextEditWindow::lineEndAt(int index) const
{
    const int end = fromShownIndex(getTextLayout().getLineEnd(toShownIndex(index)));
    const std::u32string& text = m_model.getCharacters();
    // The end of a wrapped line is also the start of the next; stopping a
    // character earlier keeps the caret on the line it was on.
    if (end > 0 && end < m_model.getLength() && end > index && text[static_cast<std::size_t>(end) - 1] != U'\n')
        return m_model.previousStop(end, TextUnit::character);
    return end;
}

void CTextEditWindow::moveByLines(int lines, CaretMove move)
{
    CTextLayout& layout = getTextLayout();
    PangoLayout* pango = layout.getPangoLayout();
    const CRect caret = getLayoutCaretRect();
    if (m_preferredX < 0) m_preferredX = caret.x;
    int line = 0;
    int x = 0;
    pango_layout_index_to_line_x(pango, byteOffset(pango, toShownIndex(m_model.getCaret())), FALSE, &line, &x);
    const int target = line + lines;
    const int keptX = m_preferredX;
    int index = 0;
    if (target < 0) {
        index = 0;
    } else if (target >= layout.getLineCount()) {
        index = m_model.getLength();
    } else {
        const auto [top, bottom] = lineExtent(pango, target);
        index = fromShownIndex(layout.getIndexAt({keptX, (top + bottom) / 2}));
    }
    moveCaret(index, move);
    m_preferredX = keptX;
}

// ---- changes ----

void CTextEditWindow::moveCaret(int index, CaretMove move)
{
    m_model.setCaret(index, move);
    m_preferredX = -1;
    if (!m_composition.empty()) invalidateTextLayout();
    scrollToCaret();
    invalidate();
}

void CTextEditWindow::userEdited()
{
    m_preferredX = -1;
    CWindow::setText(m_model.getText());
    invalidateTextLayout();
    scrollToCaret();
    notify({Notification::changed});
}

void CTextEditWindow::clearComposition()
{
    if (m_composition.empty()) return;
    m_composition.clear();
    m_compositionCursor = 0;
    invalidateTextLayout();
}

// ---- painting ----

void CTextEditWindow::paintBox(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const bool enabled = isEnabled();
    CColor fill = backColorOr(style.controlBackground);
    if (!enabled) {
        fill = style.controlDisabled;
    } else if (isReadOnly()) {
        fill = style.windowBackground;
    }
    painter.fillRoundedRect(area, style.cornerRadius, fill);
    if (enabled && isFocusShown()) {
        // A soft inner glow under the accent border marks the focused field
        // also when the frame shows no focus ring (after a mouse click).
        painter.strokeRoundedRect(area, style.cornerRadius, style.accentSoft, 3.0);
        painter.strokeRoundedRect(area, style.cornerRadius, style.accent);
    } else {
        const CColor border = !enabled ? style.borderDisabled : isHovered() ? style.borderHover : style.border;
        painter.strokeRoundedRect(area, style.cornerRadius, border);
    }
}

void CTextEditWindow::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    if (m_frameStyle == EditFrameStyle::box) paintBox(painter);
    const CRect area = getTextArea();
    const CPainter::CSaved saved = painter.save();
    painter.clip(area);
    const CTextLayout& layout = getTextLayout();
    const CPoint origin = getLayoutOrigin();
    const bool enabled = isEnabled();
    const bool focused = enabled && isFocusShown();
    const CColor textColor = enabled ? textColorOr(style.text) : style.textDisabled;

    if (m_model.getLength() == 0 && m_composition.empty() && !m_placeholder.isEmpty()) {
        const bool wrap = m_model.getLines() == TextLines::multiple;
        const int lineHeight = getFont()->getLineHeight();
        const CRect rect{area.x, origin.y, area.width, wrap ? area.height : lineHeight};
        painter.drawText(rect, m_placeholder, getFont(), style.textDisabled, TextAlign::left,
                         wrap ? TextWrap::wrap : TextWrap::ellipsis);
    }

    std::vector<CRect> selection;
    if (m_model.hasSelection() && m_composition.empty()) {
        selection = selectionRects(m_model.getSelectionStart(), m_model.getSelectionEnd());
        for (CRect& rect : selection) rect = rect.translated(origin.x, origin.y);
        const CColor background = focused ? style.selectionBackground : style.selectionInactive;
        for (const CRect& rect : selection) painter.fillRect(rect, background);
    }
    painter.drawLayout(layout, origin, textColor);
    if (focused) {
        // Selected text is drawn again in the selection's text colour, clipped to the selection.
        for (const CRect& rect : selection) {
            const CPainter::CSaved inner = painter.save();
            painter.clip(rect);
            painter.drawLayout(layout, origin, style.selectionText);
        }
        if (!m_model.hasSelection() || !m_composition.empty()) {
            const CRect caret = getCaretRect();
            painter.fillRect({caret.x, caret.y, 1, caret.height}, textColor);
        }
    }
}

}  // namespace fenn::gui
