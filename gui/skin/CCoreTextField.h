#pragma once

#include "gui/skin/TCoreWindow.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"

namespace fenn::gui::skin {

// What the skinned text field and text area share: display text (Base:
// CTextField or CTextArea) drawn by a field skin in the states normal,
// hover and disabled. The text is drawn by the skin's text layers or,
// without any, inside objectpos, cut or wrapped there as Wrap says. Owned
// by its parent; GUI thread.
template <class Base, TextWrap Wrap> class TCoreField : public TCoreWindow<Base, FieldState>
{
public:
    FieldState computeState() const override
    {
        if (!this->isEnabled()) return fieldDisabled;
        return this->isHovered() ? fieldHover : fieldNormal;
    }

    void paint(CPainter& painter) override { this->paintSkin(painter, this->getTextAlign(), Wrap); }

protected:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the field to parent.
    TCoreField(CWindow* parent, P<IFieldSkin> skin)
        : TCoreWindow<Base, FieldState>(parent, std::move(skin), fieldNormal)
    {
    }
};

// One line of display text, cut with an ellipsis where it does not fit.
class CCoreTextField : public TCoreField<CTextField, TextWrap::ellipsis>
{
public:
    CCoreTextField(CWindow* parent, P<IFieldSkin> skin) : TCoreField(parent, std::move(skin)) {}

    CSize computeSize(SizeType type) override;
};

// Several lines of display text, wrapped inside objectpos when the skin has
// no text layer.
class CCoreTextArea : public TCoreField<CTextArea, TextWrap::wrap>
{
public:
    CCoreTextArea(CWindow* parent, P<IFieldSkin> skin) : TCoreField(parent, std::move(skin)) {}

    CSize computeSize(SizeType type) override;
};

}  // namespace fenn::gui::skin
