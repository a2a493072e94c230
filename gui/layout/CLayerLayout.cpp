#include "gui/layout/CLayerLayout.h"

#include <algorithm>
#include <cstdint>

namespace fenn::gui {

namespace {

// The largest of the sizes of type of the visible entries, per direction.
CSize largest(const std::list<CLayoutEntry>& entries, SizeType type)
{
    CSize result;
    for (const CLayoutEntry& entry : entries) {
        if (!entry.isVisible()) continue;
        const CSize size = entry.getSize(type);
        result = {std::max(result.width, size.width), std::max(result.height, size.height)};
    }
    return result;
}

// Length and offset of an item in one direction of a room of roomLength.
struct Placement
{
    int offset = 0;
    int length = 0;
};

Placement place(int roomLength, int min, int max, int alignPercent)
{
    const int length = std::max(min, std::min(roomLength, max));
    const int freeRoom = roomLength - length;
    if (freeRoom <= 0) return {0, length};
    return {static_cast<int>(static_cast<std::int64_t>(freeRoom) * std::clamp(alignPercent, 0, 100) / 100), length};
}

}  // namespace

CSize CLayerLayout::getSize(SizeType type)
{
    if (type != SizeType::max) return addMargins(largest(getEntries(), type));

    const CSize preferred = largest(getEntries(), SizeType::preferred);
    CSize smallestMax{kUnboundedExtent, kUnboundedExtent};
    bool anyVisible = false;
    for (const CLayoutEntry& entry : getEntries()) {
        if (!entry.isVisible()) continue;
        anyVisible = true;
        const CSize max = entry.getSize(SizeType::max);
        smallestMax = {std::min(smallestMax.width, max.width), std::min(smallestMax.height, max.height)};
    }
    if (!anyVisible) return addMargins({});
    return addMargins({std::max(smallestMax.width, preferred.width), std::max(smallestMax.height, preferred.height)});
}

void CLayerLayout::doLayout()
{
    const CRect room = getContentBounds();
    for (const CLayoutEntry& entry : getEntries()) {
        if (!entry.isVisible()) continue;
        const CSize min = entry.getSize(SizeType::min);
        const CSize max = entry.getSize(SizeType::max);
        const CLayoutParams& params = entry.getParams();
        const Placement across = place(room.width, min.width, max.width, params.horzAlign);
        const Placement down = place(room.height, min.height, max.height, params.vertAlign);
        entry.getItem()->setBounds({room.x + across.offset, room.y + down.offset, across.length, down.length});
    }
}

}  // namespace fenn::gui
