#include "gui/widgets/CButton.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Room beside the text, and the narrowest a button gets, so that "OK" and
// "Cancel" buttons do not look cramped next to each other.
constexpr int kHorizontalPadding = 16;
constexpr int kMinWidth = 80;

}  // namespace

CButton::CButton()
{
    setFocusable(true);
    setTextAlign(TextAlign::center);
}

CButton::CButton(const String& text) : CButton()
{
    setText(text);
}

void CButton::setKind(ButtonKind kind)
{
    m_kind = kind;
    invalidate();
}

void CButton::click()
{
    if (isEnabled()) notify({Notification::clicked});
}

CSize CButton::computeSize(SizeType type)
{
    const CStyle& style = CStyle::get();
    const CSize text = getFont()->measureText(getText());
    const CSize preferred{std::max(kMinWidth, text.width + 2 * kHorizontalPadding),
                          std::max(style.controlHeight, text.height + 10)};
    if (type == SizeType::max) return {kUnboundedExtent, preferred.height};
    return preferred;
}

void CButton::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const bool enabled = isEnabled();
    const bool primary = m_kind == ButtonKind::primary;
    CColor fill = primary ? style.accent : style.controlBackground;
    CColor border = primary ? style.accent : style.border;
    CColor text = primary ? style.accentText : style.text;
    if (!enabled) {
        fill = primary ? style.accent.mixedWith(style.windowBackground, 0.6) : style.controlDisabled;
        border = primary ? fill : style.borderDisabled;
        text = primary ? style.accentText : style.textDisabled;
    } else if (isPressed()) {
        fill = primary ? style.accentPressed : style.controlPressed;
        border = primary ? fill : style.borderHover;
    } else if (isHovered()) {
        fill = primary ? style.accentHover : style.controlHover;
        border = primary ? fill : style.borderHover;
    }
    fill = backColorOr(fill);
    text = textColorOr(text);
    if (enabled && !isPressed()) painter.drawShadow(area.inset(1, 1, 1, 2), style.cornerRadius, 2, style.shadow);
    painter.fillRoundedRect(area.inset(0, 0, 0, 1), style.cornerRadius, fill);
    painter.strokeRoundedRect(area.inset(0, 0, 0, 1), style.cornerRadius, border);
    const CRect label = area.inset(kHorizontalPadding / 2, 0, kHorizontalPadding / 2, isPressed() ? 0 : 1);
    painter.drawText(label, getText(), getFont(), text, getTextAlign(), TextWrap::ellipsis);
}

void CButton::onClick(const CMouseEvent&)
{
    click();
}

bool CButton::onKeyDown(const CKeyEvent& event)
{
    if ((event.key == Key::space || event.key == Key::enter) && event.modifiers == modifierNone) {
        if (!event.repeat) click();
        return true;
    }
    return false;
}

}  // namespace fenn::gui
