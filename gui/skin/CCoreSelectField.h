#pragma once

#include "gui/skin/TCoreActiveField.h"
#include "gui/widgets/CSelectField.h"

namespace fenn::gui::skin {

// A select field drawn by a select field skin: CSelectField's group
// behaviour, arrow keys and notifications; a field its group clears plays
// "unchecking" like one the user clears. Owned by its parent; GUI thread.
class CCoreSelectField : public TCoreActiveField<CSelectField, ISelectFieldSkin>
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the field to parent.
    CCoreSelectField(CWindow* parent, P<ISelectFieldSkin> skin) : TCoreActiveField(parent, std::move(skin)) {}
};

}  // namespace fenn::gui::skin
