#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "gui/layout/Directions.h"
#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

// Makes items of different places in a window the same size: each member
// reports, for each size type, the largest size of that type among the
// visible members, in the directions it is linked in (both for a size
// link, one for a width or height link). Hidden members take no room and do
// not widen the others.
//
// The layout that receives an item with link parameters registers it and
// removes it again in removeItem and in its own destructor; the link keeps
// raw pointers and never keeps an item alive. Members are asked for their
// own size through ILayoutItem::getSize, which by contract does not include
// links (the holding layout applies them on top, through getLinkedSize), so
// asking never comes back to the link. Only a link shared by a layout group
// and an item inside that group could; while the link is measuring, a
// nested request gets the member's own size. Held by the layout parameters
// that name it. GUI thread.
class CGrowLayoutSizeLink : public CObject
{
public:
    // Registers item; registering it again adds the new directions.
    void addMember(ILayoutItem* item, Directions directions);
    // Forgets every registration of item.
    void removeMember(const ILayoutItem* item);
    bool isMember(const ILayoutItem* item) const;
    int getMemberCount() const;

    // ownSize, which is what item reports itself for type, with the linked
    // directions raised to the largest size of that type among the members.
    // Items that are not members get ownSize back.
    CSize getLinkedSize(const ILayoutItem* item, SizeType type, CSize ownSize);

private:
    struct Member
    {
        ILayoutItem* item = nullptr;
        bool width = false;
        bool height = false;
    };

    const Member* findMember(const ILayoutItem* item) const;

    std::vector<Member> m_members;
    bool m_measuring = false;
};

}  // namespace fenn::gui
