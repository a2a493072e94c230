#pragma once

#include "gui/skin/TCoreWindow.h"
#include "gui/widgets/CButton.h"

namespace fenn::gui::skin {

// A push button drawn by a button skin: CButton's clicks, keys and
// notifications, with states normal, hover, down and disabled. The window
// text is drawn by the skin's text layers, or inside objectpos when the
// skin has none. Owned by its parent; GUI thread.
class CCoreButton : public TCorePressWindow<CButton, ButtonState>
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the button to parent.
    CCoreButton(CWindow* parent, P<IButtonSkin> skin);

    ButtonState computeState() const override;
    void paint(CPainter& painter) override;
};

}  // namespace fenn::gui::skin
