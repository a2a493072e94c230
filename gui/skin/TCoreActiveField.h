#pragma once

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/Events.h"
#include "gui/skin/CCoreWindow.h"

namespace fenn::gui::skin {

// What skinned check boxes and select fields share: a plain indicator
// widget (Base: CCheckBox or CSelectField) for clicks, keys, groups and
// notifications, drawn by an active field skin. A change of the checked
// value plays "checking" or "unchecking" (the skin's transition into it,
// or its own layers), which end in checked_normal or unchecked_normal; the
// label is drawn by the skin's text layers, or inside objectpos when the
// skin has none. Owned by its parent; GUI thread.
template <class Base, class Skin> class TCoreActiveField : public Base
{
public:
    CCoreWindow& getCore() { return *m_core; }

    // The state the inputs and the checked value ask for now.
    ActiveFieldState computeState() const
    {
        const bool checked = this->isChecked();
        const int current = m_core->getState();
        const int change = checked ? checking : unchecking;
        // A change plays to its end even when the pointer moves meanwhile.
        if (current == change && m_core->isInTransition()) return static_cast<ActiveFieldState>(change);
        const bool showsChecked =
            current == checkedNormal || current == checkedHover || current == checkedDisabled || current == checking;
        if (showsChecked != checked) return static_cast<ActiveFieldState>(change);
        if (!this->isEnabled()) return checked ? checkedDisabled : uncheckedDisabled;
        if (this->isHovered() || this->isPressed()) return checked ? checkedHover : uncheckedHover;
        return checked ? checkedNormal : uncheckedNormal;
    }

    void setChecked(bool checked) override
    {
        Base::setChecked(checked);
        m_core->setState(computeState());
    }

    CSize computeSize(SizeType type) override
    {
        const CSize preferred = m_core->getPreferredSize(this->getFont()->measureText(this->getText()));
        if (type == SizeType::max) return {kUnboundedExtent, preferred.height};
        return preferred;
    }

    void paint(CPainter& painter) override
    {
        m_core->syncState(computeState());
        m_core->paint(painter);
        if (!m_core->getSkin()->hasTextLayer()) {
            const CStyle& style = CStyle::get();
            const CColor color = this->isEnabled() ? this->textColorOr(style.text) : style.textDisabled;
            painter.drawText(m_core->getContentRect(), this->getText(), this->getFont(), color, TextAlign::left,
                             TextWrap::ellipsis);
        }
    }

    void onMouseEnter() override { m_core->setState(computeState()); }
    void onMouseLeave() override { m_core->setState(computeState()); }

    bool onMouseDown(const CMouseEvent& event) override
    {
        m_core->setState(computeState());
        return Base::onMouseDown(event);
    }

    bool onMouseUp(const CMouseEvent& event) override
    {
        // The frame clears the pressed window after this; paint picks it up.
        this->invalidate();
        return Base::onMouseUp(event);
    }

protected:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the window to parent.
    TCoreActiveField(CWindow* parent, P<Skin> skin)
    {
        CCoreWindow::checkParent(parent);
        m_core = make<CCoreWindow>(*this, skin, uncheckedNormal);
    }

    void onResized() override
    {
        m_core->resize(this->getBounds().size());
        Base::onResized();
    }

    void onFrameChanged() override
    {
        m_core->reset();
        Base::onFrameChanged();
    }

    void onPropertyChanged(const String& name) override { m_core->propertyChanged(name); }

private:
    P<CCoreWindow> m_core;
};

}  // namespace fenn::gui::skin
