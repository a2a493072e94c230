#pragma once

#include "gui/CWindow.h"
#include "gui/widgets/CScrollBarPart.h"

namespace fenn::gui {

// The directions a scroll panel scrolls in ("scroll" in layout files).
enum class ScrollDirections {
    none,
    horizontal,
    vertical,
    both,
};

// "none", "horz", "vert" or "both", in any case; throws CInvalidArgError
// for anything else.
ScrollDirections parseScrollDirections(const String& text);

// A view on content larger than itself: one content window (setContent),
// or, without one, the children placed by the panel's layout, or else its
// only child. In each scrolling direction the content gets its preferred
// size (at least the view's), in the others the view's size; scroll bars
// take room at the right and bottom edges only while the content does not
// fit. The content moves by the panel's content offset, so children paint
// and take the mouse where they show.
//
// Scrolling: the bars (drag the thumb, press the track to page), the wheel
// (three lines a notch, Shift turns it sideways), and the arrow, page,
// Home and End keys that the focused panel or focused content leaves
// unused. A descendant that gets the focus by the keyboard is scrolled
// into view. Owned by its parent window; GUI thread.
class CScrollPanel : public CWindow
{
public:
    CScrollPanel();

    void setScrollDirections(ScrollDirections directions);
    ScrollDirections getScrollDirections() const { return m_directions; }
    // Makes window the content (a child of the panel), replacing any earlier
    // content window; null goes back to the layout or the only child.
    void setContent(const P<CWindow>& window);
    CWindow* getContent() const;

    // Pixels of content scrolled past at the left and top.
    CPoint getScrollPosition() const;
    // Clamped to the content; repaints when it moved.
    void setScrollPosition(CPoint position);
    void scrollBy(int dx, int dy);
    // Scrolls as little as needed to show rect (content coordinates); what
    // does not fit shows from its left or top.
    void scrollTo(const CRect& rect);
    // Shows a window inside the content.
    void scrollToWindow(const CWindow& descendant);
    // The content's size and the part of the panel that shows it, as of the
    // last layout.
    CSize getContentSize() const { return m_contentSize; }
    CRect getViewport() const { return m_viewport; }
    const CScrollBarPart& getBar(Orientation orientation) const;

    CPoint getContentOffset() const override;
    CWindow* hitTest(CPoint point) override;
    void paintOverlay(CPainter& painter) override;
    void layoutChildren() override;
    CSize computeSize(SizeType type) override;
    void onMouseLeave() override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void onDescendantFocusIn(CWindow& window) override;

private:
    bool scrollsHorizontally() const;
    bool scrollsVertically() const;
    // The preferred, min or max size of the content, whatever holds it.
    CSize contentSize(SizeType type);
    int lineStep() const;
    CScrollBarPart* barAt(CPoint point);
    void invalidateBars();

    ScrollDirections m_directions = ScrollDirections::both;
    P<CWindow> m_content;
    CScrollBarPart m_horizontal{Orientation::horizontal};
    CScrollBarPart m_vertical{Orientation::vertical};
    CScrollBarPart* m_dragged = nullptr;
    CSize m_contentSize;
    CRect m_viewport;
};

}  // namespace fenn::gui
