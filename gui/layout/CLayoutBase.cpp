#include "gui/layout/CLayoutBase.h"

#include <algorithm>

#include "gui/layout/LayoutArithmetic.h"

namespace fenn::gui {

CLayoutBase::~CLayoutBase()
{
    for (const CLayoutEntry& entry : m_entries) entry.getItem()->setLayoutHolder(nullptr);
    // The entries leave their size links as the list is destroyed.
}

void CLayoutBase::addItem(const P<ILayoutItem>& item, const CLayoutParams& params)
{
    if (!item) return;
    std::erase_if(m_entries, [&item](const CLayoutEntry& entry) { return entry.getItem() == item; });
    m_entries.emplace_back(item, params);
    item->setLayoutHolder(this);
    invalidateLayout();
}

void CLayoutBase::removeItem(ILayoutItem* item)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [item](const CLayoutEntry& entry) { return entry.getItem().get() == item; });
    if (found == m_entries.end()) return;
    const P<ILayoutItem> keep = found->getItem();
    m_entries.erase(found);
    keep->setLayoutHolder(nullptr);
    invalidateLayout();
}

std::vector<P<ILayoutItem>> CLayoutBase::getItems() const
{
    std::vector<P<ILayoutItem>> items;
    items.reserve(m_entries.size());
    for (const CLayoutEntry& entry : m_entries) items.push_back(entry.getItem());
    return items;
}

void CLayoutBase::setBounds(const CRect& bounds)
{
    CLayoutItemBase::setBounds(bounds);
    doLayout();
}

void CLayoutBase::setMargins(int left, int top, int right, int bottom)
{
    const Margins margins{std::max(0, left), std::max(0, top), std::max(0, right), std::max(0, bottom)};
    if (margins == m_margins) return;
    m_margins = margins;
    invalidateLayout();
}

CLayoutBase::Margins CLayoutBase::getMargins() const
{
    return m_margins;
}

const CLayoutParams* CLayoutBase::getParams(const ILayoutItem* item) const
{
    for (const CLayoutEntry& entry : m_entries) {
        if (entry.getItem().get() == item) return &entry.getParams();
    }
    return nullptr;
}

CRect CLayoutBase::getContentBounds() const
{
    return getBounds().inset(m_margins.left, m_margins.top, m_margins.right, m_margins.bottom);
}

CSize CLayoutBase::addMargins(CSize size) const
{
    return {addExtents(size.width, m_margins.left + m_margins.right),
            addExtents(size.height, m_margins.top + m_margins.bottom)};
}

}  // namespace fenn::gui
