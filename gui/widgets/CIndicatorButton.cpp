#include "gui/widgets/CIndicatorButton.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Room between the indicator and the text, and above and below the taller
// of the two, so that a column of check boxes does not look crowded.
constexpr int kTextGap = 8;
constexpr int kVerticalPadding = 3;

}  // namespace

CIndicatorButton::CIndicatorButton()
{
    setFocusable(true);
}

void CIndicatorButton::setChecked(bool checked)
{
    if (m_checked == checked) return;
    m_checked = checked;
    invalidate();
}

CSize CIndicatorButton::computeSize(SizeType type)
{
    const CStyle& style = CStyle::get();
    const P<CFont> font = getFont();
    const int height = std::max(style.checkBoxSize, font->getLineHeight()) + 2 * kVerticalPadding;
    if (type == SizeType::max) return {kUnboundedExtent, height};
    if (getText().isEmpty()) return {style.checkBoxSize, height};
    int textWidth = font->measureText(getText()).width;
    // A narrow place may cut the text down to a few characters and an ellipsis.
    if (type == SizeType::min) textWidth = std::min(textWidth, font->measureText("Xx\u2026").width);
    return {style.checkBoxSize + kTextGap + textWidth, height};
}

CRect CIndicatorButton::getIndicatorRect() const
{
    const int size = CStyle::get().checkBoxSize;
    return {0, (getBounds().height - size) / 2, size, size};
}

CIndicatorButton::IndicatorColors CIndicatorButton::getIndicatorColors() const
{
    const CStyle& style = CStyle::get();
    if (!isEnabled()) {
        if (m_checked) {
            const CColor faded = style.accent.mixedWith(style.windowBackground, 0.6);
            return {faded, faded, style.accentText};
        }
        return {style.controlDisabled, style.borderDisabled, style.textDisabled};
    }
    if (m_checked) {
        const CColor fill = isPressed() ? style.accentPressed : isHovered() ? style.accentHover : style.accent;
        return {fill, fill, style.accentText};
    }
    if (isPressed()) return {style.controlPressed, style.borderHover, style.text};
    if (isHovered()) return {style.controlHover, style.borderHover, style.text};
    return {style.controlBackground, style.border, style.text};
}

void CIndicatorButton::paint(CPainter& painter)
{
    CWindow::paint(painter);
    const CStyle& style = CStyle::get();
    const CRect box = getIndicatorRect();
    paintIndicator(painter, box);
    if (getText().isEmpty()) return;
    const CRect label = getClientRect().inset(box.right() + kTextGap, 0, 0, 0);
    const CColor text = isEnabled() ? textColorOr(style.text) : style.textDisabled;
    painter.drawText(label, getText(), getFont(), text, TextAlign::left, TextWrap::ellipsis);
}

void CIndicatorButton::onClick(const CMouseEvent&)
{
    activate();
}

bool CIndicatorButton::onKeyDown(const CKeyEvent& event)
{
    if (event.key == Key::space && event.modifiers == modifierNone) {
        if (!event.repeat) activate();
        return true;
    }
    return false;
}

}  // namespace fenn::gui
