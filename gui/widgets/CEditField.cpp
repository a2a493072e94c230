#include "gui/widgets/CEditField.h"

#include <algorithm>

#include "gui/CFrameWindow.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Narrow enough for a number, wide enough for a short name.
constexpr int kPreferredWidth = 160;
constexpr int kMinWidth = 40;

}  // namespace

CEditField::CEditField() : CTextEditWindow(TextLines::single) {}

CEditField::CEditField(const String& text) : CEditField()
{
    setText(text);
}

CSize CEditField::computeSize(SizeType type)
{
    const CStyle& style = CStyle::get();
    const int height = std::max(style.controlHeight, getFont()->getLineHeight() + 10);
    switch (type) {
    case SizeType::min:
        return {kMinWidth, height};
    case SizeType::max:
        return {kUnboundedExtent, height};
    default:
        return {kPreferredWidth, height};
    }
}

void CEditField::onFocusIn()
{
    // Tabbing into a field selects its text, so typing replaces it; a click
    // places the caret itself.
    const CFrameWindow* frame = getFrame();
    if (frame && frame->isFocusVisible() && !isDragging()) selectAll();
    CTextEditWindow::onFocusIn();
}

CRect CEditField::getTextArea() const
{
    const int padding = CStyle::get().padding;
    return getClientRect().inset(padding, 2, padding, 2);
}

CPoint CEditField::getLayoutOrigin() const
{
    const CRect area = getTextArea();
    const int lineHeight = getFont()->getLineHeight();
    int x = area.x - m_scrollX;
    const int width = getTextLayout().getSize().width;
    if (width < area.width && getTextAlign() != TextAlign::left) {
        x = area.x + (area.width - width - 1) / (getTextAlign() == TextAlign::center ? 2 : 1);
    }
    return {x, area.y + (area.height - lineHeight) / 2};
}

void CEditField::configureLayout(CTextLayout& layout) const
{
    layout.setWidth(-1, TextWrap::none);
}

void CEditField::scrollToCaret()
{
    const CRect area = getTextArea();
    if (area.width <= 0) return;
    const int caret = getLayoutCaretRect().x;
    const int width = getTextLayout().getSize().width;
    int scroll = m_scrollX;
    // A caret that leaves the view brings a third of the view's width of
    // text along, so a long text does not crawl one character at a time.
    const int step = area.width / 3;
    if (caret < scroll) scroll = std::max(0, caret - step);
    if (caret >= scroll + area.width) scroll = caret - area.width + 1 + std::min(step, width - caret);
    scroll = std::clamp(scroll, 0, std::max(0, width + 1 - area.width));
    if (scroll != m_scrollX) {
        m_scrollX = scroll;
        invalidate();
    }
}

}  // namespace fenn::gui
