#pragma once

#include <algorithm>

#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

// The three sizes of a layout item together, for code that works them out
// at once: a window applying its size limits, a layout measuring an item.
struct CItemSizes
{
    CSize min;
    CSize preferred;
    CSize max;

    CSize get(SizeType type) const
    {
        switch (type) {
        case SizeType::min:
            return min;
        case SizeType::preferred:
            return preferred;
        case SizeType::max:
            return max;
        }
        return preferred;
    }

    // Orders the sizes min <= preferred <= max in each direction. Sizes only
    // move up: the min wins over the others and the preferred size over the
    // max, so an item never gets less room than it says it needs.
    CItemSizes ordered() const
    {
        const CSize orderedPreferred{std::max(preferred.width, min.width), std::max(preferred.height, min.height)};
        const CSize orderedMax{std::max(max.width, orderedPreferred.width),
                               std::max(max.height, orderedPreferred.height)};
        return {min, orderedPreferred, orderedMax};
    }

    friend bool operator==(const CItemSizes&, const CItemSizes&) = default;
};

}  // namespace fenn::gui
