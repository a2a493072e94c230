#include <gtest/gtest.h>

#include <filesystem>

#include "gui/skin/CSkin.h"
#include "tests/gui/skin/SkinTestSupport.h"

namespace {

using namespace fenn::gui;
using namespace fenn::gui::skin;
using fenn::P;

// A package whose one button skin holds the given layers; the layers start
// on line 4.
std::string buttonPackage(const std::string& layers, const std::string& skinAttributes = "")
{
    return "<skinpackage>\n<skininfo name=\"Test\" version=\"2\"/>\n<skinset id=\"main\">\n<buttonskin id=\"button\"" +
           skinAttributes + ">" + layers + "</buttonskin>\n</skinset>\n</skinpackage>\n";
}

P<ISkin> onlyButton(skintest::SkinFolder& folder, const std::string& layers, const std::string& attributes = "")
{
    folder.writeXML(buttonPackage(layers, attributes));
    return folder.load()->getSkinSet("main")->getSkin("button");
}

TEST(SkinParsing, BadStateAndTransitionListsAreReportedWithTheirLine)
{
    skintest::SkinFolder folder;
    folder.writeImage("n.png", {CColor(255, 0, 0)});
    const struct
    {
        std::string layers;
        std::string expected;
    } cases[] = {
        {"<animlayer file=\"n.png\"/>", "line 4: layers must be associated with states and/or transitions"},
        {"<animlayer file=\"n.png\" states=\"normal,normal\"/>", "line 4, element animlayer: states"},
        {"<animlayer file=\"n.png\" states=\"normal,*\"/>", "line 4, element animlayer: states"},
        {"<animlayer file=\"n.png\" states=\"pressed\"/>", "line 4, element animlayer: states"},
        {"\n\n<animlayer file=\"n.png\" transitions=\"normal-hover, normal - hover\"/>",
         "line 6, element animlayer: transitions"},
        {"<animlayer file=\"n.png\" transitions=\"normal\"/>", "element animlayer: transitions"},
        {"<animlayer file=\"n.png\" transitions=\"*-down,hover-down\"/>", "element animlayer: transitions"},
        {"<animlayer file=\"n.png\" transitions=\"normal-gone\"/>", "element animlayer: transitions"},
        {"<animlayer states=\"normal\"/>", "element animlayer: uri/uriprop"},
        {"<animlayer file=\"n.png\" uriprop=\"icon\" states=\"normal\"/>", "element animlayer: uri/uriprop"},
        {"<animlayer file=\"missing.png\" states=\"normal\"/>", "element animlayer: file"},
        {"<animlayer file=\"n.png\" frames=\"9\" states=\"normal\"/>", "element animlayer: frames"},
        {"<animlayer file=\"n.png\" states=\"normal\"><scalemargins left=\"5\" right=\"5\"/></animlayer>",
         "element scalemargins: scalemargins"},
        {"<textlayer states=\"normal\" color=\"red\"/>", "element textlayer: color"},
        {"<textlayer states=\"normal\" order=\"1x\"/>", "element textlayer: order"},
        {"<textlayer states=\"normal\"><glow/></textlayer>", "line 4: glow"},
        {"<textlayer states=\"normal\"", "XML syntax error"},
    };
    for (const auto& c : cases) {
        const std::string error = folder.parseError(buttonPackage(c.layers));
        EXPECT_NE(error.find(c.expected), std::string::npos) << c.layers << "\n  gave: " << error;
        EXPECT_NE(error.find("skin.xml"), std::string::npos) << error;
    }
    EXPECT_NE(folder.parseError(buttonPackage("", " objectpos=\"1,2,3\"")).find("objectpos"), std::string::npos);
    const std::string twice = folder.parseError(
        "<skinpackage><skinset id=\"a\">\n<fieldskin id=\"x\"/>\n<buttonskin id=\"x\"/></skinset></skinpackage>");
    EXPECT_NE(twice.find("line 3: an object of type 'buttonskin' with the id 'x'"), std::string::npos) << twice;
}

TEST(SkinParsing, StatesAndTransitionsFillTheTables)
{
    skintest::SkinFolder folder;
    folder.writeImage("n.png", {CColor(255, 0, 0)});
    const P<ISkin> skin = onlyButton(folder, "<animlayer file=\"n.png\" states=\" normal ,\thover\"/>"
                                             "<animlayer file=\"n.png\" states=\"*\" transitions=\"*-down\"/>"
                                             "<textlayer transitions=\"normal-*\"/>");
    ASSERT_TRUE(skin);
    const LayerList& all = skin->getAllLayers();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_FALSE(skin->hasObjectPos());
    EXPECT_EQ(skin->getObjectPos(), SkinMargins{});
    EXPECT_TRUE(skin->hasTextLayer());

    EXPECT_EQ(skin->getStateLayers(buttonNormal), (LayerList{all[0], all[1]}));
    EXPECT_EQ(skin->getStateLayers(buttonDown), (LayerList{all[1]}));
    // "*-down" binds every from state, down itself included.
    for (int from = 0; from < buttonStateCount; ++from) {
        const LayerList expected = from == buttonNormal ? LayerList{all[1], all[2]} : LayerList{all[1]};
        EXPECT_EQ(skin->getTransitionLayers(from, buttonDown), expected) << from;
    }
    EXPECT_EQ(skin->getTransitionLayers(buttonNormal, buttonHover), (LayerList{all[2]}));
    EXPECT_TRUE(skin->getTransitionLayers(buttonHover, buttonNormal).empty());
    // Without a transition, a change shows the new state's own layers.
    EXPECT_EQ(skin->getLayersForChange(buttonHover, buttonNormal), skin->getStateLayers(buttonNormal));
    // Layers without an order keep their position.
    EXPECT_EQ(all[0]->getOrder(), 0);
    EXPECT_EQ(all[2]->getOrder(), 2);
}

TEST(SkinParsing, PackageStructureOfEveryKind)
{
    skintest::SkinFolder folder;
    folder.writeImage("n.png", {CColor(255, 0, 0)});
    folder.writeXML(R"(<SkinPackage>
  <skininfo name="Tiny" version="1.1" author="Someone" image="preview.png"/>
  <skinset id="main" button="plain">
    <buttonskin id="plain" objectpos="4,2,4,2"><animlayer file="n.png" states="*"/></buttonskin>
    <fieldskin id="textfield"/>
    <checkboxskin id="checkbox" objectpos="24,0,0,0">
      <animlayer file="n.png" states="checked_normal" transitions="unchecked_normal-checking"/>
    </checkboxskin>
    <sliderbarskin id="sliderbar">
      <sliderareamargins left="6" right="6"/>
      <background><animlayer file="n.png" states="normal"/></background>
      <slider><animlayer file="n.png" states="normal,drag"><minsize width="12" height="-1"/></animlayer></slider>
    </sliderbarskin>
    <tabviewskin id="tabview">
      <tabarea placement="bottom" tabalign="center" tabids="first, other"><margins left="3"/></tabarea>
      <contentarea left="1" top="2" right="3" bottom="4"/>
      <tabskin id="first"><coremargins left="5"/><animlayer file="n.png" states="active_normal"/></tabskin>
      <tabskin id="other"><overlapmargins bottom="2"/></tabskin>
    </tabviewskin>
  </skinset>
</SkinPackage>)");
    const P<CSkinPackage> package = folder.load();
    EXPECT_EQ(package->getInfo()->getName().toStdString(), "Tiny");
    EXPECT_EQ(package->getInfo()->getImage().toStdString(), "preview.png");
    const P<ISkinSet> set = package->getSkinSet("main");
    ASSERT_TRUE(set);
    EXPECT_EQ(set->getDefaultSkinId("button").toStdString(), "plain");
    EXPECT_EQ(set->getDefaultSkinId("textfield").toStdString(), "textfield");
    EXPECT_EQ(set->getSkin("plain")->getObjectPos(), (SkinMargins{4, 2, 4, 2}));

    const auto* check = dynamic_cast<ICheckBoxSkin*>(set->getSkin("checkbox").get());
    ASSERT_TRUE(check);
    EXPECT_EQ(check->getFollowState(checking), checkedNormal);
    EXPECT_EQ(check->getFollowState(unchecking), uncheckedNormal);
    EXPECT_EQ(check->getTransitionLayers(uncheckedNormal, checking).size(), 1u);

    const auto* slider = dynamic_cast<ISliderBarSkin*>(set->getSkin("sliderbar").get());
    ASSERT_TRUE(slider);
    EXPECT_EQ(slider->getSliderAreaMargins(), (SkinMargins{6, 0, 6, 0}));
    EXPECT_EQ(slider->getStateLayers(sliderBarNormal).size(), 1u);
    EXPECT_EQ(slider->getSlider()->getStateLayers(sliderBarDrag).size(), 1u);
    EXPECT_TRUE(slider->getTickMark()->getAllLayers().empty());

    const auto* tabs = dynamic_cast<ITabViewSkin*>(set->getSkin("tabview").get());
    ASSERT_TRUE(tabs);
    EXPECT_EQ(tabs->getTabPlacement(), TabPlacement::bottom);
    EXPECT_EQ(tabs->getTabAlign(), TabAlign::center);
    EXPECT_EQ(tabs->getContentAreaMargins(), (SkinMargins{1, 2, 3, 4}));
    EXPECT_EQ(tabs->getTabSkin(0)->getCoreMargins().left, 5);
    EXPECT_EQ(tabs->getTabSkin(1)->getId().toStdString(), "other");
    EXPECT_EQ(tabs->getTabSkin(7)->getOverlapMargins().bottom, 2);
}

TEST(SkinParsing, ShippedDefaultSkinParses)
{
    const std::filesystem::path folder = std::filesystem::path(TB_SOURCE_DATA_DIR) / "skin" / "default";
    if (!std::filesystem::exists(folder / "skin.xml")) GTEST_SKIP() << "no default skin in " << folder;
    const P<CSkinPackage> package = fenn::make<CSkinPackage>(fenn::String::copyOf(folder.string()));
    ASSERT_FALSE(package->getSkinSetIds().empty());
    const P<ISkinSet> set = package->getSkinSet(package->getSkinSetIds().front());
    for (const char* kind : {"button", "textfield", "textarea", "checkbox", "selectfield", "sliderbar", "tabview"}) {
        EXPECT_TRUE(set->getSkin(set->getDefaultSkinId(kind))) << kind;
    }
}

}  // namespace
