#include "gui/layout/CLayoutItemBase.h"

namespace fenn::gui {

void CLayoutItemBase::setBounds(const CRect& bounds)
{
    m_bounds = bounds;
}

CRect CLayoutItemBase::getBounds() const
{
    return m_bounds;
}

bool CLayoutItemBase::isLayoutVisible() const
{
    return m_visible;
}

void CLayoutItemBase::invalidateLayout()
{
    if (m_holder) m_holder->invalidateLayout();
}

void CLayoutItemBase::setLayoutHolder(ILayoutItem* holder)
{
    m_holder = holder;
}

ILayoutItem* CLayoutItemBase::getLayoutHolder() const
{
    return m_holder;
}

void CLayoutItemBase::setLayoutVisible(bool visible)
{
    if (visible == m_visible) return;
    m_visible = visible;
    invalidateLayout();
}

}  // namespace fenn::gui
