#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

class CDropList;

// The list that a CDropList opens below itself in a pop-up of the frame:
// the drop list's entries, one highlighted (under the pointer or moved by
// the keys), the chosen one with a check mark, scrolled when there are more
// than fit. A click on an entry chooses it. The drop list owns the pop-up
// and the frame holds it while it is open; the link back to the drop list
// is raw and cleared when the drop list goes. GUI thread.
class CDropListPopup : public CWindow
{
public:
    // More entries than this scroll.
    static constexpr int kMaxVisibleRows = 8;

    explicit CDropListPopup(CDropList* owner);

    void detachOwner() { m_owner = nullptr; }

    // The height the pop-up needs for count entries, and its room for the
    // shadow on each side (the list itself is inset by it).
    static int heightFor(int count);
    static constexpr int kShadowMargin = 4;

    int getHighlight() const { return m_highlight; }
    // Highlights an entry (clamped to the entries) and scrolls to it.
    void setHighlight(int index);
    // The entry under a point of the pop-up, or -1.
    int rowAt(CPoint point) const;
    int getFirstVisibleRow() const { return m_firstRow; }

    void paint(CPainter& painter) override;
    bool onMouseMove(const CMouseEvent& event) override;
    void onClick(const CMouseEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;

protected:
    void onFrameChanged() override;

private:
    CRect getPanel() const;
    CRect getRowRect(int index) const;
    int getCount() const;
    int getVisibleRows() const;
    void scrollTo(int firstRow);

    CDropList* m_owner;
    int m_highlight = -1;
    int m_firstRow = 0;
};

}  // namespace fenn::gui
