#pragma once

#include <vector>

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "gui/Geometry.h"

namespace fenn::gui {

class CGrowLayoutSizeLink;

// The three sizes of a layout item.
enum class SizeType
{
    min,
    preferred,
    max,
};

// Something a layout places: a window, a group of items with a layout of
// its own, or fixed empty room. Bounds are in the client coordinates of the
// window whose layout holds the item (groups do not add an origin). Sizes
// are asked afresh at every layout pass, so an item whose content changed
// only calls invalidateLayout. GUI thread.
class ILayoutItem : public virtual IBase
{
public:
    // The size of this type, with the item's size limits and size links
    // applied; min <= preferred <= max in each direction. The item applies
    // its own limits; the layout that holds it applies the size links of its
    // CLayoutParams on top (CLayoutEntry), so an item reports its own size
    // here, which is also what a link asks its members for.
    virtual CSize getSize(SizeType type) = 0;
    virtual void setBounds(const CRect& bounds) = 0;
    virtual CRect getBounds() const = 0;
    // An item that is not visible takes no room and gets no bounds.
    virtual bool isLayoutVisible() const = 0;
    // Tells the holder of this item that its sizes changed; the frame lays
    // out again before it next paints.
    virtual void invalidateLayout() = 0;
    // The layout that holds this item, set by that layout (raw: the holder
    // outlives what it holds).
    virtual void setLayoutHolder(ILayoutItem* holder) = 0;
};

// How an item sits in its layout: grow weights share out room beyond the
// preferred sizes; alignments (percent of the free room, 0 left or top, 100
// right or bottom) place an item that did not fill its cell; size links make
// items of the same link report the largest size among them, in both
// directions or one.
struct CLayoutParams
{
    int horzGrow = 0;
    int vertGrow = 0;
    int horzAlign = 0;
    int vertAlign = 0;
    P<CGrowLayoutSizeLink> sizeLink;
    P<CGrowLayoutSizeLink> widthLink;
    P<CGrowLayoutSizeLink> heightLink;
};

// A layout is an item that places other items inside its own bounds. A
// window with a layout lays it out in its client area; a "layoutgroup" is a
// layout that is itself an item of its parent's layout.
class ILayout : public virtual ILayoutItem
{
public:
    virtual void addItem(const P<ILayoutItem>& item, const CLayoutParams& params) = 0;
    virtual void removeItem(ILayoutItem* item) = 0;
    virtual std::vector<P<ILayoutItem>> getItems() const = 0;
    // Places the items inside the current bounds.
    virtual void doLayout() = 0;
};

}  // namespace fenn::gui
