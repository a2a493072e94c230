#pragma once

#include "foundation/P.h"
#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

// One item in a layout with its parameters. The entry registers the item
// with the size links its parameters name for as long as it exists, and
// gives the layout the item's size with those links applied: the item's
// own getSize, raised in the linked directions to the largest size among
// the link's members. Created and destroyed by the layout that holds the
// item (kept in a node container, never copied or moved). GUI thread.
class CLayoutEntry
{
public:
    CLayoutEntry(const P<ILayoutItem>& item, const CLayoutParams& params);
    ~CLayoutEntry();
    CLayoutEntry(const CLayoutEntry&) = delete;
    CLayoutEntry& operator=(const CLayoutEntry&) = delete;

    const P<ILayoutItem>& getItem() const { return m_item; }
    const CLayoutParams& getParams() const { return m_params; }
    bool isVisible() const { return m_item->isLayoutVisible(); }

    // The item's size with its size links applied, never negative.
    CSize getSize(SizeType type) const;

private:
    P<ILayoutItem> m_item;
    CLayoutParams m_params;
};

}  // namespace fenn::gui
