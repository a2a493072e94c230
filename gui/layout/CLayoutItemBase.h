#pragma once

#include "foundation/CObject.h"
#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

// What layouts, layout groups and fixed items have in common as layout
// items: their bounds, their visibility and the raw pointer to the layout
// that holds them, to which invalidateLayout passes on until it reaches the
// outermost holder (the window, which asks its frame for a new layout
// pass). Windows implement ILayoutItem on their own; nothing of the layouts
// relies on this class beyond ILayoutItem. Owned by the layout that holds
// it (or by the window whose client area it fills). GUI thread.
class CLayoutItemBase : public CObject, public virtual ILayoutItem
{
public:
    void setBounds(const CRect& bounds) override;
    CRect getBounds() const override;
    bool isLayoutVisible() const override;
    void invalidateLayout() override;
    void setLayoutHolder(ILayoutItem* holder) override;

    ILayoutItem* getLayoutHolder() const;
    // Shows or hides the item in its layout; a change invalidates the layout.
    void setLayoutVisible(bool visible);

private:
    CRect m_bounds;
    ILayoutItem* m_holder = nullptr;
    bool m_visible = true;
};

}  // namespace fenn::gui
