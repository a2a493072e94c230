#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// Several lines of display text: the window's text wrapped at the window's
// width, aligned by its text alignment, from the top; the last line that
// fits ends with an ellipsis when more text follows. Its preferred height is
// that of the text wrapped at its present width (at its preferred width
// before it has one), so after a change of width it asks for another layout
// pass, which the frame runs at its next update. Takes no focus. Owned by
// its parent window; GUI thread.
class CTextArea : public CWindow
{
public:
    CTextArea();
    explicit CTextArea(const String& text);

    void setText(const String& text) override;
    // The height of the text wrapped at width.
    int getHeightForWidth(int width);

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;

protected:
    void onResized() override;

private:
    // The last height worked out, for the width, font and text it was for.
    int m_measuredWidth = -1;
    int m_measuredHeight = 0;
    P<CFont> m_measuredFont;
    // The preferred height last given to the layout.
    int m_reportedHeight = -1;
    bool m_needsLayout = false;
};

}  // namespace fenn::gui
