#pragma once

#include "gui/layout/CLayoutBase.h"
#include "gui/layout/Orientation.h"

namespace fenn::gui {

// Lines up its visible items in one direction, in the order they were
// added, with a spacing between neighbours and margins inside the bounds.
// Hidden items take neither room nor spacing and keep their old bounds.
//
// Along the lining-up (main) axis each item starts from its preferred size:
// - Room beyond the preferred sizes is shared by the grow weights along the
//   axis (horzGrow in a horizontal layout, vertGrow in a vertical one),
//   never past an item's max; what an item cannot take goes to the other
//   growing items by their weights. Room that no item can take stays free
//   and is placed by the main axis alignment (0, the default, leaves it
//   after the last item; 50 centres the items; 100 puts it first).
// - Less room than the preferred sizes shrinks the items toward their mins,
//   each in proportion to how far its preferred size lies above its min.
// - Less room than the mins gives every item its min; the items then run
//   past the end and the holder clips them.
// Pixels left over by rounding go to the later items, so the items fill the
// room they share exactly.
//
// Across the axis an item with a positive grow weight across fills the
// cell up to its max; any other item takes its preferred size, cut down to
// the cell but never below its min, and sits in the cell by its alignment
// across (percent of the free room before it: 0 left or top, 100 right or
// bottom). An item whose min does not fit across starts at the cell's edge.
//
// The layout's own sizes, margins and spacing included: along the axis the
// sums of the items' sizes, where an item that does not grow along the axis
// counts its preferred size toward the max (the layout grows only if an
// item can) and the max saturates at kUnboundedExtent; across the axis the
// largest of the items' sizes. The items' sizes are taken with their size
// links applied and are trusted to be ordered min <= preferred <= max.
// Owned like any layout (see CLayoutBase). GUI thread.
class CGrowLayout : public CLayoutBase
{
public:
    explicit CGrowLayout(Orientation orientation);

    Orientation getOrientation() const;
    // Pixels between neighbouring visible items; negative values count as 0.
    void setSpacing(int spacing);
    int getSpacing() const;
    // Where room that no item can take goes, in percent (clamped to 0..100).
    void setMainAxisAlign(int percent);
    int getMainAxisAlign() const;

    CSize getSize(SizeType type) override;
    void doLayout() override;

private:
    Orientation m_orientation;
    int m_spacing = 0;
    int m_mainAxisAlign = 0;
};

}  // namespace fenn::gui
