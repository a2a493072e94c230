#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

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
using namespace skintest;

// Buttons: red normal, green hover, blue down, grey disabled; the change
// from normal to hover plays a yellow-then-magenta strip, 30 ms a frame.
// Fields: white with a blue text layer inside objectpos.
const char* const kTestSkin = R"(<skinpackage>
  <skinset id="main">
    <buttonskin id="button" objectpos="6,4,6,4">
      <animlayer file="red.png" states="normal"><scalemargins left="2" top="2" right="2" bottom="2"/></animlayer>
      <animlayer file="green.png" states="hover"/>
      <animlayer file="blue.png" states="down"/>
      <animlayer file="grey.png" states="disabled"/>
      <animlayer file="fade.png" frames="2" delay="30" transitions="normal-hover"/>
      <textlayer states="*" color="#FFFFFF" left="6" right="6"><font size="9" bold="true"/></textlayer>
    </buttonskin>
    <buttonskin id="ordered">
      <animlayer file="red.png" states="normal" order="2"/>
      <animlayer file="green.png" states="normal" order="1"/>
    </buttonskin>
    <buttonskin id="documentorder">
      <animlayer file="red.png" states="normal"/>
      <animlayer file="green.png" states="normal"/>
    </buttonskin>
    <fieldskin id="textfield" objectpos="5,3,5,3">
      <animlayer file="white.png" states="*"><minsize width="-1" height="26"/></animlayer>
      <animlayer file="green.png" states="hover" left="0" right="-3" rightfactor="1"/>
      <textlayer states="*" color="#0000FF" halign="left" left="5" right="5"/>
    </fieldskin>
    <fieldskin id="textarea" objectpos="5,3,5,3">
      <animlayer file="white.png" states="*"/>
    </fieldskin>
  </skinset>
</skinpackage>)";

class SkinnedWindows : public SkinSetTest
{
protected:
    void SetUp() override { loadSet(kTestSkin, {{"fade.png", {yellow, magenta}}}); }

    P<CCoreButton> addButton(tbtest::GuiTestFrame& test, const char* skinId, const char* text = "")
    {
        auto button = make<CCoreButton>(&test.frame(), skin<IButtonSkin>(skinId));
        button->setText(text);
        test.add(button);
        return button;
    }
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
    advance(button->getCore(), 1035);
    test.render();
    EXPECT_EQ(test.pixel(inside.x, inside.y), magenta);
    advance(button->getCore(), 1060);
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

// The text's pixels in a window: every pixel that is not the white
// background, in window coordinates.
class Ink
{
public:
    Ink(const tbtest::GuiTestFrame& test, const CWindow& window) : m_size(window.getBounds().size())
    {
        const CRect bounds = window.getBounds();
        m_ink.assign(static_cast<std::size_t>(m_size.width * m_size.height), false);
        for (int y = 0; y < m_size.height; ++y) {
            for (int x = 0; x < m_size.width; ++x) {
                const CColor colour = test.pixel(bounds.x + x, bounds.y + y);
                if (colour == white) continue;
                m_ink[index(x, y)] = true;
                if (colour != black) blended = true;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }

    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }

    // The longest unbroken run of ink in a row.
    int longestRun(int y) const
    {
        int longest = 0;
        int run = 0;
        for (int x = 0; x < m_size.width; ++x) {
            run = m_ink[index(x, y)] ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        return longest;
    }

    // The longest run in the rows first..last.
    int longestRun(int first, int last) const
    {
        int longest = 0;
        for (int y = std::max(first, 0); y <= std::min(last, m_size.height - 1); ++y)
            longest = std::max(longest, longestRun(y));
        return longest;
    }

    // The mean x of the ink in the rows first..last.
    double meanX(int first, int last) const
    {
        double sum = 0.0;
        int count = 0;
        for (int y = first; y <= last; ++y) {
            for (int x = 0; x < m_size.width; ++x) {
                if (!m_ink[index(x, y)]) continue;
                sum += x;
                ++count;
            }
        }
        return count > 0 ? sum / count : 0.0;
    }

    // How far the top quarter of the ink leans right of the bottom quarter.
    double slant() const
    {
        const int quarter = std::max(1, height() / 4);
        return meanX(top, top + quarter - 1) - meanX(bottom - quarter + 1, bottom);
    }

    int left = 1 << 20;
    int right = -1;
    int top = 1 << 20;
    int bottom = -1;
    // Some ink is neither white nor black: antialiased edges.
    bool blended = false;

private:
    std::size_t index(int x, int y) const { return static_cast<std::size_t>(y * m_size.width + x); }

    CSize m_size;
    std::vector<bool> m_ink;
};

// Black text on white fields, each drawing the same text as "plain" with
// one attribute more (or "lines" with wider line spacing).
class TextLayerAttributes : public SkinSetTest
{
protected:
    void SetUp() override
    {
        std::string xml = "<skinpackage><skinset id=\"main\">";
        const auto field = [&](const char* id, const char* layerAttributes, const char* fontAttributes) {
            xml += std::string("<fieldskin id=\"") + id + "\"><animlayer file=\"white.png\" states=\"*\"/>" +
                   "<textlayer states=\"*\" color=\"#000000\" halign=\"left\" left=\"4\" top=\"4\" right=\"4\" " +
                   "bottom=\"4\" " + layerAttributes + "><font name=\"DejaVu Sans\" size=\"24\" " + fontAttributes +
                   "/></textlayer></fieldskin>";
        };
        field("plain", "", "");
        field("underline", "", "underline=\"true\"");
        field("strikeout", "", "strikeout=\"true\"");
        field("italics", "", "italics=\"true\"");
        field("aliased", "", "antialias=\"false\"");
        field("lines", "multiline=\"true\"", "");
        field("spaced", "multiline=\"true\" linespacing=\"10\"", "");
        xml += "</skinset></skinpackage>";
        loadSet(xml);
    }
};

TEST_F(TextLayerAttributes, FontAttributesAndLineSpacingShowInThePicture)
{
    tbtest::GuiTestFrame test(400, 560);
    std::map<std::string, P<CCoreTextField>> fields;
    for (const char* id : {"plain", "underline", "strikeout", "italics", "aliased", "lines", "spaced"}) {
        auto field = make<CCoreTextField>(&test.frame(), skin<IFieldSkin>(id));
        field->setText(std::string(id) == "lines" || std::string(id) == "spaced" ? "xxxx\nxxxx" : "xxxx");
        test.add(field);
        fields[id] = field;
    }
    test.render();
    const auto ink = [&](const char* id) { return Ink(test, *fields[id]); };
    const Ink plain = ink("plain");
    ASSERT_GT(plain.width(), 40);
    EXPECT_TRUE(plain.blended);

    // Underline: a line under the text's baseline, nearly as wide as the text.
    const Ink underline = ink("underline");
    EXPECT_GT(underline.bottom, plain.bottom);
    EXPECT_GE(underline.longestRun(plain.bottom + 1, underline.bottom), plain.width() * 9 / 10);
    // Strike-out: an unbroken line through the letters, which "x"s alone never draw.
    EXPECT_LT(plain.longestRun(plain.top, plain.bottom), plain.width() / 2);
    EXPECT_GE(ink("strikeout").longestRun(plain.top, plain.bottom), plain.width() * 9 / 10);
    // Italics: the letters lean right.
    EXPECT_LT(std::abs(plain.slant()), 1.0);
    EXPECT_GT(ink("italics").slant(), 2.0);
    // Without antialiasing every pixel is the text's colour or the background's.
    const Ink aliased = ink("aliased");
    EXPECT_FALSE(aliased.blended);
    EXPECT_NEAR(aliased.width(), plain.width(), 2);
    EXPECT_NEAR(aliased.height(), plain.height(), 2);

    // Line spacing: the second line moves down by it, and the field asks for as much more height.
    EXPECT_EQ(ink("spaced").height() - ink("lines").height(), 10);
    EXPECT_EQ(fields["spaced"]->computeSize(SizeType::preferred).height -
                  fields["lines"]->computeSize(SizeType::preferred).height,
              10);
}

}  // namespace
