#pragma once

#include "gui/widgets/CIndicatorButton.h"

namespace fenn::gui {

class CSelectGroup;

// A select field (radio button): a circle that is set or not, with its text
// beside it. A click or Space sets it, and the user cannot clear it again.
// Inside a CSelectGroup (the nearest one among its ancestors) setting one
// field clears the others of that group, the arrow keys move the choice
// among them, and only the chosen field (or the first one while none is
// chosen) is a Tab stop. Outside a group a field acts alone. A change by
// the user tells the field's listeners Notification::changed, also those of
// the field that was cleared. Owned by its parent window; GUI thread.
class CSelectField : public CIndicatorButton
{
public:
    CSelectField();
    explicit CSelectField(const String& text);

    // In a group, setting this field clears the others; no listener hears it.
    void setChecked(bool checked) override;
    // Sets this field as a click does and tells listeners; nothing while
    // disabled or when it is set already.
    void select();
    // The group this field belongs to, or null.
    CSelectGroup* getGroup() const;

    bool isFocusable() const override;
    bool onKeyDown(const CKeyEvent& event) override;

protected:
    void activate() override { select(); }
    void paintIndicator(CPainter& painter, const CRect& box) override;
};

}  // namespace fenn::gui
