#pragma once

#include "gui/skin/CCoreWindow.h"
#include "gui/widgets/CButton.h"

namespace fenn::gui::skin {

// A push button drawn by a button skin: CButton's clicks, keys and
// notifications, with states normal, hover, down and disabled. The window
// text is drawn by the skin's text layers, or inside objectpos when the
// skin has none. Owned by its parent; GUI thread.
class CCoreButton : public CButton
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the button to parent.
    CCoreButton(CWindow* parent, P<IButtonSkin> skin);

    CCoreWindow& getCore() { return *m_core; }
    // The state the button's inputs ask for now.
    ButtonState computeState() const;

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseEnter() override;
    void onMouseLeave() override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;

protected:
    void onResized() override;
    void onFrameChanged() override;
    void onPropertyChanged(const String& name) override { m_core->propertyChanged(name); }

private:
    P<CCoreWindow> m_core;
};

}  // namespace fenn::gui::skin
