#include <gtest/gtest.h>

#include "gui/CStyle.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CTabView.h"
#include "gui/widgets/CTextArea.h"
#include "tests/gui/basic/BasicWidgetTests.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using basictest::Recorder;
using fenn::make;
using fenn::P;

CPoint tabCentre(const CTabView& tabs, int index)
{
    const CRect rect = tabs.toFrame(tabs.getTabRect(index));
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

TEST(TabView, OnlyTheSelectedPageShowsBelowTheTabs)
{
    const CColor yellow{250, 230, 120};
    tbtest::GuiTestFrame test(420, 320);
    auto recorder = make<Recorder>();
    auto tabs = make<CTabView>();
    auto general = basictest::makeBox(Orientation::vertical);
    general->setBackColor(yellow);
    auto apply = make<CButton>("Apply");
    basictest::addTo(*general, apply);
    auto formats = make<CCheckBox>("Convert to the source's format");
    auto advanced = make<CTextArea>("Settings for those who know what they do.");
    EXPECT_EQ(tabs->addPage("General", general), 0);
    EXPECT_EQ(tabs->addPage("Formats", formats), 1);
    EXPECT_EQ(tabs->addPage("Advanced", advanced), 2);
    tabs->addListener(recorder.get());
    test.add(tabs, {.horzGrow = 1, .vertGrow = 1});
    test.render();

    // As large as the largest page plus the tabs, so that switching moves nothing.
    const CSize preferred = tabs->getSize(SizeType::preferred);
    EXPECT_GE(preferred.width, tabs->getTabRect(2).right());
    EXPECT_GE(preferred.height, formats->getSize(SizeType::preferred).height + tabs->getTabRect(0).bottom());
    EXPECT_EQ(tabs->getSelectedIndex(), 0);
    EXPECT_TRUE(general->isVisible());
    EXPECT_FALSE(formats->isVisible());
    EXPECT_FALSE(advanced->isVisible());
    EXPECT_EQ(general->getBounds(), tabs->getPageArea());
    EXPECT_GE(tabs->getPageArea().y, tabs->getTabRect(0).bottom());
    const CPoint pageCentre = test.centreOf(*general);
    EXPECT_EQ(test.pixel(pageCentre.x, pageCentre.y), yellow);

    test.frame().injectClick(tabCentre(*tabs, 1));
    EXPECT_EQ(tabs->getSelectedIndex(), 1);
    EXPECT_FALSE(general->isVisible());
    EXPECT_TRUE(formats->isVisible());
    EXPECT_EQ(recorder->lastIndex(tabs.get(), Notification::changed), 1);
    test.render();
    EXPECT_EQ(formats->getBounds(), tabs->getPageArea());
    EXPECT_NE(test.pixel(pageCentre.x, pageCentre.y), yellow);
    // Clicks reach the page that shows, not the hidden one under it.
    test.frame().injectClick(test.centreOf(*formats));
    EXPECT_TRUE(formats->isChecked());

    // From inside a page, Ctrl+Tab and Ctrl+Page Down go forward; the
    // focus does not stay on a page that is hidden.
    tabs->setSelectedIndex(0);
    test.render();
    apply->setFocus();
    ASSERT_TRUE(apply->hasFocus());
    test.frame().injectKey({Key::tab, 0, modifierControl}, true);
    EXPECT_EQ(tabs->getSelectedIndex(), 1);
    EXPECT_FALSE(apply->hasFocus());

    // The row of tabs takes the focus on a click and keys choose along it.
    test.frame().injectClick(tabCentre(*tabs, 2));
    const struct
    {
        CKeyEvent key;
        int expected;
    } presses[] = {
        {{Key::pageDown, 0, modifierControl}, 0},
        {{Key::tab, 0, modifierControl | modifierShift}, 2},
        {{Key::pageUp, 0, modifierControl}, 1},
        {{Key::right}, 2},
        {{Key::right}, 2},
        {{Key::home}, 0},
        {{Key::left}, 0},
        {{Key::end}, 2},
    };
    for (const auto& press : presses) {
        test.frame().injectKey(press.key, true);
        EXPECT_EQ(tabs->getSelectedIndex(), press.expected);
    }
    test.render();
    EXPECT_TRUE(advanced->isVisible());
    EXPECT_EQ(advanced->getBounds(), tabs->getPageArea());
    // User changes only: two clicks on tabs, Ctrl+Tab and six keys that moved.
    EXPECT_EQ(recorder->count(tabs.get(), Notification::changed), 9);

    tabs->setEnabled(false);
    test.frame().injectClick(tabCentre(*tabs, 0));
    EXPECT_EQ(tabs->getSelectedIndex(), 2);
}

}  // namespace
