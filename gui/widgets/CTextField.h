#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// One line of display text (a label): the window's text in its font and
// colour, aligned by its text alignment, centred vertically and cut with an
// ellipsis where it does not fit. It grows sideways but not in height and
// takes no focus. Owned by its parent window; GUI thread.
class CTextField : public CWindow
{
public:
    CTextField();
    explicit CTextField(const String& text);

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
};

}  // namespace fenn::gui
