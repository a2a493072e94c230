#pragma once

#include <vector>

#include "gui/CWindow.h"

namespace fenn::gui {

// Pages behind tabs: a row of tabs across the top and, below it, the page
// of the selected tab, laid out in the room under the tabs; the other pages
// are hidden. The tab row takes the focus as one control (Left, Right, Home
// and End choose a tab); from anywhere inside the view Ctrl+Tab and
// Ctrl+Page Down choose the next page, Ctrl+Shift+Tab and Ctrl+Page Up the
// previous one, wrapping around. A change by the user tells listeners
// Notification::changed with the new index. The view is as large as its
// largest page, so that choosing a page moves nothing around it. Owned by
// its parent window; the pages are its children. GUI thread.
class CTabView : public CWindow
{
public:
    CTabView();

    // Adds page as a child with its tab text and returns its index; the
    // first page added is selected, later ones start hidden.
    int addPage(const String& text, const P<CWindow>& page);
    int getPageCount() const { return static_cast<int>(m_pages.size()); }
    // The page at index, or null.
    CWindow* getPage(int index) const;
    String getPageText(int index) const;
    void setPageText(int index, const String& text);
    int getSelectedIndex() const { return m_selected; }
    // Shows the page at index (ignored outside the pages); no listener hears it.
    void setSelectedIndex(int index);
    // Selects the page as a click on its tab does and tells listeners.
    void choosePage(int index);

    // The tab of the page at index, in the view's coordinates; empty outside.
    virtual CRect getTabRect(int index) const;
    // The tab under point (view coordinates), or -1.
    int getTabAt(CPoint point) const;
    // Where the selected page goes.
    virtual CRect getPageArea() const;
    // Paints the tabs; the row of tabs calls it from its paint, the painter
    // in the row's coordinates, with the row's place in the view and the
    // tab under the pointer (or -1).
    virtual void paintTabs(CPainter& painter, CPoint rowOrigin, int hoveredTab);

    CSize computeSize(SizeType type) override;
    void layoutChildren() override;
    void paint(CPainter& painter) override;
    bool onKeyDown(const CKeyEvent& event) override;

protected:
    // Where the row of tabs goes, in the view's coordinates.
    virtual CRect getTabRowRect() const;

private:
    struct Page
    {
        String text;
        P<CWindow> window;
    };

    int getTabWidth(int index) const;
    int getTabsWidth() const;

    std::vector<Page> m_pages;
    int m_selected = -1;
    // The row of tabs, a child of this view.
    P<CWindow> m_strip;
};

}  // namespace fenn::gui
