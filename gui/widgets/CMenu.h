#pragma once

#include <functional>
#include <vector>

#include "foundation/CObject.h"
#include "gui/CWindow.h"

namespace fenn::gui {

class CFrameWindow;
class CMenu;
class CMenuBar;

// One line of a menu: a command with its action, a sub-menu, or a separator.
struct CMenuItem
{
    String text;
    // The key shown at the right, e.g. "Ctrl+S"; binding it is the frame's business.
    String shortcut;
    std::function<void()> action;
    P<CMenu> submenu;
    bool enabled = true;
    bool checked = false;
    bool separator = false;
};

// The items of a pop-up menu or of one menu of a menu bar. A menu is shown
// by a CMenuPopup; choosing an item closes every open menu first and then
// runs the item's action. GUI thread.
class CMenu : public CObject
{
public:
    int addItem(const String& text, std::function<void()> action, const String& shortcut = String());
    int addSubmenu(const String& text, const P<CMenu>& submenu);
    void addSeparator();
    void setEnabled(int index, bool enabled);
    void setChecked(int index, bool checked);
    int getItemCount() const { return static_cast<int>(m_items.size()); }
    const CMenuItem& getItem(int index) const;

    // Shows the menu as a pop-up of frame with its top left at point (frame
    // coordinates, moved in to stay inside the frame); it takes the keyboard.
    void popup(CFrameWindow& frame, CPoint point);

private:
    std::vector<CMenuItem> m_items;
};

// The window that shows a menu: a pop-up of the frame. Keys: Up and Down
// move among the enabled items, Enter or Space chooses, a letter goes to the
// next item that starts with it, Right opens a sub-menu (or the next menu of
// the bar), Left closes a sub-menu (or goes to the previous menu of the
// bar), Escape closes this menu. GUI thread.
class CMenuPopup : public CWindow
{
public:
    CMenuPopup(P<CMenu> menu, CMenuBar* bar, CMenuPopup* parentPopup);

    const P<CMenu>& getMenu() const { return m_menu; }
    int getCurrentItem() const { return m_current; }
    void setCurrentItem(int index);
    // The item under a point of this window, or -1.
    int itemAt(CPoint point) const;
    CRect getItemRect(int index) const;
    // Chooses the item: opens its sub-menu, or closes the menus and runs it.
    void activate(int index);
    // Opens this popup in frame at point and gives it the keyboard.
    void open(CFrameWindow& frame, CPoint point);
    void closeSubmenu();

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    bool onMouseMove(const CMouseEvent& event) override;
    void onClick(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void onMouseLeave() override;

protected:
    // Gives the keyboard back to the window that had it when the menu opened.
    void onFrameChanged() override;

private:
    int step(int from, int direction) const;
    int rowHeight(int index) const;

    P<CMenu> m_menu;
    CMenuBar* m_bar;
    CMenuPopup* m_parentPopup;
    P<CMenuPopup> m_submenu;
    P<CWindow> m_previousFocus;
    int m_current = -1;
};

}  // namespace fenn::gui
