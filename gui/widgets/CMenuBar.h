#pragma once

#include <vector>

#include "gui/widgets/CMenu.h"

namespace fenn::gui {

// The row of menu titles at the top of a frame. A click on a title opens
// its menu below it; while one is open, the pointer moving to another title
// opens that one, and Left and Right in a menu go to the neighbouring menus.
// F10 opens the first menu and Alt with a title's first letter opens that
// menu (accelerators the bar adds to its frame). GUI thread.
class CMenuBar : public CWindow
{
public:
    CMenuBar();

    int addMenu(const String& title, const P<CMenu>& menu);
    int getMenuCount() const { return static_cast<int>(m_menus.size()); }
    // Opens a menu (and closes the one that was open); -1 closes them.
    void openMenu(int index);
    int getOpenMenu() const { return m_open; }
    CMenuPopup* getOpenPopup() const { return m_popup.get(); }
    void openAdjacentMenu(int direction);
    // Told by the bar's pop-ups when the menus closed.
    void menuClosed();
    CRect getTitleRect(int index) const;
    int titleAt(CPoint point) const;

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    void onMouseLeave() override;

protected:
    void onFrameChanged() override;

private:
    struct Entry
    {
        String title;
        P<CMenu> menu;
    };
    std::vector<Entry> m_menus;
    P<CMenuPopup> m_popup;
    int m_open = -1;
    int m_hover = -1;
};

}  // namespace fenn::gui
