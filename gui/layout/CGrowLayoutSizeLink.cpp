#include "gui/layout/CGrowLayoutSizeLink.h"

#include <algorithm>

namespace fenn::gui {

void CGrowLayoutSizeLink::addMember(ILayoutItem* item, Directions directions)
{
    if (!item) return;
    auto found =
        std::find_if(m_members.begin(), m_members.end(), [item](const Member& member) { return member.item == item; });
    if (found == m_members.end()) found = m_members.insert(m_members.end(), Member{item});
    found->width = found->width || actsOnWidth(directions);
    found->height = found->height || actsOnHeight(directions);
}

void CGrowLayoutSizeLink::removeMember(const ILayoutItem* item)
{
    std::erase_if(m_members, [item](const Member& member) { return member.item == item; });
}

bool CGrowLayoutSizeLink::isMember(const ILayoutItem* item) const
{
    return findMember(item) != nullptr;
}

int CGrowLayoutSizeLink::getMemberCount() const
{
    return static_cast<int>(m_members.size());
}

const CGrowLayoutSizeLink::Member* CGrowLayoutSizeLink::findMember(const ILayoutItem* item) const
{
    for (const Member& member : m_members) {
        if (member.item == item) return &member;
    }
    return nullptr;
}

CSize CGrowLayoutSizeLink::getLinkedSize(const ILayoutItem* item, SizeType type, CSize ownSize)
{
    const Member* self = findMember(item);
    if (!self || m_measuring) return ownSize;
    const bool width = self->width;
    const bool height = self->height;

    // Cleared again on the way out, also when a member throws.
    struct MeasuringGuard
    {
        bool& flag;
        explicit MeasuringGuard(bool& measuring) : flag(measuring) { flag = true; }
        ~MeasuringGuard() { flag = false; }
    } guard(m_measuring);

    CSize linked = ownSize;
    // By index: a member asked for its size must not leave an iterator
    // dangling should it make a layout register or remove items.
    for (std::size_t index = 0; index < m_members.size(); ++index) {
        const Member member = m_members[index];
        if (member.item == item || !member.item->isLayoutVisible()) continue;
        const bool sharesWidth = width && member.width;
        const bool sharesHeight = height && member.height;
        if (!sharesWidth && !sharesHeight) continue;
        const CSize size = member.item->getSize(type);
        if (sharesWidth) linked.width = std::max(linked.width, size.width);
        if (sharesHeight) linked.height = std::max(linked.height, size.height);
    }
    return linked;
}

}  // namespace fenn::gui
