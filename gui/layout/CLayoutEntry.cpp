#include "gui/layout/CLayoutEntry.h"

#include <algorithm>

#include "gui/layout/CGrowLayoutSizeLink.h"

namespace fenn::gui {

CLayoutEntry::CLayoutEntry(const P<ILayoutItem>& item, const CLayoutParams& params) : m_item(item), m_params(params)
{
    if (m_params.sizeLink) m_params.sizeLink->addMember(m_item.get(), Directions::both);
    if (m_params.widthLink) m_params.widthLink->addMember(m_item.get(), Directions::width);
    if (m_params.heightLink) m_params.heightLink->addMember(m_item.get(), Directions::height);
}

CLayoutEntry::~CLayoutEntry()
{
    for (const auto* link : {&m_params.sizeLink, &m_params.widthLink, &m_params.heightLink}) {
        if (*link) (*link)->removeMember(m_item.get());
    }
}

CSize CLayoutEntry::getSize(SizeType type) const
{
    CSize size = m_item->getSize(type);
    for (const auto* link : {&m_params.sizeLink, &m_params.widthLink, &m_params.heightLink}) {
        if (*link) size = (*link)->getLinkedSize(m_item.get(), type, size);
    }
    return {std::max(0, size.width), std::max(0, size.height)};
}

}  // namespace fenn::gui
