#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "gui/layout/CItemSizes.h"
#include "gui/layout/Directions.h"
#include "gui/layout/IGUISize.h"

namespace fenn::gui {

// Whether a size limit raises sizes to its value or lowers them to it.
enum class LimitKind { lower, upper };

// The size limits a layout file gives a window ("at least as wide as this
// text", "at most 200 pixels high"): each one raises (lower) or lowers
// (upper) one size type of the window, in both directions or one, to a
// size asked afresh each time from its IGUISize. Limits act in the order
// they were added, so of two conflicting limits the later one wins. A
// window applies its limits to the sizes it works out itself; layouts never
// see them. Owned by the window. GUI thread.
class CGUISizeLimits : public CObject
{
public:
    struct Limit
    {
        LimitKind kind = LimitKind::lower;
        SizeType which = SizeType::preferred;
        P<IGUISize> size;
        Directions directions = Directions::both;
    };

    // A null size is ignored.
    void addLimit(LimitKind kind, SizeType which, const P<IGUISize>& size, Directions directions = Directions::both);
    const std::vector<Limit>& getLimits() const;
    bool isEmpty() const;

    // size, limited by the limits on type.
    CSize apply(SizeType type, CSize size) const;
    // Each of the sizes limited by the limits on its type, then ordered as
    // CItemSizes::ordered does: a lower limit on the min also raises the
    // preferred size and max, while an upper limit on the max does not push
    // the max below the preferred size (limit the preferred size as well
    // for that).
    CItemSizes apply(const CItemSizes& sizes) const;

private:
    std::vector<Limit> m_limits;
};

}  // namespace fenn::gui
