#pragma once

#include <list>
#include <vector>

#include "gui/layout/CGrowLayoutSizeLink.h"  // complete type for the links in CLayoutParams
#include "gui/layout/CLayoutEntry.h"
#include "gui/layout/CLayoutItemBase.h"

namespace fenn::gui {

// What the grow and layer layouts share: the items with their parameters
// (held strongly, each told that this layout is its holder), the margins
// kept free inside the bounds, and laying out again whenever the bounds are
// set, so that a layout group placed by its parent places its own items.
// Removing an item, or destroying the layout, takes the item out of its
// size links and clears its holder. Owned by the window whose client area
// it fills or by the layout it is a group of. GUI thread.
class CLayoutBase : public CLayoutItemBase, public virtual ILayout
{
public:
    struct Margins
    {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;

        friend bool operator==(const Margins&, const Margins&) = default;
    };

    ~CLayoutBase() override;

    // Adds item at the end; an item this layout already holds moves to the
    // end with the new parameters. A null item is ignored.
    void addItem(const P<ILayoutItem>& item, const CLayoutParams& params) override;
    // Does nothing when item is not held here.
    void removeItem(ILayoutItem* item) override;
    std::vector<P<ILayoutItem>> getItems() const override;
    // Sets the bounds and places the items in them at once.
    void setBounds(const CRect& bounds) override;

    // The room kept free inside the bounds, on each side; negative values count as 0.
    void setMargins(int left, int top, int right, int bottom);
    Margins getMargins() const;
    // The parameters item was added with; null when it is not held here.
    const CLayoutParams* getParams(const ILayoutItem* item) const;

protected:
    const std::list<CLayoutEntry>& getEntries() const { return m_entries; }
    // The bounds less the margins.
    CRect getContentBounds() const;
    // size with the margins added; an extent that reaches kUnboundedExtent stays there.
    CSize addMargins(CSize size) const;

private:
    std::list<CLayoutEntry> m_entries;
    Margins m_margins;
};

}  // namespace fenn::gui
