#pragma once

#include "gui/widgets/CIndicatorButton.h"

namespace fenn::gui {

// A check box: a box that is ticked or not, with its text beside it. A
// click on the box or the text, or Space while it has the focus, toggles it
// and tells listeners Notification::changed. Owned by its parent window;
// GUI thread.
class CCheckBox : public CIndicatorButton
{
public:
    CCheckBox();
    explicit CCheckBox(const String& text);

    // Toggles as a click does and tells listeners; nothing while disabled.
    void toggle();

protected:
    void activate() override { toggle(); }
    void paintIndicator(CPainter& painter, const CRect& box) override;
};

}  // namespace fenn::gui
