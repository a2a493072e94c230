#include <gtest/gtest.h>

#include <vector>

#include "gui/layout/CFixedLayoutItem.h"
#include "gui/layout/CGrowLayout.h"
#include "tests/gui/layout/LayoutTestSupport.h"

namespace {

using namespace layouttest;
using fenn::P;
using fenn::gui::CFixedLayoutItem;
using fenn::gui::CGrowLayout;
using fenn::gui::CLayoutParams;
using fenn::gui::kUnboundedExtent;
using fenn::gui::Orientation;

constexpr int U = kUnboundedExtent;

// One item along the main axis of a grow layout.
struct MainItem
{
    int min;
    int preferred;
    int max;
    int grow;
};

struct MainCase
{
    const char* name;
    int length;
    int spacing;
    std::vector<MainItem> items;
    std::vector<int> lengths;
};

CSize along(Orientation orientation, int main, int cross)
{
    return orientation == Orientation::horizontal ? CSize{main, cross} : CSize{cross, main};
}

TEST(GrowLayout, SharesTheMainAxisByWeightsMaximaAndMins)
{
    const std::vector<MainCase> cases = {
        {"no grow leaves the rest free", 100, 0, {{0, 10, U, 0}, {0, 20, U, 0}}, {10, 20}},
        {"equal weights, odd pixel to the later", 101, 0, {{0, 10, U, 1}, {0, 10, U, 1}}, {50, 51}},
        {"weights 1:2", 120, 0, {{0, 10, U, 1}, {0, 20, U, 2}}, {40, 80}},
        {"only weighted items grow", 100, 0, {{0, 10, U, 0}, {0, 10, U, 3}, {0, 10, U, 0}}, {10, 80, 10}},
        {"max caps, the rest to the others", 100, 0, {{0, 10, 20, 1}, {0, 10, U, 1}}, {20, 80}},
        {"caps cascade", 100, 0, {{0, 10, 12, 5}, {0, 10, 30, 1}, {0, 10, U, 1}}, {12, 30, 58}},
        {"all capped, rest free", 100, 0, {{0, 10, 15, 1}, {0, 10, 15, 1}}, {15, 15}},
        {"three ways, remainder spread", 32, 0, {{0, 10, U, 1}, {0, 10, U, 1}, {0, 10, U, 1}}, {10, 11, 11}},
        {"spacing comes off first", 104, 2, {{0, 10, U, 1}, {0, 10, U, 1}, {0, 10, U, 1}}, {33, 33, 34}},
        {"shrink by slack", 70, 0, {{10, 50, U, 0}, {30, 50, U, 1}}, {30, 40}},
        {"shrink, rounding exact", 50, 0, {{0, 20, U, 0}, {0, 20, U, 0}, {0, 20, U, 0}}, {17, 17, 16}},
        {"no slack, no shrink", 60, 0, {{40, 40, U, 0}, {0, 40, U, 0}}, {40, 20}},
        {"exactly the mins", 60, 0, {{20, 50, U, 1}, {40, 50, U, 1}}, {20, 40}},
        {"below the mins: mins", 40, 0, {{30, 50, U, 1}, {30, 50, U, 1}}, {30, 30}},
        {"spacing past the room", 4, 10, {{1, 5, U, 1}, {2, 5, U, 1}}, {1, 2}},
    };
    for (const Orientation orientation : {Orientation::horizontal, Orientation::vertical}) {
        for (const MainCase& test : cases) {
            SCOPED_TRACE(test.name);
            SCOPED_TRACE(orientation == Orientation::horizontal ? "horizontal" : "vertical");
            auto layout = fenn::make<CGrowLayout>(orientation);
            layout->setSpacing(test.spacing);
            std::vector<P<CFakeItem>> items;
            for (const MainItem& item : test.items) {
                items.push_back(fakeItem(along(orientation, item.min, 8), along(orientation, item.preferred, 8),
                                         along(orientation, item.max, 8)));
                CLayoutParams params;
                (orientation == Orientation::horizontal ? params.horzGrow : params.vertGrow) = item.grow;
                layout->addItem(items.back(), params);
            }
            layout->setBounds(
                {3, 5, along(orientation, test.length, 8).width, along(orientation, test.length, 8).height});

            int position = orientation == Orientation::horizontal ? 3 : 5;
            for (std::size_t index = 0; index < items.size(); ++index) {
                const CRect expected = orientation == Orientation::horizontal
                                           ? CRect{position, 5, test.lengths[index], 8}
                                           : CRect{3, position, 8, test.lengths[index]};
                EXPECT_EQ(items[index]->bounds, expected) << "item " << index;
                position += test.lengths[index] + test.spacing;
            }
        }
    }
}

// Whatever the room, growing items fill it exactly and every item stays
// within its min and max.
TEST(GrowLayout, FillsTheRoomExactlyAtEveryLength)
{
    const std::vector<MainItem> wantedItems = {{3, 17, 40, 3}, {0, 9, U, 7}, {5, 5, 5, 2}, {1, 30, 31, 0}, {2, 11, U, 5}};
    auto layout = fenn::make<CGrowLayout>(Orientation::horizontal);
    layout->setSpacing(1);
    std::vector<P<CFakeItem>> items;
    int minSum = 4;
    for (const MainItem& wanted : wantedItems) {
        items.push_back(fakeItem({wanted.min, 1}, {wanted.preferred, 1}, {wanted.max, 1}));
        CLayoutParams params;
        params.horzGrow = wanted.grow;
        layout->addItem(items.back(), params);
        minSum += wanted.min;
    }
    for (int length = minSum; length < 400; ++length) {
        layout->setBounds({0, 0, length, 1});
        int end = 0;
        for (std::size_t index = 0; index < items.size(); ++index) {
            const CRect bounds = items[index]->bounds;
            ASSERT_EQ(bounds.x, end + (index ? 1 : 0)) << "length " << length;
            ASSERT_GE(bounds.width, wantedItems[index].min) << "length " << length;
            ASSERT_LE(bounds.width, wantedItems[index].max) << "length " << length;
            end = bounds.right();
        }
        ASSERT_EQ(end, length);
    }
}

TEST(GrowLayout, PlacesAcrossByAlignmentOrFillsWhenGrowing)
{
    struct CrossCase
    {
        CItemSizes sizes;
        int vertGrow;
        int vertAlign;
        int expectedY;
        int expectedHeight;
    };
    const std::vector<CrossCase> cases = {
        {{{5, 0}, {5, 20}, {5, U}}, 0, 0, 10, 20},     {{{5, 0}, {5, 20}, {5, U}}, 0, 50, 50, 20},
        {{{5, 0}, {5, 20}, {5, U}}, 0, 100, 90, 20},   {{{5, 0}, {5, 21}, {5, U}}, 0, 50, 49, 21},
        {{{5, 0}, {5, 20}, {5, U}}, 1, 0, 10, 100},    {{{5, 0}, {5, 20}, {5, 60}}, 1, 100, 50, 60},
        {{{5, 30}, {5, 150}, {5, U}}, 0, 50, 10, 100}, {{{5, 120}, {5, 150}, {5, U}}, 1, 50, 10, 120},
    };
    auto layout = fenn::make<CGrowLayout>(Orientation::horizontal);
    std::vector<P<CFakeItem>> items;
    for (const CrossCase& test : cases) {
        items.push_back(fenn::make<CFakeItem>(test.sizes));
        CLayoutParams params;
        params.vertGrow = test.vertGrow;
        params.vertAlign = test.vertAlign;
        layout->addItem(items.back(), params);
    }
    layout->setBounds({0, 10, 400, 100});
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(items[index]->bounds.y, cases[index].expectedY) << "case " << index;
        EXPECT_EQ(items[index]->bounds.height, cases[index].expectedHeight) << "case " << index;
        EXPECT_EQ(items[index]->bounds.x, static_cast<int>(index) * 5) << "case " << index;
    }
}

TEST(GrowLayout, ReportsSumsAlongAndMaximaAcrossWithSpacingAndMargins)
{
    auto layout = fenn::make<CGrowLayout>(Orientation::vertical);
    layout->setSpacing(4);
    layout->setMargins(1, 2, 3, 5);
    CLayoutParams grows;
    grows.vertGrow = 1;
    layout->addItem(fakeItem({10, 5}, {30, 20}, {50, 40}), grows);
    layout->addItem(fakeItem({20, 1}, {25, 10}, {U, 90}), {});  // counts its preferred height to the max
    auto hidden = fakeItem({500, 500}, {500, 500}, {500, 500});
    hidden->visible = false;
    layout->addItem(hidden, grows);

    EXPECT_EQ(layout->getSize(SizeType::min), (CSize{20 + 4, 5 + 1 + 4 + 7}));
    EXPECT_EQ(layout->getSize(SizeType::preferred), (CSize{30 + 4, 20 + 10 + 4 + 7}));
    EXPECT_EQ(layout->getSize(SizeType::max), (CSize{U, 40 + 10 + 4 + 7}));

    layout->addItem(fakeItem({1, 1}, {1, 1}, {1, U}), grows);
    EXPECT_EQ(layout->getSize(SizeType::max).height, U);

    auto empty = fenn::make<CGrowLayout>(Orientation::horizontal);
    empty->setMargins(2, 3, 4, 5);
    for (const SizeType type : {SizeType::min, SizeType::preferred, SizeType::max})
        EXPECT_EQ(empty->getSize(type), (CSize{6, 8}));
}

TEST(GrowLayout, HiddenItemsTakeNoRoomAndSpacingAndMarginsAreKept)
{
    auto layout = fenn::make<CGrowLayout>(Orientation::horizontal);
    layout->setSpacing(5);
    layout->setMargins(7, 3, 9, 4);
    CLayoutParams grows;
    grows.horzGrow = 1;
    grows.vertGrow = 1;
    auto first = fakeItem({10, 10});
    auto hidden = fakeItem({10, 10});
    auto last = fakeItem({10, 10});
    hidden->visible = false;
    for (const auto& item : {first, hidden, last}) layout->addItem(item, grows);

    layout->setBounds({100, 200, 61, 50});
    EXPECT_EQ(first->bounds, (CRect{107, 203, 20, 43}));
    EXPECT_EQ(last->bounds, (CRect{132, 203, 20, 43}));
    EXPECT_EQ(hidden->boundsSet, 0);
}

TEST(GrowLayout, MainAxisAlignPlacesRoomNobodyTakes)
{
    for (const auto& [percent, firstX] : std::vector<std::pair<int, int>>{{0, 0}, {50, 35}, {100, 70}, {150, 70}}) {
        auto layout = fenn::make<CGrowLayout>(Orientation::horizontal);
        layout->setMainAxisAlign(percent);
        auto first = fakeItem({10, 10});
        auto second = fakeItem({20, 10});
        layout->addItem(first, {});
        layout->addItem(second, {});
        layout->setBounds({0, 0, 100, 10});
        EXPECT_EQ(first->bounds.x, firstX) << percent;
        EXPECT_EQ(second->bounds.x, firstX + 10) << percent;
    }
}

// A vertical group with its own margins inside a horizontal layout: the
// group reports its items' sizes and places them in window coordinates
// when its parent places it.
TEST(GrowLayout, NestedGroupLaysOutInsideItsParent)
{
    auto outer = fenn::make<CGrowLayout>(Orientation::horizontal);
    auto group = fenn::make<CGrowLayout>(Orientation::vertical);
    group->setMargins(2, 2, 2, 2);
    auto fixed = fenn::make<CFixedLayoutItem>(CSize{50, 20});
    auto top = fakeItem({40, 30});
    auto bottom = fakeItem({60, 10});
    CLayoutParams fills;
    fills.vertGrow = 1;
    group->addItem(top, fills);
    group->addItem(bottom, {});
    EXPECT_EQ(group->getSize(SizeType::preferred), (CSize{64, 44}));

    CLayoutParams groupParams;
    groupParams.horzGrow = 1;
    groupParams.vertGrow = 1;
    outer->addItem(fixed, {});
    outer->addItem(group, groupParams);
    EXPECT_EQ(outer->getSize(SizeType::preferred), (CSize{114, 44}));
    EXPECT_EQ(outer->getSize(SizeType::max), (CSize{U, U}));

    outer->setBounds({10, 20, 300, 100});
    EXPECT_EQ(fixed->getBounds(), (CRect{10, 20, 50, 20}));
    EXPECT_EQ(group->getBounds(), (CRect{60, 20, 250, 100}));
    EXPECT_EQ(top->bounds, (CRect{62, 22, 40, 86}));
    EXPECT_EQ(bottom->bounds, (CRect{62, 108, 60, 10}));
}

}  // namespace
