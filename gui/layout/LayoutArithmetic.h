#pragma once

#include <cstdint>
#include <vector>

namespace fenn::gui {

// Integer arithmetic of the layouts: sums of extents that saturate at
// kUnboundedExtent, and sharing a number of pixels among items so that the
// shares add up to it exactly.

// a + b, held at kUnboundedExtent: sums of maximum sizes saturate there.
int addExtents(int a, int b);

// Splits amount (>= 0) in proportion to weights (each >= 0). The shares add
// up to amount exactly when some weight is positive, and are all 0
// otherwise. Each share is the difference of the rounded-down running
// totals, so the pixels that rounding leaves over go to later items and the
// result depends on nothing but the inputs.
std::vector<int> shareProportionally(int amount, const std::vector<std::int64_t>& weights);

// Splits amount (>= 0) by weights as shareProportionally does, but no share
// passes its item's capacity (>= 0): what an item cannot take goes to the
// others by their weights. Returns the shares; leftover receives what no
// item with a positive weight could take.
std::vector<int> shareWithCapacities(int amount, const std::vector<std::int64_t>& weights,
                                     const std::vector<int>& capacities, int& leftover);

}  // namespace fenn::gui
