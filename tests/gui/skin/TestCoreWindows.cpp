#include <gtest/gtest.h>

#include <cstdint>

#include "foundation/CError.h"
#include "gui/CStyle.h"
#include "gui/skin/CCoreButton.h"
#include "gui/skin/CCoreTextField.h"
#include "gui/skin/CSkinManager.h"
#include "gui/skin/CWindowSystem.h"
#include "tests/gui/skin/SkinTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using namespace fenn::gui::skin;
using fenn::make;
using fenn::P;

const CColor red(255, 0, 0);
const CColor green(0, 255, 0);
const CColor blue(0, 0, 255);
const CColor yellow(255, 255, 0);
const CColor magenta(255, 0, 255);
const CColor grey(128, 128, 128);
const CColor white(255, 255, 255);

// Buttons: red normal, green hover, blue down, grey disabled; the change
// from normal to hover plays a yellow-then-magenta strip, 30 ms a frame.
// Fields: white with a blue text layer inside objectpos.
const char* const kTestSkin = R"(<skinpackage>
  <skinset id="main">
    <buttonskin id="button" objectpos="6,4,6,4">
      <animlayer file="normal.png" states="normal"><scalemargins left="2" top="2" right="2" bottom="2"/></animlayer>
      <animlayer file="hover.png" states="hover"/>
      <animlayer file="down.png" states="down"/>
      <animlayer file="off.png" states="disabled"/>
      <animlayer file="fade.png" frames="2" delay="30" transitions="normal-hover"/>
      <textlayer states="*" color="#FFFFFF" left="6" right="6"><font size="9" bold="true"/></textlayer>
    </buttonskin>
    <buttonskin id="ordered">
      <animlayer file="normal.png" states="normal" order="2"/>
      <animlayer file="hover.png" states="normal" order="1"/>
    </buttonskin>
    <buttonskin id="documentorder">
      <animlayer file="normal.png" states="normal"/>
      <animlayer file="hover.png" states="normal"/>
    </buttonskin>
    <fieldskin id="textfield" objectpos="5,3,5,3">
      <animlayer file="field.png" states="*"><minsize width="-1" height="26"/></animlayer>
      <animlayer file="hover.png" states="hover" left="0" right="-3" rightfactor="1"/>
      <textlayer states="*" color="#0000FF" halign="left" left="5" right="5"/>
    </fieldskin>
    <fieldskin id="textarea" objectpos="5,3,5,3">
      <animlayer file="field.png" states="*"/>
    </fieldskin>
  </skinset>
</skinpackage>)";

class SkinnedWindows : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder.writeImage("normal.png", {red});
        folder.writeImage("hover.png", {green});
        folder.writeImage("down.png", {blue});
        folder.writeImage("off.png", {grey});
        folder.writeImage("field.png", {white});
        folder.writeImage("fade.png", {yellow, magenta});
        folder.writeXML(kTestSkin);
        package = folder.load();
        set = package->getSkinSet("main");
    }

    template <class Skin> P<Skin> skin(const char* id) { return P<Skin>(dynamic_cast<Skin*>(set->getSkin(id).get())); }

    P<CCoreButton> addButton(tbtest::GuiTestFrame& test, const char* skinId, const char* text = "")
    {
        auto button = make<CCoreButton>(&test.frame(), skin<IButtonSkin>(skinId));
        button->setText(text);
        test.add(button);
        return button;
    }

    skintest::SkinFolder folder;
    P<CSkinPackage> package;
    P<ISkinSet> set;
    skintest::FakeClock clock;
};

TEST_F(SkinnedWindows, ButtonPlaysTransitionsThenStateLayers)
{
    tbtest::GuiTestFrame test;
    const P<CCoreButton> button = addButton(test, "button");
    test.render();
    const CRect bounds = button->getBounds();
    const CPoint inside{bounds.x + 3, bounds.y + 3};
    const CPoint outside{bounds.x + bounds.width + 20, bounds.bottom() + 20};
    EXPECT_EQ(test.pixel(inside.x, inside.y), red);
    EXPECT_EQ(button->getCore().getState(), buttonNormal);

    // Into the button: the normal-hover strip plays, then hover's own layer.
    test.frame().injectMouseMove(test.centreOf(*button));
    test.render();
    EXPECT_EQ(button->getCore().getState(), buttonHover);
    EXPECT_TRUE(button->getCore().isInTransition());
    EXPECT_EQ(test.pixel(inside.x, inside.y), yellow);
    clock.set(1035);
    button->getCore().update(1035);
    test.render();
    EXPECT_EQ(test.pixel(inside.x, inside.y), magenta);
    clock.set(1060);
    button->getCore().update(1060);
    test.render();
    EXPECT_FALSE(button->getCore().isInTransition());
    EXPECT_EQ(test.pixel(inside.x, inside.y), green);

    // Down has no transition from hover: its own layer shows at once.
    test.frame().injectMouseButton(test.centreOf(*button), MouseButton::left, true);
    test.render();
    EXPECT_EQ(button->getCore().getState(), buttonDown);
    EXPECT_EQ(test.pixel(inside.x, inside.y), blue);
    test.frame().injectMouseButton(test.centreOf(*button), MouseButton::left, false);
    test.frame().injectMouseMove(outside);
    test.render();
    EXPECT_EQ(button->getCore().getState(), buttonNormal);
    EXPECT_EQ(test.pixel(inside.x, inside.y), red);
    // Only the normal layer and the text layer are live now.
    EXPECT_EQ(button->getCore().getLayerManager().getLiveCount(), 2);

    button->setEnabled(false);
    test.render();
    EXPECT_EQ(test.pixel(inside.x, inside.y), grey);
}

TEST_F(SkinnedWindows, LayersPaintByOrderThenDocumentPosition)
{
    tbtest::GuiTestFrame test;
    const P<CCoreButton> ordered = addButton(test, "ordered");
    const P<CCoreButton> documentOrder = addButton(test, "documentorder");
    test.render();
    const CPoint a = test.centreOf(*ordered);
    const CPoint b = test.centreOf(*documentOrder);
    // order="2" paints after order="1" although it comes first.
    EXPECT_EQ(test.pixel(a.x, a.y), red);
    EXPECT_EQ(test.pixel(b.x, b.y), green);
}

TEST_F(SkinnedWindows, SizesComeFromContentObjectPosAndLayers)
{
    tbtest::GuiTestFrame test;
    const P<CCoreButton> button = addButton(test, "button", "Start");
    auto field = make<CCoreTextField>(&test.frame(), skin<IFieldSkin>("textfield"));
    field->setText("Name");
    test.add(field);
    const CSize text = button->getFont()->measureText("Start");
    const CSize preferred = button->computeSize(SizeType::preferred);
    EXPECT_GE(preferred.width, text.width + 12);
    EXPECT_GE(preferred.height, text.height + 8);
    // The field's minsize layer asks for more height than its text.
    EXPECT_EQ(field->computeSize(SizeType::preferred).height, 26);
}

TEST_F(SkinnedWindows, CoreWindowsNeedAParentInsideAFrame)
{
    auto loose = make<CWindow>();
    const auto message = [&](CWindow* parent) {
        try {
            make<CCoreButton>(parent, skin<IButtonSkin>("button"));
        } catch (const fenn::CError& error) {
            return error.getDescription().toStdString();
        }
        return std::string();
    };
    EXPECT_EQ(message(nullptr), "The outer window of a fenn.gui.skin.CCoreWindow must have a parent window.");
    EXPECT_NE(message(loose.get()).find("IVirtualWindowParent"), std::string::npos);
    tbtest::GuiTestFrame test;
    auto panel = make<CWindow>();
    test.add(panel);
    EXPECT_EQ(message(panel.get()), "");
}

TEST_F(SkinnedWindows, WindowSystemMakesSkinnedKindsAndDelegatesTheRest)
{
    CSkinManager::getInstance()->addParsedPackage(package);
    tbtest::GuiTestFrame test;
    auto system = make<fenn::gui::skin::CWindowSystem>();
    auto parameters = make<fenn::CValueList>();
    parameters->setString("id", "go");
    P<CWindow> made = system->createWindow("button", &test.frame(), *parameters);
    EXPECT_TRUE(dynamic_cast<CCoreButton*>(made.get()));
    EXPECT_EQ(made->getParent(), &test.frame());
    EXPECT_EQ(made->getProperties().getString("id", "").toStdString(), "go");
    parameters->setString("skin", "ordered");
    made = system->createWindow("button", &test.frame(), *parameters);
    EXPECT_EQ(dynamic_cast<CCoreButton&>(*made).getCore().getSkin()->getId().toStdString(), "ordered");
    // A skin of the wrong kind, or another type: the default system's window.
    parameters->setString("skin", "textfield");
    made = system->createWindow("button", &test.frame(), *parameters);
    EXPECT_TRUE(made && !dynamic_cast<CCoreButton*>(made.get()));
    EXPECT_TRUE(system->hasType("cellview"));
    EXPECT_TRUE(system->createWindow("cellview", &test.frame(), *parameters));
    CSkinManager::getInstance()->clear();
}

TEST_F(SkinnedWindows, Picture)
{
    tbtest::GuiTestFrame test(360, 260);
    const P<CCoreButton> normal = addButton(test, "button", "Normal");
    const P<CCoreButton> hover = addButton(test, "button", "Hover");
    const P<CCoreButton> off = addButton(test, "button", "Disabled");
    off->setEnabled(false);
    auto field = make<CCoreTextField>(&test.frame(), skin<IFieldSkin>("textfield"));
    field->setText("A skinned text field");
    test.add(field);
    auto area = make<CCoreTextArea>(&test.frame(), skin<IFieldSkin>("textarea"));
    area->setText("A skinned text area whose text wraps inside the margins of its skin, drawn by the window.");
    test.add(area);
    test.render();
    test.frame().injectMouseMove(test.centreOf(*hover));
    hover->getCore().update(2000);
    test.render();
    EXPECT_EQ(hover->getCore().getState(), buttonHover);
    EXPECT_EQ(field->getCore().getState(), fieldNormal);
    test.writePNG("skin-widgets");
}

}  // namespace
