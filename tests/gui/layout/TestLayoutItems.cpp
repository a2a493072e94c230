#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "gui/layout/CFixedLayoutItem.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/layout/CGrowLayoutSizeLink.h"
#include "gui/layout/CLayerLayout.h"
#include "tests/gui/layout/LayoutTestSupport.h"

namespace {

using namespace layouttest;
using fenn::P;
using fenn::gui::CFixedLayoutItem;
using fenn::gui::CGrowLayout;
using fenn::gui::CGrowLayoutSizeLink;
using fenn::gui::CLayerLayout;
using fenn::gui::CLayoutParams;
using fenn::gui::Orientation;

// window <- layer <- grow group <- fixed item: changes deep down reach the window.
TEST(LayoutItems, InvalidationReachesTheOutermostHolder)
{
    auto window = fakeItem({0, 0});
    auto layer = fenn::make<CLayerLayout>();
    auto group = fenn::make<CGrowLayout>(Orientation::vertical);
    auto space = fenn::make<CFixedLayoutItem>(CSize{5, 5});
    layer->setLayoutHolder(window.get());
    layer->addItem(group, {});
    group->addItem(space, {});
    EXPECT_EQ(space->getLayoutHolder(), group.get());
    EXPECT_EQ(group->getLayoutHolder(), layer.get());

    struct Change
    {
        const char* name;
        std::function<void()> apply;
    };
    const Change changes[] = {
        {"new size",
         [&] {
             space->setSize({6, 6});
         }},
        {"hidden", [&] { space->setLayoutVisible(false); }},
        {"spacing", [&] { group->setSpacing(3); }},
        {"margins", [&] { group->setMargins(1, 1, 1, 1); }},
        {"added",
         [&] {
             group->addItem(fakeItem({1, 1}), {});
         }},
        {"removed", [&] { group->removeItem(space.get()); }},
    };
    for (const Change& change : changes) {
        const int before = window->invalidations;
        change.apply();
        EXPECT_EQ(window->invalidations, before + 1) << change.name;
    }
    // Unchanged values do not ask for a new pass.
    const int before = window->invalidations;
    group->setSpacing(3);
    space->setLayoutVisible(false);
    EXPECT_EQ(window->invalidations, before);
    // A removed item no longer reaches the window.
    EXPECT_EQ(space->getLayoutHolder(), nullptr);
    space->setSize({9, 9});
    EXPECT_EQ(window->invalidations, before);
}

TEST(LayoutItems, LayoutsHandOverTheirItemsCleanly)
{
    auto link = fenn::make<CGrowLayoutSizeLink>();
    auto first = fakeItem({10, 10});
    auto second = fakeItem({20, 10});
    CLayoutParams linked;
    linked.widthLink = link;
    {
        auto layout = fenn::make<CGrowLayout>(Orientation::horizontal);
        layout->addItem(first, linked);
        layout->addItem(second, {});
        // Adding again moves the item to the end with the new parameters.
        layout->addItem(first, {});
        EXPECT_EQ(layout->getItems(), (std::vector<P<ILayoutItem>>{second, first}));
        EXPECT_EQ(link->getMemberCount(), 0);
        layout->addItem(first, linked);
        EXPECT_EQ(layout->getParams(first.get())->widthLink, link);
        EXPECT_EQ(layout->getParams(fakeItem({1, 1}).get()), nullptr);
        EXPECT_EQ(first->holder, layout.get());
        EXPECT_EQ(first->getReferenceCount(), 2);
    }
    // The layout is gone: its items are let go, unlinked and without a holder.
    EXPECT_EQ(first->getReferenceCount(), 1);
    EXPECT_EQ(first->holder, nullptr);
    EXPECT_EQ(second->holder, nullptr);
    EXPECT_EQ(link->getMemberCount(), 0);
}

}  // namespace
