#pragma once

#include <vector>

#include "gui/skin/CCoreWindow.h"
#include "gui/widgets/CTabView.h"

namespace fenn::gui::skin {

// A tab view drawn by a tab view skin, with CTabView's pages, clicks, keys
// and notifications. The tabs stand in a row in the tab area (its margins
// inside the view), at the top or bottom and to the left, centre or right
// as the skin places them; each tab is as large as its title with the tab
// skin's core margins (or its layers) ask, all as high as the highest, and
// is drawn over its slot grown by the tab skin's overlap margins, the
// active tab last. The skin's own layers draw the page background beside
// the row; the page goes inside it by the content area margins. Owned by
// its parent; GUI thread.
class CCoreTabView : public CTabView
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the view to parent.
    CCoreTabView(CWindow* parent, P<ITabViewSkin> skin);

    // The page background.
    CCoreWindow& getCore() { return *m_core; }
    // The live layers of the tab of page index (made when first painted);
    // null before.
    CCoreWindow* getTabCore(int index) const;

    TabViewState computeState() const;
    TabState computeTabState(int index, int hoveredTab) const;

    // The tab's slot (where it takes clicks) and where it is drawn.
    CRect getTabRect(int index) const override;
    CRect getTabPaintRect(int index) const;
    // Where the skin's own layers draw the page background.
    CRect getPageBackgroundRect() const;
    CRect getPageArea() const override;

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void paintTabs(CPainter& painter, CPoint rowOrigin, int hoveredTab) override;
    void onMouseEnter() override;
    void onMouseLeave() override;

protected:
    CRect getTabRowRect() const override;
    void onResized() override;
    void onFrameChanged() override;
    void onPropertyChanged(const String& name) override;

private:
    // The size tab index asks for (before the row makes the heights equal).
    CSize getTabSize(int index) const;
    int getRowHeight() const;
    // The tab area inside the view, and the slots' total width.
    CRect getTabArea() const;
    int getRowWidth() const;
    // One live layer set per page.
    void syncTabCores();

    P<ITabViewSkin> m_skin;
    P<CCoreWindow> m_core;
    std::vector<P<CCoreWindow>> m_tabs;
};

}  // namespace fenn::gui::skin
