#pragma once

#include "gui/layout/CLayoutBase.h"

namespace fenn::gui {

// Lays its visible items on top of each other, each over the whole room
// inside the margins: a background image under a group of controls, or
// pages of which one is shown at a time. An item whose max is smaller than
// the room (in a direction) takes its max and sits by its alignment in that
// direction; an item whose min is larger takes its min from the room's
// start and is clipped by the holder. Grow weights play no part.
//
// The layout's own sizes, margins included: min and preferred are the
// largest of the items'; max is the smallest of the items' maxima, but
// never below the layout's preferred size, so that the largest item always
// fits. Without visible items all three are the margins. Owned like any
// layout (see CLayoutBase). GUI thread.
class CLayerLayout : public CLayoutBase
{
public:
    CSize getSize(SizeType type) override;
    void doLayout() override;
};

}  // namespace fenn::gui
