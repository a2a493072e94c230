#pragma once

#include "gui/skin/TCoreWindow.h"

namespace fenn::gui::skin {

// What skinned check boxes and select fields share: a plain indicator
// widget (Base: CCheckBox or CSelectField) for clicks, keys, groups and
// notifications, drawn by an active field skin. A change of the checked
// value plays "checking" or "unchecking" (the skin's transition into it,
// or its own layers), which end in checked_normal or unchecked_normal; the
// label is drawn by the skin's text layers, or inside objectpos when the
// skin has none. Owned by its parent; GUI thread.
template <class Base, class Skin> class TCoreActiveField : public TCorePressWindow<Base, ActiveFieldState>
{
public:
    ActiveFieldState computeState() const override
    {
        const CCoreWindow& core = this->getCore();
        const bool checked = this->isChecked();
        const int current = core.getState();
        const int change = checked ? checking : unchecking;
        // A change plays to its end even when the pointer moves meanwhile.
        if (current == change && core.isInTransition()) return static_cast<ActiveFieldState>(change);
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
        this->getCore().setState(computeState());
    }

    void paint(CPainter& painter) override { this->paintSkin(painter, TextAlign::left, TextWrap::ellipsis); }

protected:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the window to parent.
    TCoreActiveField(CWindow* parent, P<Skin> skin)
        : TCorePressWindow<Base, ActiveFieldState>(parent, std::move(skin), uncheckedNormal)
    {
    }
};

}  // namespace fenn::gui::skin
