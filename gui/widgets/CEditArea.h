#pragma once

#include "gui/widgets/CTextEditWindow.h"

namespace fenn::gui {

// Several lines of editable text ("editarea"), wrapped at the width of the
// area. Enter inserts a line break; Up, Down, Page Up and Page Down move by
// lines and keep the column; Home and End go to the ends of the line on
// screen, with Ctrl to the ends of the text. The wheel and the thumb at the
// right edge scroll. Tab is left to the frame, so the focus moves on.
// Owned by its parent window; GUI thread.
class CEditArea : public CTextEditWindow
{
public:
    CEditArea();
    explicit CEditArea(const String& text);

    // How far the text is scrolled up, in pixels, and how far it can be.
    int getScrollY() const { return m_scrollY; }
    int getMaxScrollY() const;
    void setScrollY(int scroll);

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    bool onKeyDown(const CKeyEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;

protected:
    CRect getTextArea() const override;
    CPoint getLayoutOrigin() const override;
    void configureLayout(CTextLayout& layout) const override;
    void scrollToCaret() override;

private:
    // The strip at the right edge that holds the scroll thumb, and the thumb.
    CRect getScrollStrip() const;
    CRect getThumbRect() const;
    int linesPerPage() const;

    int m_scrollY = 0;
    // While the thumb is dragged: where the press was and the scroll then.
    bool m_thumbDragged = false;
    int m_dragStartY = 0;
    int m_dragStartScroll = 0;
};

}  // namespace fenn::gui
