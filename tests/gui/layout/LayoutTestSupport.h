#pragma once

#include <algorithm>
#include <string_view>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/ITextMetrics.h"
#include "gui/layout/CItemSizes.h"
#include "gui/layout/ILayoutItem.h"

namespace layouttest {

using fenn::gui::CItemSizes;
using fenn::gui::CRect;
using fenn::gui::CSize;
using fenn::gui::ILayoutItem;
using fenn::gui::SizeType;

// A layout item with sizes set by the test, which records what the layout
// does to it. Without a holder it stands for a window at the top: it
// counts the invalidations that reach it.
class CFakeItem : public fenn::CObject, public virtual ILayoutItem
{
public:
    explicit CFakeItem(const CItemSizes& sizes) : sizes(sizes) {}

    CSize getSize(SizeType type) override { return sizes.get(type); }
    void setBounds(const CRect& newBounds) override
    {
        bounds = newBounds;
        ++boundsSet;
    }
    CRect getBounds() const override { return bounds; }
    bool isLayoutVisible() const override { return visible; }
    void invalidateLayout() override
    {
        ++invalidations;
        if (holder) holder->invalidateLayout();
    }
    void setLayoutHolder(ILayoutItem* newHolder) override { holder = newHolder; }

    CItemSizes sizes;
    CRect bounds;
    bool visible = true;
    ILayoutItem* holder = nullptr;
    int boundsSet = 0;
    int invalidations = 0;
};

inline fenn::P<CFakeItem> fakeItem(CSize min, CSize preferred, CSize max)
{
    return fenn::make<CFakeItem>(CItemSizes{min, preferred, max});
}

// An item of one size that can grow to max.
inline fenn::P<CFakeItem> fakeItem(CSize preferred,
                                   CSize max = {fenn::gui::kUnboundedExtent, fenn::gui::kUnboundedExtent})
{
    return fakeItem(preferred, preferred, max);
}

// Text metrics of a monospaced font: 7 pixels a character of the longest
// line, 12 pixels a line; the text is taken as UTF-8 of ASCII characters.
class CFakeTextMetrics : public fenn::CObject, public virtual fenn::gui::ITextMetrics
{
public:
    static constexpr int kCharWidth = 7;
    static constexpr int kLineHeight = 12;

    CSize measureText(const fenn::String& text) const override
    {
        const std::string_view bytes(text.getData(), static_cast<std::size_t>(text.getByteSize()));
        int lines = 1;
        int longest = 0;
        int current = 0;
        for (const char c : bytes) {
            if (c == '\n') {
                ++lines;
                current = 0;
            } else {
                longest = std::max(longest, ++current);
            }
        }
        return {longest * kCharWidth, lines * kLineHeight};
    }
    int getLineHeight() const override { return kLineHeight; }
};

}  // namespace layouttest
