#include "gui/layout/CGUISizeLimits.h"

#include <algorithm>

namespace fenn::gui {

void CGUISizeLimits::addLimit(LimitKind kind, SizeType which, const P<IGUISize>& size, Directions directions)
{
    if (!size) return;
    m_limits.push_back({kind, which, size, directions});
}

const std::vector<CGUISizeLimits::Limit>& CGUISizeLimits::getLimits() const
{
    return m_limits;
}

bool CGUISizeLimits::isEmpty() const
{
    return m_limits.empty();
}

CSize CGUISizeLimits::apply(SizeType type, CSize size) const
{
    for (const Limit& limit : m_limits) {
        if (limit.which != type) continue;
        const CSize bound = limit.size->getSize();
        const auto limitExtent = [&limit](int extent, int boundExtent) {
            return limit.kind == LimitKind::lower ? std::max(extent, boundExtent) : std::min(extent, boundExtent);
        };
        if (actsOnWidth(limit.directions)) size.width = limitExtent(size.width, bound.width);
        if (actsOnHeight(limit.directions)) size.height = limitExtent(size.height, bound.height);
    }
    return size;
}

CItemSizes CGUISizeLimits::apply(const CItemSizes& sizes) const
{
    return CItemSizes{apply(SizeType::min, sizes.min), apply(SizeType::preferred, sizes.preferred),
                      apply(SizeType::max, sizes.max)}
        .ordered();
}

}  // namespace fenn::gui
