#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// The small dark label a frame shows near the pointer when it rests on a
// window with a tool tip text. Shown as a pop-up of the frame; GUI thread.
class CToolTip : public CWindow
{
public:
    explicit CToolTip(const String& text);

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    // Tool tips never take the pointer: it passes to what lies beneath.
    CWindow* hitTest(CPoint) override { return nullptr; }
};

}  // namespace fenn::gui
