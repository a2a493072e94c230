#pragma once

#include "foundation/P.h"
#include "gui/layout/CLayoutItemBase.h"
#include "gui/layout/IGUISize.h"

namespace fenn::gui {

// Empty room of one size (a "space" in layout files): min, preferred and
// max are all that size, so the item only grows if a layout stretches it
// across. The size is either fixed or asked at each layout pass from an
// IGUISize (the width of a text in the window's font, say). Owned by the
// layout that holds it. GUI thread.
class CFixedLayoutItem : public CLayoutItemBase
{
public:
    explicit CFixedLayoutItem(CSize size);
    explicit CFixedLayoutItem(const P<IGUISize>& size);

    CSize getSize(SizeType type) override;

    // Sets a fixed size (dropping any IGUISize) and invalidates the layout.
    void setSize(CSize size);

private:
    CSize m_size;
    P<IGUISize> m_source;
};

}  // namespace fenn::gui
