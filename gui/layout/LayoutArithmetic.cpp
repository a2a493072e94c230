#include "gui/layout/LayoutArithmetic.h"

#include <algorithm>
#include <cstddef>

#include "gui/Geometry.h"

namespace fenn::gui {

int addExtents(int a, int b)
{
    const std::int64_t sum = static_cast<std::int64_t>(a) + b;
    return static_cast<int>(std::min<std::int64_t>(sum, kUnboundedExtent));
}

std::vector<int> shareProportionally(int amount, const std::vector<std::int64_t>& weights)
{
    std::vector<int> shares(weights.size(), 0);
    std::int64_t total = 0;
    for (const std::int64_t weight : weights) total += std::max<std::int64_t>(0, weight);
    if (total == 0 || amount <= 0) return shares;

    std::int64_t running = 0;
    std::int64_t handedOut = 0;
    for (std::size_t index = 0; index < weights.size(); ++index) {
        running += std::max<std::int64_t>(0, weights[index]);
        const std::int64_t due = running * amount / total;
        shares[index] = static_cast<int>(due - handedOut);
        handedOut = due;
    }
    return shares;
}

std::vector<int> shareWithCapacities(int amount, const std::vector<std::int64_t>& weights,
                                     const std::vector<int>& capacities, int& leftover)
{
    const std::size_t count = weights.size();
    std::vector<int> shares(count, 0);
    // Items still taking room: a positive weight and room left below the cap.
    std::vector<bool> open(count, false);
    for (std::size_t index = 0; index < count; ++index) open[index] = weights[index] > 0 && capacities[index] > 0;

    int remaining = std::max(0, amount);
    // Each round either hands out all that remains or fills at least one
    // item to its capacity and closes it, so there are at most count rounds.
    while (remaining > 0) {
        std::vector<std::int64_t> openWeights(count, 0);
        for (std::size_t index = 0; index < count; ++index)
            if (open[index]) openWeights[index] = weights[index];
        const std::vector<int> round = shareProportionally(remaining, openWeights);

        bool anyFull = false;
        for (std::size_t index = 0; index < count; ++index) {
            if (!open[index]) continue;
            const int room = capacities[index] - shares[index];
            if (round[index] >= room) {
                shares[index] += room;
                remaining -= room;
                open[index] = false;
                anyFull = true;
            }
        }
        if (anyFull) continue;
        // Nobody reached a cap: this round's shares stand and use up all
        // that remains, unless there was no open item to share it.
        for (std::size_t index = 0; index < count; ++index) {
            if (!open[index]) continue;
            shares[index] += round[index];
            remaining -= round[index];
        }
        break;
    }
    leftover = remaining;
    return shares;
}

}  // namespace fenn::gui
