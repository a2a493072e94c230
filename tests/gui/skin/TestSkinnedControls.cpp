#include <gtest/gtest.h>

#include "foundation/CObject.h"
#include "gui/IWindowListener.h"
#include "gui/layout/ILayoutItem.h"
#include "gui/skin/CCoreCheckBox.h"
#include "gui/skin/CCoreSelectField.h"
#include "gui/skin/CCoreSliderBar.h"
#include "gui/skin/CCoreTabView.h"
#include "gui/widgets/CSelectGroup.h"
#include "tests/gui/skin/SkinTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using namespace fenn::gui::skin;
using fenn::make;
using fenn::P;
using namespace skintest;

// Counts the changes a window reports and keeps the last index.
class ChangeCounter : public fenn::CObject, public virtual IWindowListener
{
public:
    void windowNotified(CWindow&, const CNotification& notification) override
    {
        if (notification.kind != Notification::changed) return;
        ++changes;
        lastIndex = notification.index;
    }

    int changes = 0;
    int lastIndex = -1;
};

// Check boxes: a 16-pixel box, red unchecked, green checked, grey hovered
// unchecked; "checking" plays yellow then magenta and "unchecking" magenta
// then yellow, 30 ms a frame. Select fields: the same boxes and no change
// layers at all. Slider: blue track, green fill, a 10-pixel red slider,
// 10 pixels of slider area margin at each end. Tab view: a white page,
// yellow active tabs, grey inactive ones, cyan under the pointer.
const char* const kControlSkin = R"(<skinpackage>
  <skinset id="main">
    <checkboxskin id="checkbox" objectpos="20,0,0,0">
      <animlayer file="red.png" states="unchecked_normal" right="-16" rightfactor="1"/>
      <animlayer file="grey.png" states="unchecked_hover" right="-16" rightfactor="1"/>
      <animlayer file="green.png" states="checked_normal,checked_hover" right="-16" rightfactor="1"/>
      <animlayer file="white.png" states="checked_disabled,unchecked_disabled" right="-16" rightfactor="1"/>
      <animlayer file="in.png" frames="2" delay="30" states="checking" right="-16" rightfactor="1"/>
      <animlayer file="out.png" frames="2" delay="30" states="unchecking" right="-16" rightfactor="1"/>
    </checkboxskin>
    <selectfieldskin id="selectfield" objectpos="20,0,0,0">
      <animlayer file="red.png" states="unchecked_normal,unchecked_hover" right="-16" rightfactor="1"/>
      <animlayer file="green.png" states="checked_normal,checked_hover" right="-16" rightfactor="1"/>
    </selectfieldskin>
    <sliderbarskin id="sliderbar">
      <sliderareamargins left="10" top="0" right="10" bottom="0"/>
      <staticfiller><animlayer file="blue.png" states="*"/></staticfiller>
      <scalingfiller><animlayer file="green.png" states="*"/></scalingfiller>
      <slider><animlayer file="knob.png" states="*" noscale="true"/></slider>
    </sliderbarskin>
    <tabviewskin id="tabview">
      <tabarea placement="top" tabalign="left" tabids="tab"/>
      <background><animlayer file="white.png" states="*"/></background>
      <contentarea left="4" top="4" right="4" bottom="4"/>
      <tabskin id="tab">
        <coremargins left="10" top="4" right="10" bottom="4"/>
        <animlayer file="yellow.png" states="active_normal,active_hover"/>
        <animlayer file="grey.png" states="inactive_normal"/>
        <animlayer file="cyan.png" states="inactive_hover"/>
      </tabskin>
    </tabviewskin>
  </skinset>
</skinpackage>)";

class SkinnedControls : public SkinSetTest
{
protected:
    void SetUp() override
    {
        loadSet(kControlSkin,
                {{"in.png", {yellow, magenta}}, {"out.png", {magenta, yellow}}, {"knob.png", {red}, 10, 10}});
    }
};

TEST_F(SkinnedControls, CheckBoxPlaysCheckingAndUncheckingThenRests)
{
    const auto counter = make<ChangeCounter>();
    tbtest::GuiTestFrame test;
    auto box = make<CCoreCheckBox>(&test.frame(), skin<ICheckBoxSkin>("checkbox"));
    box->setText("Check");
    test.add(box);
    box->addListener(counter.get());
    const int& changes = counter->changes;
    test.render();
    const CRect bounds = box->getBounds();
    const CPoint mark{bounds.x + 4, bounds.y + bounds.height / 2};
    const CPoint away{bounds.right() + 30, bounds.bottom() + 30};
    const auto colour = [&] {
        test.render();
        return test.pixel(mark.x, mark.y);
    };
    EXPECT_EQ(colour(), red);
    test.frame().injectMouseMove(mark);
    EXPECT_EQ(colour(), grey);

    // A click checks it; the pointer leaving does not cut the change short.
    test.frame().injectClick(mark);
    test.frame().injectMouseMove(away);
    EXPECT_TRUE(box->isChecked());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(box->getCore().getState(), checking);
    EXPECT_EQ(colour(), yellow);
    advance(box->getCore(), 1030);
    EXPECT_EQ(colour(), magenta);
    EXPECT_EQ(box->getCore().getState(), checking);
    advance(box->getCore(), 1060);
    EXPECT_EQ(box->getCore().getState(), checkedNormal);
    EXPECT_FALSE(box->getCore().isInTransition());
    EXPECT_EQ(colour(), green);

    // Space unchecks it again through "unchecking".
    box->setFocus();
    test.frame().injectKey(CKeyEvent{Key::space}, true);
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(colour(), magenta);
    advance(box->getCore(), 1090);
    EXPECT_EQ(colour(), yellow);
    advance(box->getCore(), 1120);
    EXPECT_EQ(box->getCore().getState(), uncheckedNormal);
    EXPECT_EQ(colour(), red);
    EXPECT_EQ(changes, 2);

    // Disabled, it shows the disabled layer and clicks do nothing.
    box->setEnabled(false);
    test.frame().injectClick(mark);
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(colour(), white);
    // The label sits beside the box, inside objectpos.
    EXPECT_EQ(box->computeSize(SizeType::preferred).width, 20 + box->getFont()->measureText("Check").width);
}

TEST_F(SkinnedControls, SelectFieldsOfAGroupClearEachOtherInTheSkin)
{
    tbtest::GuiTestFrame test;
    auto group = make<CSelectGroup>();
    test.add(group);
    std::vector<P<CCoreSelectField>> fields;
    for (const char* text : {"One", "Two", "Three"}) {
        fields.push_back(make<CCoreSelectField>(group.get(), skin<ISelectFieldSkin>("selectfield")));
        fields.back()->setText(text);
        group->addChild(fields.back());
        group->getLayout()->addItem(fields.back(), {});
    }
    test.render();
    const auto colourOf = [&](const CWindow& field) {
        test.render();
        const CPoint at = field.toFrame({4, field.getBounds().height / 2, 1, 1}).origin();
        return test.pixel(at.x, at.y);
    };
    ASSERT_EQ(group->getFields().size(), 3u);
    test.frame().injectClick(test.centreOf(*fields[0]));
    EXPECT_EQ(group->getSelectedIndex(), 0);
    EXPECT_EQ(colourOf(*fields[0]), green);
    // The arrow key moves the choice; the cleared field changes with it.
    test.frame().injectKey(CKeyEvent{Key::down}, true);
    EXPECT_EQ(group->getSelectedIndex(), 1);
    EXPECT_EQ(fields[0]->getCore().getState(), uncheckedNormal);
    EXPECT_EQ(colourOf(*fields[0]), red);
    EXPECT_EQ(colourOf(*fields[1]), green);
    group->setSelectedIndex(2);
    EXPECT_EQ(colourOf(*fields[1]), red);
    EXPECT_EQ(colourOf(*fields[2]), green);
}

TEST_F(SkinnedControls, SliderDragMovesTheValueAndTheScalingFiller)
{
    tbtest::GuiTestFrame test(400, 300);
    auto slider = make<CCoreSliderBar>(&test.frame(), skin<ISliderBarSkin>("sliderbar"));
    test.add(slider);
    test.render();
    const CRect bounds = slider->getBounds();
    ASSERT_EQ(bounds.height, 10);
    const CRect area = slider->getSliderArea().translated(bounds.x, bounds.y);
    const int y = bounds.y + 5;
    EXPECT_EQ(test.pixel(area.x + area.width / 2, y), blue);
    EXPECT_EQ(test.pixel(area.x + 3, y), red);

    // Drag the slider from the start to the middle of the area.
    const auto counter = make<ChangeCounter>();
    slider->addListener(counter.get());
    test.frame().injectMouseButton({area.x, y}, MouseButton::left, true);
    test.frame().injectMouseMove({area.x + area.width / 2, y});
    test.frame().injectMouseButton({area.x + area.width / 2, y}, MouseButton::left, false);
    EXPECT_EQ(slider->getPosition(), 50);
    EXPECT_EQ(counter->lastIndex, 50);
    test.render();
    const CRect filler = slider->getScalingFillerRect().translated(bounds.x, bounds.y);
    EXPECT_EQ(filler.x, area.x);
    EXPECT_EQ(filler.width, area.width / 2);
    EXPECT_EQ(test.pixel(area.x + 2, y), green);
    EXPECT_EQ(test.pixel(filler.right() - 7, y), green);
    EXPECT_EQ(test.pixel(filler.right(), y), red);
    EXPECT_EQ(test.pixel(filler.right() + 7, y), blue);

    // A vertical bar turns the picture: the filler rises from the bottom.
    slider->setOrientation(fenn::gui::Orientation::vertical);
    slider->setPosition(30);
    test.render();
    const CRect turned = slider->getBounds();
    ASSERT_EQ(turned.width, 10);
    const CRect rising = slider->getScalingFillerRect().translated(turned.x, turned.y);
    EXPECT_EQ(rising.bottom(), turned.bottom() - 10);
    EXPECT_EQ(rising.height, (turned.height - 20) * 3 / 10);
    EXPECT_EQ(test.pixel(turned.x + 5, rising.bottom() - 2), green);
    EXPECT_EQ(test.pixel(turned.x + 5, rising.y - 8), blue);
    const CRect thumb = slider->getThumbRect().translated(turned.x, turned.y);
    EXPECT_EQ(thumb.y + thumb.height / 2, rising.y);
}

TEST_F(SkinnedControls, TabClickSwitchesPageAndTabLooks)
{
    tbtest::GuiTestFrame test(400, 300);
    auto view = make<CCoreTabView>(&test.frame(), skin<ITabViewSkin>("tabview"));
    test.add(view, {});
    auto first = make<CWindow>();
    auto second = make<CWindow>();
    view->addPage("First", first);
    view->addPage("Second page", second);
    test.render();
    const CRect tab0 = view->getTabRect(0).translated(view->getBounds().x, view->getBounds().y);
    const CRect tab1 = view->getTabRect(1).translated(view->getBounds().x, view->getBounds().y);
    EXPECT_EQ(tab1.x, tab0.right());
    EXPECT_EQ(tab0.width, view->getFont()->measureText("First").width + 20);
    EXPECT_EQ(tab1.height, view->getFont()->measureText("Second").height + 8);
    const CPoint on0{tab0.x + 3, tab0.y + 3};
    const CPoint on1{tab1.x + 3, tab1.y + 3};
    EXPECT_EQ(test.pixel(on0.x, on0.y), yellow);
    EXPECT_EQ(test.pixel(on1.x, on1.y), grey);

    test.frame().injectMouseMove({tab1.x + tab1.width / 2, tab1.y + tab1.height / 2});
    test.render();
    EXPECT_EQ(test.pixel(on1.x, on1.y), cyan);
    test.frame().injectClick({tab1.x + tab1.width / 2, tab1.y + tab1.height / 2});
    test.render();
    EXPECT_EQ(view->getSelectedIndex(), 1);
    EXPECT_FALSE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(test.pixel(on0.x, on0.y), grey);
    EXPECT_EQ(test.pixel(on1.x, on1.y), yellow);
    // The page fills the page background inside the content area margins.
    const CRect page = view->getPageBackgroundRect();
    EXPECT_EQ(page.y, tab0.height);
    EXPECT_EQ(second->getBounds(), page.inset(4, 4, 4, 4));
}

}  // namespace
