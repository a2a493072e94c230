#include <gtest/gtest.h>

#include <vector>

#include "gui/layout/CLayerLayout.h"
#include "tests/gui/layout/LayoutTestSupport.h"

namespace {

using namespace layouttest;
using fenn::P;
using fenn::gui::CLayerLayout;
using fenn::gui::CLayoutParams;
using fenn::gui::kUnboundedExtent;

constexpr int U = kUnboundedExtent;

TEST(LayerLayout, GivesEveryItemTheRoomWithinItsMaxByAlignment)
{
    struct LayerCase
    {
        CItemSizes sizes;
        int horzAlign;
        int vertAlign;
        CRect expected;
    };
    // The room is {12, 24, 100, 60}: bounds {10, 20, 105, 70} less margins 2, 4, 3, 6.
    const std::vector<LayerCase> cases = {
        {{{0, 0}, {10, 10}, {U, U}}, 0, 0, {12, 24, 100, 60}},
        {{{0, 0}, {10, 10}, {40, 20}}, 0, 0, {12, 24, 40, 20}},
        {{{0, 0}, {10, 10}, {40, 20}}, 50, 50, {42, 44, 40, 20}},
        {{{0, 0}, {10, 10}, {40, U}}, 100, 100, {72, 24, 40, 60}},
        {{{150, 80}, {150, 80}, {U, U}}, 50, 100, {12, 24, 150, 80}},
    };
    auto layout = fenn::make<CLayerLayout>();
    layout->setMargins(2, 4, 3, 6);
    std::vector<P<CFakeItem>> items;
    for (const LayerCase& test : cases) {
        items.push_back(fenn::make<CFakeItem>(test.sizes));
        CLayoutParams params;
        params.horzAlign = test.horzAlign;
        params.vertAlign = test.vertAlign;
        layout->addItem(items.back(), params);
    }
    auto hidden = fakeItem({10, 10});
    hidden->visible = false;
    layout->addItem(hidden, {});

    layout->setBounds({10, 20, 105, 70});
    for (std::size_t index = 0; index < cases.size(); ++index)
        EXPECT_EQ(items[index]->bounds, cases[index].expected) << "case " << index;
    EXPECT_EQ(hidden->boundsSet, 0);
}

TEST(LayerLayout, ReportsLargestMinAndPreferredAndSmallestMax)
{
    auto layout = fenn::make<CLayerLayout>();
    layout->setMargins(1, 1, 1, 1);
    layout->addItem(fakeItem({10, 5}, {30, 20}, {200, 40}), {});
    layout->addItem(fakeItem({20, 1}, {25, 30}, {U, 90}), {});
    auto hidden = fakeItem({500, 500}, {500, 500}, {1, 1});
    hidden->visible = false;
    layout->addItem(hidden, {});

    EXPECT_EQ(layout->getSize(SizeType::min), (CSize{22, 7}));
    EXPECT_EQ(layout->getSize(SizeType::preferred), (CSize{32, 32}));
    EXPECT_EQ(layout->getSize(SizeType::max), (CSize{202, 42}));

    // A max below another item's preferred size gives way to it.
    layout->addItem(fakeItem({0, 0}, {5, 5}, {8, 8}), {});
    EXPECT_EQ(layout->getSize(SizeType::max), (CSize{32, 32}));

    auto empty = fenn::make<CLayerLayout>();
    EXPECT_EQ(empty->getSize(SizeType::max), (CSize{}));
}

}  // namespace
