#include "gui/widgets/CTabView.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

constexpr int kStripHeight = 36;
// The tabs start a little below the view's top edge, so that the focus ring
// around them stays inside the view's border.
constexpr int kStripTop = 4;
// The tabs start this far in from the view's left edge.
constexpr int kStripInset = 8;
// Room beside a tab's text.
constexpr int kTabPadding = 14;
// The accent line under the selected tab.
constexpr int kUnderlineHeight = 3;
constexpr int kUnderlineInset = 8;
// Room between the view's border and the page.
constexpr int kPagePadding = 12;

// The row of tabs: a child of the view, as wide as its tabs, so that the
// frame's focus ring goes round the tabs alone. It paints them and turns
// presses and keys into choices; the view keeps the pages.
class CTabStrip : public CWindow
{
public:
    CTabStrip() { setFocusable(true); }

    CTabView& view() const { return *static_cast<CTabView*>(getParent()); }

    // The strip's origin in the view.
    CPoint offset() const { return getBounds().origin(); }

    void paint(CPainter& painter) override
    {
        if (getParent()) view().paintTabs(painter, offset(), m_hovered);
    }

    bool onMouseDown(const CMouseEvent& event) override
    {
        if (event.button != MouseButton::left) return false;
        const int index = view().getTabAt({event.position.x + offset().x, event.position.y + offset().y});
        if (index >= 0) view().choosePage(index);
        return true;
    }

    bool onMouseMove(const CMouseEvent& event) override
    {
        setHovered(view().getTabAt({event.position.x + offset().x, event.position.y + offset().y}));
        return true;
    }

    void onMouseLeave() override { setHovered(-1); }

    bool onKeyDown(const CKeyEvent& event) override
    {
        if (event.modifiers != modifierNone) return false;
        CTabView& tabs = view();
        const int last = tabs.getPageCount() - 1;
        switch (event.key) {
        case Key::left:
            tabs.choosePage(std::max(0, tabs.getSelectedIndex() - 1));
            return true;
        case Key::right:
            tabs.choosePage(std::min(last, tabs.getSelectedIndex() + 1));
            return true;
        case Key::home:
            tabs.choosePage(0);
            return true;
        case Key::end:
            tabs.choosePage(last);
            return true;
        default:
            return false;
        }
    }

private:
    void setHovered(int index)
    {
        if (index == m_hovered) return;
        m_hovered = index;
        invalidate();
    }

    int m_hovered = -1;
};

}  // namespace

CTabView::CTabView() : m_strip(make<CTabStrip>())
{
    addChild(m_strip);
}

int CTabView::addPage(const String& text, const P<CWindow>& page)
{
    m_pages.push_back({text, page});
    addChild(page);
    const int index = getPageCount() - 1;
    if (m_selected < 0) {
        m_selected = index;
        page->setVisible(true);
    } else {
        page->setVisible(false);
    }
    m_strip->invalidate();
    invalidateLayout();
    return index;
}

CWindow* CTabView::getPage(int index) const
{
    return index >= 0 && index < getPageCount() ? m_pages[static_cast<std::size_t>(index)].window.get() : nullptr;
}

String CTabView::getPageText(int index) const
{
    return index >= 0 && index < getPageCount() ? m_pages[static_cast<std::size_t>(index)].text : String();
}

void CTabView::setPageText(int index, const String& text)
{
    if (index < 0 || index >= getPageCount()) return;
    m_pages[static_cast<std::size_t>(index)].text = text;
    m_strip->invalidate();
    invalidateLayout();
}

void CTabView::setSelectedIndex(int index)
{
    if (index < 0 || index >= getPageCount() || index == m_selected) return;
    // Hide the old page first, so that the focus leaves it before the new one shows.
    if (CWindow* old = getPage(m_selected)) old->setVisible(false);
    m_selected = index;
    getPage(index)->setVisible(true);
    m_strip->invalidate();
    invalidateLayout();
}

void CTabView::choosePage(int index)
{
    if (!isEnabled() || index < 0 || index >= getPageCount() || index == m_selected) return;
    setSelectedIndex(index);
    notify({Notification::changed, index});
}

int CTabView::getTabWidth(int index) const
{
    return getFont()->measureText(getPageText(index)).width + 2 * kTabPadding;
}

int CTabView::getTabsWidth() const
{
    int width = 0;
    for (int index = 0; index < getPageCount(); ++index) width += getTabWidth(index);
    return width;
}

CRect CTabView::getTabRect(int index) const
{
    if (index < 0 || index >= getPageCount()) return {};
    int x = kStripInset;
    for (int before = 0; before < index; ++before) x += getTabWidth(before);
    return {x, kStripTop, getTabWidth(index), kStripHeight - kStripTop};
}

int CTabView::getTabAt(CPoint point) const
{
    for (int index = 0; index < getPageCount(); ++index) {
        if (getTabRect(index).contains(point)) return index;
    }
    return -1;
}

CRect CTabView::getPageArea() const
{
    return getClientRect().inset(kPagePadding, kStripHeight + kPagePadding, kPagePadding, kPagePadding);
}

CSize CTabView::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    CSize content;
    for (const Page& page : m_pages) {
        const CSize size = page.window->getSize(type);
        content.width = std::max(content.width, size.width);
        content.height = std::max(content.height, size.height);
    }
    CSize size{content.width + 2 * kPagePadding, content.height + kStripHeight + 2 * kPagePadding};
    // The tabs may be cut off where room is short, but not by choice.
    if (type == SizeType::preferred) size.width = std::max(size.width, getTabsWidth() + 2 * kStripInset);
    return size;
}

CRect CTabView::getTabRowRect() const
{
    return {kStripInset, kStripTop, std::min(getTabsWidth(), std::max(0, getBounds().width - 2 * kStripInset)),
            kStripHeight - kStripTop};
}

void CTabView::layoutChildren()
{
    m_strip->setBounds(getTabRowRect());
    if (CWindow* page = getPage(m_selected)) page->setBounds(getPageArea());
}

void CTabView::paintTabs(CPainter& painter, CPoint rowOrigin, int hoveredTab)
{
    const CStyle& style = CStyle::get();
    const bool enabled = isEnabled();
    for (int index = 0; index < getPageCount(); ++index) {
        const CRect tab = getTabRect(index).translated(-rowOrigin.x, -rowOrigin.y);
        const bool selected = index == getSelectedIndex();
        const bool hovered = enabled && index == hoveredTab;
        if (hovered && !selected)
            painter.fillRoundedRect(tab.inset(2, 2, 2, 6), style.cornerRadius, style.controlHover);
        CColor text = selected ? style.text : hovered ? style.text : style.textSecondary;
        if (!enabled) text = style.textDisabled;
        painter.drawText(tab.inset(0, 0, 0, 2), getPageText(index), getFont(), text, TextAlign::center,
                         TextWrap::ellipsis);
        if (selected) {
            const CRect line{tab.x + kUnderlineInset, tab.bottom() - kUnderlineHeight, tab.width - 2 * kUnderlineInset,
                             kUnderlineHeight};
            painter.fillRoundedRect(line, kUnderlineHeight / 2.0,
                                    enabled ? style.accent : style.accent.mixedWith(style.windowBackground, 0.6));
        }
    }
}

void CTabView::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const bool enabled = isEnabled();
    painter.fillRoundedRect(area, style.cornerRadius, backColorOr(style.panelBackground));
    painter.strokeRoundedRect(area, style.cornerRadius, enabled ? style.border : style.borderDisabled);
    painter.fillRect({1, kStripHeight - 1, area.width - 2, 1}, enabled ? style.gridLine : style.borderDisabled);
}

bool CTabView::onKeyDown(const CKeyEvent& event)
{
    const int count = getPageCount();
    if (count == 0 || (event.modifiers & modifierControl) == 0 || (event.modifiers & modifierAlt) != 0) return false;
    const bool shift = (event.modifiers & modifierShift) != 0;
    int step = 0;
    if (event.key == Key::tab) step = shift ? -1 : 1;
    if (event.key == Key::pageDown && !shift) step = 1;
    if (event.key == Key::pageUp && !shift) step = -1;
    if (step == 0) return false;
    choosePage((m_selected + step + count) % count);
    return true;
}

}  // namespace fenn::gui
