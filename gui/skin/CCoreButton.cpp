#include "gui/skin/CCoreButton.h"

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui::skin {

CCoreButton::CCoreButton(CWindow* parent, P<IButtonSkin> skin)
{
    CCoreWindow::checkParent(parent);
    m_core = make<CCoreWindow>(*this, skin, buttonNormal);
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

CSize CCoreButton::computeSize(SizeType type)
{
    const CSize preferred = m_core->getPreferredSize(getFont()->measureText(getText()));
    if (type == SizeType::max) return {kUnboundedExtent, preferred.height};
    return preferred;
}

void CCoreButton::paint(CPainter& painter)
{
    m_core->syncState(computeState());
    m_core->paint(painter);
    if (!m_core->getSkin()->hasTextLayer()) {
        const CStyle& style = CStyle::get();
        const CColor color = isEnabled() ? textColorOr(style.text) : style.textDisabled;
        painter.drawText(m_core->getContentRect(), getText(), getFont(), color, getTextAlign(), TextWrap::ellipsis);
    }
}

void CCoreButton::onMouseEnter()
{
    m_core->setState(computeState());
}

void CCoreButton::onMouseLeave()
{
    m_core->setState(computeState());
}

bool CCoreButton::onMouseDown(const CMouseEvent& event)
{
    m_core->setState(computeState());
    return CButton::onMouseDown(event);
}

bool CCoreButton::onMouseUp(const CMouseEvent& event)
{
    // The frame clears the pressed window after this and invalidates the
    // button; paint then picks up the state.
    invalidate();
    return CButton::onMouseUp(event);
}

void CCoreButton::onResized()
{
    m_core->resize(getBounds().size());
    CButton::onResized();
}

void CCoreButton::onFrameChanged()
{
    m_core->reset();
    CButton::onFrameChanged();
}

}  // namespace fenn::gui::skin
