#include "gui/skin/CCoreTabView.h"

#include <algorithm>

#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/skin/CTextSource.h"

namespace fenn::gui::skin {

CCoreTabView::CCoreTabView(CWindow* parent, P<ITabViewSkin> skin) : m_skin(std::move(skin))
{
    CCoreWindow::checkParent(parent);
    m_core = make<CCoreWindow>(*this, m_skin, tabViewNormal);
}

CCoreWindow* CCoreTabView::getTabCore(int index) const
{
    if (index < 0 || index >= static_cast<int>(m_tabs.size())) return nullptr;
    return m_tabs[static_cast<std::size_t>(index)].get();
}

TabViewState CCoreTabView::computeState() const
{
    if (!isEnabled()) return tabViewDisabled;
    return isHovered() ? tabViewHover : tabViewNormal;
}

TabState CCoreTabView::computeTabState(int index, int hoveredTab) const
{
    if (!isEnabled()) return tabDisabled;
    const bool hovered = index == hoveredTab;
    if (index == getSelectedIndex()) return hovered ? tabActiveHover : tabActiveNormal;
    return hovered ? tabInactiveHover : tabInactiveNormal;
}

CSize CCoreTabView::getTabSize(int index) const
{
    const P<ITabSkin> skin = m_skin->getTabSkin(index);
    const SkinMargins core = skin->getCoreMargins();
    const SkinMargins objectPos = skin->getObjectPos();
    const CSize text = getFont()->measureText(getPageText(index));
    CSize size{text.width + core.horizontal() + objectPos.horizontal(),
               text.height + core.vertical() + objectPos.vertical()};
    const CFrameWindow* frame = getFrame();
    const double scale = frame ? frame->getScaleFactor() : 1.0;
    const P<CTabTextSource> source = make<CTabTextSource>(const_cast<CCoreTabView&>(*this), index);
    for (const P<ILayer>& layer : skin->getAllLayers()) {
        const CSize layerSize = layer->getPreferredSize(*source, scale);
        size.width = std::max(size.width, layerSize.width);
        size.height = std::max(size.height, layerSize.height);
    }
    return size;
}

int CCoreTabView::getRowHeight() const
{
    int height = 0;
    for (int index = 0; index < getPageCount(); ++index) height = std::max(height, getTabSize(index).height);
    return height;
}

int CCoreTabView::getRowWidth() const
{
    int width = 0;
    for (int index = 0; index < getPageCount(); ++index) width += getTabSize(index).width;
    return width;
}

CRect CCoreTabView::getTabArea() const
{
    const SkinMargins margins = m_skin->getTabAreaMargins();
    return getClientRect().inset(margins.left, margins.top, margins.right, margins.bottom);
}

CRect CCoreTabView::getTabRect(int index) const
{
    if (index < 0 || index >= getPageCount()) return {};
    const CRect area = getTabArea();
    const int height = getRowHeight();
    int x = area.x;
    if (m_skin->getTabAlign() == TabAlign::center)
        x += (area.width - getRowWidth()) / 2;
    else if (m_skin->getTabAlign() == TabAlign::right)
        x += area.width - getRowWidth();
    for (int before = 0; before < index; ++before) x += getTabSize(before).width;
    const int y = m_skin->getTabPlacement() == TabPlacement::top ? area.y : area.bottom() - height;
    return {x, y, getTabSize(index).width, height};
}

CRect CCoreTabView::getTabPaintRect(int index) const
{
    const CRect slot = getTabRect(index);
    if (slot.isEmpty()) return slot;
    const SkinMargins overlap = m_skin->getTabSkin(index)->getOverlapMargins();
    return slot.inset(-overlap.left, -overlap.top, -overlap.right, -overlap.bottom);
}

CRect CCoreTabView::getTabRowRect() const
{
    CRect row;
    for (int index = 0; index < getPageCount(); ++index) {
        const CRect tab = getTabPaintRect(index);
        row = row.isEmpty() ? tab : row.united(tab);
    }
    return row.intersected(getClientRect());
}

CRect CCoreTabView::getPageBackgroundRect() const
{
    const CRect client = getClientRect();
    const SkinMargins margins = m_skin->getTabAreaMargins();
    const int row = getRowHeight();
    // The margin on the page's side of the row keeps the row off the page.
    if (m_skin->getTabPlacement() == TabPlacement::top) {
        const int top = margins.top + row + margins.bottom;
        return {0, top, client.width, std::max(0, client.height - top)};
    }
    return {0, 0, client.width, std::max(0, client.height - (margins.bottom + row + margins.top))};
}

CRect CCoreTabView::getPageArea() const
{
    const SkinMargins content = m_skin->getContentAreaMargins();
    return getPageBackgroundRect().inset(content.left, content.top, content.right, content.bottom);
}

CSize CCoreTabView::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    CSize page;
    for (int index = 0; index < getPageCount(); ++index) {
        const CSize size = getPage(index)->getSize(type);
        page.width = std::max(page.width, size.width);
        page.height = std::max(page.height, size.height);
    }
    const SkinMargins content = m_skin->getContentAreaMargins();
    const SkinMargins tabArea = m_skin->getTabAreaMargins();
    const CSize background =
        m_core->getPreferredSize({page.width + content.horizontal(), page.height + content.vertical()});
    CSize size{background.width, background.height + getRowHeight() + tabArea.vertical()};
    // The tabs may be cut off where room is short, but not by choice.
    if (type == SizeType::preferred) size.width = std::max(size.width, getRowWidth() + tabArea.horizontal());
    return size;
}

void CCoreTabView::syncTabCores()
{
    const auto count = static_cast<std::size_t>(getPageCount());
    while (m_tabs.size() > count) m_tabs.pop_back();
    while (m_tabs.size() < count) {
        const int index = static_cast<int>(m_tabs.size());
        m_tabs.push_back(make<CCoreWindow>(*this, m_skin->getTabSkin(index), computeTabState(index, -1),
                                           make<CTabTextSource>(*this, index)));
    }
}

void CCoreTabView::paint(CPainter& painter)
{
    m_core->syncState(computeState());
    const CRect background = getPageBackgroundRect();
    if (background.isEmpty()) return;
    const CPainter::CSaved saved = painter.save();
    painter.translate(background.x, background.y);
    m_core->resize(background.size());
    m_core->paint(painter);
}

void CCoreTabView::paintTabs(CPainter& painter, CPoint rowOrigin, int hoveredTab)
{
    syncTabCores();
    const auto paintTab = [&](int index) {
        CCoreWindow& tab = *m_tabs[static_cast<std::size_t>(index)];
        tab.syncState(computeTabState(index, hoveredTab));
        const CRect rect = getTabPaintRect(index);
        const CPainter::CSaved saved = painter.save();
        painter.translate(rect.x - rowOrigin.x, rect.y - rowOrigin.y);
        painter.clip({0, 0, rect.width, rect.height});
        tab.resize(rect.size());
        tab.paint(painter);
    };
    // The active tab reaches over its neighbours: it comes last.
    for (int index = 0; index < getPageCount(); ++index) {
        if (index != getSelectedIndex()) paintTab(index);
    }
    if (getSelectedIndex() >= 0) paintTab(getSelectedIndex());
}

void CCoreTabView::onMouseEnter()
{
    m_core->setState(computeState());
}

void CCoreTabView::onMouseLeave()
{
    m_core->setState(computeState());
}

void CCoreTabView::onResized()
{
    m_core->resize(getPageBackgroundRect().size());
    CTabView::onResized();
}

void CCoreTabView::onFrameChanged()
{
    m_core->reset();
    for (const P<CCoreWindow>& tab : m_tabs) tab->reset();
    CTabView::onFrameChanged();
}

void CCoreTabView::onPropertyChanged(const String& name)
{
    m_core->propertyChanged(name);
    for (const P<CCoreWindow>& tab : m_tabs) tab->propertyChanged(name);
}

}  // namespace fenn::gui::skin
