#pragma once

#include "gui/skin/TCoreActiveField.h"
#include "gui/widgets/CCheckBox.h"

namespace fenn::gui::skin {

// A check box drawn by a check box skin: CCheckBox's clicks, Space and
// notifications, with the checked and unchecked states and the animated
// changes between them. Owned by its parent; GUI thread.
class CCoreCheckBox : public TCoreActiveField<CCheckBox, ICheckBoxSkin>
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the check box to parent.
    CCoreCheckBox(CWindow* parent, P<ICheckBoxSkin> skin) : TCoreActiveField(parent, std::move(skin)) {}
};

}  // namespace fenn::gui::skin
