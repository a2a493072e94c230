#include <gtest/gtest.h>

#include <algorithm>

#include "gui/layout/CGrowLayout.h"
#include "gui/layout/CGrowLayoutSizeLink.h"
#include "tests/gui/layout/LayoutTestSupport.h"

namespace {

using namespace layouttest;
using fenn::P;
using fenn::gui::CGrowLayout;
using fenn::gui::CGrowLayoutSizeLink;
using fenn::gui::CLayoutParams;
using fenn::gui::Orientation;

// Two rows of "label, field" in a column, the labels linked: the fields
// line up whichever label is longer.
struct LinkedRows
{
    P<CGrowLayout> column = fenn::make<CGrowLayout>(Orientation::vertical);
    P<CGrowLayout> rows[2] = {fenn::make<CGrowLayout>(Orientation::horizontal),
                              fenn::make<CGrowLayout>(Orientation::horizontal)};
    P<CFakeItem> labels[2] = {fakeItem({30, 10}, {30, 10}, {30, 10}), fakeItem({50, 16}, {50, 16}, {50, 16})};
    P<CFakeItem> fields[2] = {fakeItem({80, 12}), fakeItem({80, 12})};

    explicit LinkedRows(P<CGrowLayoutSizeLink> CLayoutParams::*which, const P<CGrowLayoutSizeLink>& link)
    {
        CLayoutParams labelParams;
        labelParams.*which = link;
        for (int row = 0; row < 2; ++row) {
            rows[row]->addItem(labels[row], labelParams);
            rows[row]->addItem(fields[row], {});
            column->addItem(rows[row], {});
        }
        column->setBounds({0, 0, 200, 100});
    }
};

TEST(SizeLinks, LinkedItemsReportTheLargestSizeInTheirDirections)
{
    struct LinkCase
    {
        const char* name;
        P<CGrowLayoutSizeLink> CLayoutParams::*which;
        CSize firstLabel;
        CSize secondLabel;
    };
    const LinkCase cases[] = {
        {"size link", &CLayoutParams::sizeLink, {50, 16}, {50, 16}},
        {"width link", &CLayoutParams::widthLink, {50, 10}, {50, 16}},
        {"height link", &CLayoutParams::heightLink, {30, 16}, {50, 16}},
    };
    for (const LinkCase& test : cases) {
        SCOPED_TRACE(test.name);
        auto link = fenn::make<CGrowLayoutSizeLink>();
        LinkedRows rows(test.which, link);
        EXPECT_EQ(link->getMemberCount(), 2);
        EXPECT_EQ(rows.labels[0]->bounds.size(), test.firstLabel);
        EXPECT_EQ(rows.labels[1]->bounds.size(), test.secondLabel);
        EXPECT_EQ(rows.fields[0]->bounds.x, test.firstLabel.width);
        EXPECT_EQ(rows.rows[0]->getSize(SizeType::preferred),
                  (CSize{test.firstLabel.width + 80, std::max(12, test.firstLabel.height)}));

        // Out of its layout, the longer label no longer widens the shorter one.
        rows.rows[1]->removeItem(rows.labels[1].get());
        EXPECT_EQ(link->getMemberCount(), 1);
        EXPECT_FALSE(link->isMember(rows.labels[1].get()));
        EXPECT_EQ(rows.rows[0]->getSize(SizeType::preferred), (CSize{110, 12}));
    }
}

TEST(SizeLinks, HiddenMembersDoNotCountAndDestroyedLayoutsLeave)
{
    auto link = fenn::make<CGrowLayoutSizeLink>();
    LinkedRows rows(&CLayoutParams::widthLink, link);
    rows.labels[1]->visible = false;
    EXPECT_EQ(rows.rows[0]->getSize(SizeType::min), (CSize{110, 12}));
    rows.labels[1]->visible = true;
    EXPECT_EQ(rows.rows[0]->getSize(SizeType::min), (CSize{130, 12}));

    rows.column->removeItem(rows.rows[1].get());
    rows.rows[1] = nullptr;  // the row goes and takes its label out of the link
    EXPECT_EQ(link->getMemberCount(), 1);
    EXPECT_EQ(rows.labels[1]->holder, nullptr);
    EXPECT_EQ(rows.rows[0]->getSize(SizeType::min), (CSize{110, 12}));
}

// A group linked with an item inside it asks the link again while the link
// measures; the nested request gets the own size instead of recursing.
TEST(SizeLinks, GroupLinkedWithItsOwnItemDoesNotRecurse)
{
    auto link = fenn::make<CGrowLayoutSizeLink>();
    auto outer = fenn::make<CGrowLayout>(Orientation::horizontal);
    auto group = fenn::make<CGrowLayout>(Orientation::horizontal);
    auto inner = fakeItem({20, 10});
    auto other = fakeItem({70, 10});
    CLayoutParams linked;
    linked.sizeLink = link;
    group->addItem(inner, linked);
    outer->addItem(group, linked);
    outer->addItem(other, linked);
    EXPECT_EQ(outer->getSize(SizeType::preferred), (CSize{140, 10}));
}

}  // namespace
