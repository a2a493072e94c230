#include "gui/layout/CGrowLayout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "gui/layout/CItemSizes.h"
#include "gui/layout/LayoutArithmetic.h"

namespace fenn::gui {

namespace {

// The two axes of a grow layout: "main" along which the items line up,
// "cross" across it.
struct Axes
{
    Orientation orientation;

    bool horizontal() const { return orientation == Orientation::horizontal; }
    int main(CSize size) const { return horizontal() ? size.width : size.height; }
    int cross(CSize size) const { return horizontal() ? size.height : size.width; }
    int mainOrigin(const CRect& rect) const { return horizontal() ? rect.x : rect.y; }
    int crossOrigin(const CRect& rect) const { return horizontal() ? rect.y : rect.x; }
    int mainGrow(const CLayoutParams& params) const { return horizontal() ? params.horzGrow : params.vertGrow; }
    int crossGrow(const CLayoutParams& params) const { return horizontal() ? params.vertGrow : params.horzGrow; }
    int crossAlign(const CLayoutParams& params) const { return horizontal() ? params.vertAlign : params.horzAlign; }
    CSize size(int main, int cross) const { return horizontal() ? CSize{main, cross} : CSize{cross, main}; }
    CRect rect(int mainPosition, int mainLength, int crossPosition, int crossLength) const
    {
        return horizontal() ? CRect{mainPosition, crossPosition, mainLength, crossLength}
                            : CRect{crossPosition, mainPosition, crossLength, mainLength};
    }
};

// An item's three sizes, ordered even if the item reports them otherwise.
CItemSizes measure(const CLayoutEntry& entry)
{
    return CItemSizes{entry.getSize(SizeType::min), entry.getSize(SizeType::preferred), entry.getSize(SizeType::max)}
        .ordered();
}

int clampPercent(int percent)
{
    return std::clamp(percent, 0, 100);
}

// The part of free room that goes before an item aligned at percent.
int alignedOffset(int freeRoom, int percent)
{
    if (freeRoom <= 0) return 0;
    return static_cast<int>(static_cast<std::int64_t>(freeRoom) * clampPercent(percent) / 100);
}

}  // namespace

CGrowLayout::CGrowLayout(Orientation orientation) : m_orientation(orientation) {}

Orientation CGrowLayout::getOrientation() const
{
    return m_orientation;
}

void CGrowLayout::setSpacing(int spacing)
{
    spacing = std::max(0, spacing);
    if (spacing == m_spacing) return;
    m_spacing = spacing;
    invalidateLayout();
}

int CGrowLayout::getSpacing() const
{
    return m_spacing;
}

void CGrowLayout::setMainAxisAlign(int percent)
{
    percent = clampPercent(percent);
    if (percent == m_mainAxisAlign) return;
    m_mainAxisAlign = percent;
    invalidateLayout();
}

int CGrowLayout::getMainAxisAlign() const
{
    return m_mainAxisAlign;
}

CSize CGrowLayout::getSize(SizeType type)
{
    const Axes axes{m_orientation};
    int mainSum = 0;
    int crossLargest = 0;
    int visibleCount = 0;
    for (const CLayoutEntry& entry : getEntries()) {
        if (!entry.isVisible()) continue;
        ++visibleCount;
        const CSize size = entry.getSize(type);
        int mainPart = axes.main(size);
        if (type == SizeType::max) {
            const int preferred = axes.main(entry.getSize(SizeType::preferred));
            mainPart = axes.mainGrow(entry.getParams()) > 0 ? std::max(mainPart, preferred) : preferred;
        }
        mainSum = addExtents(mainSum, mainPart);
        crossLargest = std::max(crossLargest, axes.cross(size));
    }
    if (visibleCount > 1) mainSum = addExtents(mainSum, m_spacing * (visibleCount - 1));
    return addMargins(axes.size(mainSum, crossLargest));
}

void CGrowLayout::doLayout()
{
    const Axes axes{m_orientation};
    std::vector<const CLayoutEntry*> entries;
    std::vector<CItemSizes> sizes;
    for (const CLayoutEntry& entry : getEntries()) {
        if (!entry.isVisible()) continue;
        entries.push_back(&entry);
        sizes.push_back(measure(entry));
    }
    if (entries.empty()) return;
    const std::size_t count = entries.size();

    const CRect content = getContentBounds();
    const std::int64_t available =
        axes.main(content.size()) - static_cast<std::int64_t>(m_spacing) * static_cast<std::int64_t>(count - 1);
    std::int64_t preferredSum = 0;
    std::int64_t minSum = 0;
    for (const CItemSizes& item : sizes) {
        preferredSum += axes.main(item.preferred);
        minSum += axes.main(item.min);
    }

    std::vector<int> lengths(count);
    int leftover = 0;
    if (available >= preferredSum) {
        std::vector<std::int64_t> weights(count);
        std::vector<int> capacities(count);
        for (std::size_t index = 0; index < count; ++index) {
            weights[index] = std::max(0, axes.mainGrow(entries[index]->getParams()));
            capacities[index] = axes.main(sizes[index].max) - axes.main(sizes[index].preferred);
        }
        const std::vector<int> extra =
            shareWithCapacities(static_cast<int>(available - preferredSum), weights, capacities, leftover);
        for (std::size_t index = 0; index < count; ++index)
            lengths[index] = axes.main(sizes[index].preferred) + extra[index];
    } else if (available >= minSum) {
        std::vector<std::int64_t> slack(count);
        for (std::size_t index = 0; index < count; ++index)
            slack[index] = axes.main(sizes[index].preferred) - axes.main(sizes[index].min);
        const std::vector<int> cut = shareProportionally(static_cast<int>(preferredSum - available), slack);
        for (std::size_t index = 0; index < count; ++index)
            lengths[index] = axes.main(sizes[index].preferred) - cut[index];
    } else {
        for (std::size_t index = 0; index < count; ++index) lengths[index] = axes.main(sizes[index].min);
    }

    const int crossLength = axes.cross(content.size());
    int position = axes.mainOrigin(content) + alignedOffset(leftover, m_mainAxisAlign);
    for (std::size_t index = 0; index < count; ++index) {
        const CLayoutParams& params = entries[index]->getParams();
        const CItemSizes& item = sizes[index];
        const int crossMin = axes.cross(item.min);
        const int crossWanted = axes.crossGrow(params) > 0 ? axes.cross(item.max) : axes.cross(item.preferred);
        const int crossSize = std::max(crossMin, std::min(crossWanted, crossLength));
        const int crossPosition =
            axes.crossOrigin(content) + alignedOffset(crossLength - crossSize, axes.crossAlign(params));
        entries[index]->getItem()->setBounds(axes.rect(position, lengths[index], crossPosition, crossSize));
        position += lengths[index] + m_spacing;
    }
}

}  // namespace fenn::gui
