#pragma once

#include "gui/widgets/CTextEditWindow.h"

namespace fenn::gui {

// One line of editable text ("editfield"): typing, selection with the mouse
// and the keyboard, the clipboard and undo as in CTextEditWindow. The text
// scrolls sideways to keep the caret in view. Enter, Escape, Tab, Up and
// Down are left to the parent and the frame (the default button, a drop
// list). Focused from the keyboard, it selects all of its text. Owned by
// its parent window; GUI thread.
class CEditField : public CTextEditWindow
{
public:
    CEditField();
    explicit CEditField(const String& text);

    // How far the text is scrolled to the left, in pixels.
    int getScrollX() const { return m_scrollX; }

    CSize computeSize(SizeType type) override;
    void onFocusIn() override;

protected:
    CRect getTextArea() const override;
    CPoint getLayoutOrigin() const override;
    void configureLayout(CTextLayout& layout) const override;
    void scrollToCaret() override;

private:
    int m_scrollX = 0;
};

}  // namespace fenn::gui
