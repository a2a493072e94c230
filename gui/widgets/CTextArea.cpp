#include "gui/widgets/CTextArea.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Lines longer than this wrap unless the layout gives the area more room:
// about 55 characters, a comfortable measure for reading.
constexpr int kPreferredWrapWidth = 360;
// Narrower than this the words of a description no longer read as text.
constexpr int kMinWidth = 80;

}  // namespace

CTextArea::CTextArea() = default;

CTextArea::CTextArea(const String& text)
{
    CTextArea::setText(text);
}

void CTextArea::setText(const String& text)
{
    if (text.equals(getText())) return;
    m_measuredWidth = -1;
    CWindow::setText(text);
}

int CTextArea::getHeightForWidth(int width)
{
    const P<CFont> font = getFont();
    if (width != m_measuredWidth || font != m_measuredFont) {
        CTextLayout layout(font, getText());
        layout.setWidth(std::max(1, width), TextWrap::wrap);
        m_measuredHeight = getText().isEmpty() ? font->getLineHeight() : layout.getSize().height;
        m_measuredWidth = width;
        m_measuredFont = font;
    }
    return m_measuredHeight;
}

CSize CTextArea::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    const P<CFont> font = getFont();
    const int natural = font->measureText(getText()).width;
    if (type == SizeType::min) return {std::min(natural, kMinWidth), font->getLineHeight()};
    const int preferredWidth = std::min(natural, kPreferredWrapWidth);
    const int width = getBounds().width > 0 ? getBounds().width : preferredWidth;
    m_reportedHeight = getHeightForWidth(width);
    return {preferredWidth, m_reportedHeight};
}

void CTextArea::onResized()
{
    // The frame lays out top-down in one walk and does not run a second one
    // for sizes that change during it; a new width that needs another
    // height is passed on when the area is painted, after the walk.
    if (m_reportedHeight >= 0 && getHeightForWidth(getBounds().width) != m_reportedHeight) m_needsLayout = true;
}

void CTextArea::paint(CPainter& painter)
{
    if (m_needsLayout) {
        m_needsLayout = false;
        invalidateLayout();
    }
    CWindow::paint(painter);
    const CRect area = getClientRect();
    if (getText().isEmpty() || area.isEmpty()) return;
    const CStyle& style = CStyle::get();
    CTextLayout layout(getFont(), getText());
    layout.setWidth(area.width, TextWrap::wrap);
    layout.setAlignment(getTextAlign());
    // Lines below the bottom are dropped and the last one shown ends in an
    // ellipsis; pango shows at least one line.
    pango_layout_set_ellipsize(layout.getPangoLayout(), PANGO_ELLIPSIZE_END);
    pango_layout_set_height(layout.getPangoLayout(), area.height * PANGO_SCALE);
    painter.drawLayout(layout, {0, 0}, isEnabled() ? textColorOr(style.text) : style.textDisabled);
}

}  // namespace fenn::gui
