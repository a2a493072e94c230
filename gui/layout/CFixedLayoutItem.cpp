#include "gui/layout/CFixedLayoutItem.h"

#include <algorithm>

namespace fenn::gui {

CFixedLayoutItem::CFixedLayoutItem(CSize size) : m_size(size) {}

CFixedLayoutItem::CFixedLayoutItem(const P<IGUISize>& size) : m_source(size) {}

CSize CFixedLayoutItem::getSize(SizeType)
{
    const CSize size = m_source ? m_source->getSize() : m_size;
    return {std::max(0, size.width), std::max(0, size.height)};
}

void CFixedLayoutItem::setSize(CSize size)
{
    if (!m_source && size == m_size) return;
    m_source = nullptr;
    m_size = size;
    invalidateLayout();
}

}  // namespace fenn::gui
