#include "gui/skin/CCoreButton.h"

namespace fenn::gui::skin {

CCoreButton::CCoreButton(CWindow* parent, P<IButtonSkin> skin) : TCorePressWindow(parent, std::move(skin), buttonNormal)
{
}

ButtonState CCoreButton::computeState() const
{
    if (!isEnabled()) return buttonDisabled;
    // Held down but dragged off the button, it shows as not pressed, since
    // letting go there does not click.
    if (isPressed() && isHovered()) return buttonDown;
    if (isHovered() || isPressed()) return buttonHover;
    return buttonNormal;
}

void CCoreButton::paint(CPainter& painter)
{
    paintSkin(painter, getTextAlign(), TextWrap::ellipsis);
}

}  // namespace fenn::gui::skin
