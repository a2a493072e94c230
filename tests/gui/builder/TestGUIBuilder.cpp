#include <cairo.h>

#include <filesystem>

#include "foundation/TCast.h"
#include "gui/CStyle.h"
#include "gui/IWindowListener.h"
#include "gui/layout/CLayoutBase.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSliderBar.h"
#include "gui/widgets/CSplitPanel.h"
#include "gui/widgets/CTabView.h"
#include "gui/widgets/CTextField.h"
#include "tests/gui/builder/BuilderTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using fenn::String;
using tbtest::BuilderTest;

using GUIBuilder = BuilderTest;

std::vector<std::string> childIds(const CWindow& window)
{
    std::vector<std::string> ids;
    for (const auto& child : window.getChildren()) ids.push_back(child->getId().toStdString());
    return ids;
}

TEST_F(GUIBuilder, IncludesStandAnywhereNestAndAreParsedOnce)
{
    writeFile("parts/top.inc.xml", R"(<x>
        <frame id="fromInclude" layout="growvert"><include uri="deeper.inc.xml"/></frame>
    </x>)");
    writeFile("parts/deeper.inc.xml", R"(<x><checkbox id="deep" text="Deep"/></x>)");
    writeFile("parts/rows.inc.xml", R"(<x><textfield id="row" text="Row"/><include uri="deeper.inc.xml"/></x>)");
    load("main.xml", R"(<layouts>
        <include uri="parts/top.inc.xml"/>
        <frame id="main" layout="growvert">
            <button id="ok" text="OK"/>
            <include uri="parts/rows.inc.xml"/>
            <button id="cancel" text="Cancel"/>
        </frame>
    </layouts>)");
    EXPECT_EQ(m_builder->getDocumentCount(), 4);

    for (int round = 0; round < 2; ++round) {
        const auto main = fenn::TCast<CFrameWindow>(m_builder->build("main", nullptr, nullptr));
        ASSERT_TRUE(main);
        EXPECT_EQ(childIds(*main), (std::vector<std::string>{"ok", "row", "deep", "cancel"}));
        EXPECT_EQ(main->getLayout()->getItems().size(), 4u);
        // An id that only an included file has, with a nested include
        // resolved against the included file's folder.
        m_builder->build("fromInclude", nullptr, nullptr);
        ASSERT_TRUE(m_builder->getWindow("fromInclude"));
        EXPECT_TRUE(dynamic_cast<CCheckBox*>(m_builder->getWindow("deep").get()));
        // The tables hold the last build only.
        EXPECT_FALSE(m_builder->getWindow("ok"));
        // The second round builds from the cache alone.
        std::filesystem::remove_all(m_folder.path());
    }
    m_builder->clearDocuments();
    EXPECT_EQ(m_builder->getDocumentCount(), 0);
    EXPECT_FALSE(tbtest::errorOf<fenn::CError>([&] { m_builder->build("main", nullptr, nullptr); }).empty());
}

TEST_F(GUIBuilder, ComponentsGetTheirAttributesAndParts)
{
    load("parts.xml", R"(<Layouts>
        <FRAME id="frame" layout="GrowVert" text="Title" closeaction="exit">
            <BUTTON id="go" text="Go" textalign="Center" backcolor="#102030" textcolor="#ffffff"
                    tooltiptext="Tip" details="3" horzgrow="2" vertalign="50" skin="round"/>
            <sliderbar id="slider" orient="vert" maxpos="50" stepsize="5" tickmarkdelta="10"/>
            <droplist id="list"><entry text="One"/><Entry text="Two" selected="true"/></droplist>
            <tabview id="tabs">
                <page id="first" text="First" layout="growvert"><textfield id="label" text="L"/></page>
                <page id="second" text="Second" selected="true"/>
            </tabview>
            <splitpanel id="split" orient="vert">
                <subpanel id="top" text="Top pane" backcolor="#ff0000"/><subpanel id="bottom"/>
            </splitpanel>
            <scrollpanel id="scroll" scroll="vert" layout="growvert"><editfield id="inside" readonly="true"/></scrollpanel>
            <scrollpanel id="bare"><textarea id="bareText" text="Scrolled"/></scrollpanel>
        </FRAME>
    </Layouts>)");
    const auto frame = fenn::TCast<CFrameWindow>(m_builder->build("frame", nullptr, nullptr));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->getText(), "Title");
    EXPECT_EQ(frame->getCloseAction(), CloseAction::exit);

    const P<CButton> go = m_builder->getButton("go");
    ASSERT_TRUE(go);
    EXPECT_EQ(go->getText(), "Go");
    EXPECT_EQ(go->getTextAlign(), TextAlign::center);
    EXPECT_EQ(go->getBackColor(), CColor(0x10, 0x20, 0x30));
    EXPECT_EQ(go->getTextColor(), CColor(255, 255, 255));
    EXPECT_EQ(go->getToolTipText(), "Tip");
    EXPECT_EQ(go->getDetails(), 3);
    // Every attribute reaches the window system as a parameter.
    EXPECT_EQ(go->getProperties().getString("skin", ""), "round");
    const CLayoutParams* params = dynamic_cast<CLayoutBase&>(*frame->getLayout()).getParams(go.get());
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(params->horzGrow, 2);
    EXPECT_EQ(params->vertAlign, 50);

    auto* slider = dynamic_cast<CSliderBar*>(m_builder->getWindow("slider").get());
    ASSERT_NE(slider, nullptr);
    EXPECT_EQ(slider->getOrientation(), Orientation::vertical);
    EXPECT_EQ(slider->getMaxPosition(), 50);
    EXPECT_EQ(slider->getStepSize(), 5);
    EXPECT_EQ(slider->getTickMarkDelta(), 10);

    auto* list = dynamic_cast<CDropList*>(m_builder->getWindow("list").get());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->getEntryCount(), 2);
    EXPECT_EQ(list->getSelectedIndex(), 1);

    auto* tabs = dynamic_cast<CTabView*>(m_builder->getWindow("tabs").get());
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->getPageCount(), 2);
    EXPECT_EQ(tabs->getPageText(0), "First");
    EXPECT_EQ(tabs->getSelectedIndex(), 1);
    EXPECT_EQ(tabs->getPage(0), m_builder->getWindow("first").get());
    EXPECT_EQ(m_builder->getWindow("label")->getParent(), tabs->getPage(0));

    auto* split = dynamic_cast<CSplitPanel*>(m_builder->getWindow("split").get());
    ASSERT_NE(split, nullptr);
    EXPECT_EQ(split->getOrientation(), Orientation::vertical);
    EXPECT_EQ(split->getPane(0), m_builder->getWindow("top").get());
    EXPECT_EQ(split->getPane(1), m_builder->getWindow("bottom").get());
    EXPECT_EQ(split->getPane(0)->getBackColor(), CColor(255, 0, 0));

    // The scroll panel's children go into a content window of its own.
    auto* scroll = dynamic_cast<CScrollPanel*>(m_builder->getWindow("scroll").get());
    ASSERT_NE(scroll, nullptr);
    EXPECT_EQ(scroll->getScrollDirections(), ScrollDirections::vertical);
    ASSERT_NE(scroll->getContent(), nullptr);
    EXPECT_EQ(m_builder->getWindow("inside")->getParent(), scroll->getContent());
    // Without a layout too, so what it holds scrolls.
    auto* bare = dynamic_cast<CScrollPanel*>(m_builder->getWindow("bare").get());
    ASSERT_NE(bare, nullptr);
    ASSERT_NE(bare->getContent(), nullptr);
    EXPECT_EQ(m_builder->getWindow("bareText")->getParent(), bare->getContent());
    EXPECT_EQ(m_builder->getWindow("top")->getText(), "Top pane");
    EXPECT_TRUE(dynamic_cast<CEditField&>(*m_builder->getWindow("inside")).isReadOnly());
}

TEST_F(GUIBuilder, FrameDecorationsAndWidgetLooksComeFromAttributes)
{
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 9, 24);
    std::filesystem::create_directories(m_folder / "images");
    ASSERT_EQ(cairo_surface_write_to_png(surface, (m_folder / "images/nine.png").c_str()), CAIRO_STATUS_SUCCESS);
    cairo_surface_destroy(surface);
    load("looks.xml", R"(<l>
        <frame id="plain"/>
        <frame id="decorated" style="Blank" resizable="false" opacity="0.6" image="images/nine.png" layout="growvert">
            <cellview id="cells" linehighlightsize="2" LineHighlightColor="#ff8000" selevenbackcolor="#102030"
                      seloddbackcolor="#203040" seleventextcolor="#304050" seloddtextcolor="#405060"
                      headerborderlightcolor="#fefefe" headerborderdarkcolor="#0a0a0a"
                      headersortlightcolor="#ffee00" headersortdarkcolor="#aa5500"/>
            <splitpanel id="split" backimage="images/nine.png" backscaletop="6" backscalebottom="7"
                        centerimage="images/nine.png"/>
        </frame>
        <modalframe id="wide" style="normal" opacity="1"/>
        <frame id="clear" opacity="1.5"/>
        <splitpanel id="badmargin" backimage="images/nine.png" backscaleleft="-2"/>
    </l>)");
    const auto plain = fenn::TCast<CFrameWindow>(m_builder->build("plain", nullptr, nullptr));
    EXPECT_FALSE(plain->isBlank());
    EXPECT_TRUE(plain->isResizable());
    EXPECT_EQ(plain->getOpacity(), 1.0);
    EXPECT_FALSE(plain->getIcon());

    const auto frame = fenn::TCast<CFrameWindow>(m_builder->build("decorated", nullptr, nullptr));
    EXPECT_TRUE(frame->isBlank());
    EXPECT_FALSE(frame->isResizable());
    EXPECT_DOUBLE_EQ(frame->getOpacity(), 0.6);
    ASSERT_TRUE(frame->getIcon());
    EXPECT_EQ(frame->getIcon()->getSize(), (CSize{9, 24}));

    auto* cells = dynamic_cast<CCellView*>(m_builder->getWindow("cells").get());
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(cells->getLineHighlightSize(), 2);
    const std::pair<CellViewColor, CColor> colors[] = {
        {CellViewColor::lineHighlight, CColor(0xff, 0x80, 0x00)},
        {CellViewColor::selectedEvenBack, CColor(0x10, 0x20, 0x30)},
        {CellViewColor::selectedOddBack, CColor(0x20, 0x30, 0x40)},
        {CellViewColor::selectedEvenText, CColor(0x30, 0x40, 0x50)},
        {CellViewColor::selectedOddText, CColor(0x40, 0x50, 0x60)},
        {CellViewColor::headerBorderLight, CColor(0xfe, 0xfe, 0xfe)},
        {CellViewColor::headerBorderDark, CColor(0x0a, 0x0a, 0x0a)},
        {CellViewColor::headerSortLight, CColor(0xff, 0xee, 0x00)},
        {CellViewColor::headerSortDark, CColor(0xaa, 0x55, 0x00)},
    };
    for (const auto& [which, color] : colors) EXPECT_EQ(cells->getColor(which), color) << static_cast<int>(which);

    auto* split = dynamic_cast<CSplitPanel*>(m_builder->getWindow("split").get());
    ASSERT_NE(split, nullptr);
    ASSERT_TRUE(split->getBackImage());
    EXPECT_EQ(split->getBackImage()->getMargins(), (fenn::gui::CNinePatch::Margins{0, 6, 0, 7}));
    // One decoded image serves the icon and both split panel images.
    EXPECT_EQ(split->getBackImage()->getImage(), frame->getIcon());

    EXPECT_FALSE(fenn::TCast<CFrameWindow>(m_builder->build("wide", nullptr, nullptr))->isBlank());
    EXPECT_NE(tbtest::errorOf<fenn::CParseError>([&] {
                  m_builder->build("clear", nullptr, nullptr);
              }).find("'opacity' has the invalid value '1.5'"),
              std::string::npos);
    EXPECT_NE(tbtest::errorOf<fenn::CParseError>([&] {
                  m_builder->build("badmargin", nullptr, nullptr);
              }).find("'backscaleleft'"),
              std::string::npos);
}

TEST_F(GUIBuilder, TextsComeFromTheLocalizerWithLineBreaksMadeUnix)
{
    fenn::setStringLocalizer(make<tbtest::TableLocalizer>(std::map<std::string, std::string>{
        {"app.title", "Translated"}, {"app.lines", "one\r\ntwo"}, {"app.tip", "Translated tip"}}));
    load("texts.xml", R"(<l>
        <frame id="f" layout="growvert">
            <textfield id="known" textid="app.title" text="Default"/>
            <textfield id="unknown" textid="app.missing" text="Default&#13;&#10;text"/>
            <textfield id="plain" text="Plain" tooltiptextid="app.tip" tooltiptext="Tip"/>
            <textarea id="lines" textid="app.lines"/>
        </frame>
    </l>)");
    m_builder->build("f", nullptr, nullptr);
    EXPECT_EQ(m_builder->getWindow("known")->getText(), "Translated");
    EXPECT_EQ(m_builder->getWindow("unknown")->getText(), "Default\ntext");
    EXPECT_EQ(m_builder->getWindow("plain")->getText(), "Plain");
    EXPECT_EQ(m_builder->getWindow("plain")->getToolTipText(), "Translated tip");
    EXPECT_EQ(m_builder->getWindow("lines")->getText(), "one\ntwo");
}

TEST_F(GUIBuilder, SizeLinksGiveTheLargerSizeToEveryMember)
{
    load("links.xml", R"(<l>
        <layoutgroup id="rows" layout="growvert">
            <layoutgroup layout="growhorz">
                <button id="short" text="A" sizelink="buttons"/>
                <button id="long" text="A much longer label" sizelink="buttons"/>
            </layoutgroup>
            <textfield id="wide" text="Width linked to the long label only" widthlink="label"/>
            <textfield id="narrow" text="x" widthlink="label"/>
        </layoutgroup>
    </l>)");
    tbtest::GuiTestFrame frame(600, 300);
    m_builder->build("rows", &frame.frame(), nullptr);
    frame.render();
    const CRect shortButton = m_builder->getWindow("short")->getBounds();
    const CRect longButton = m_builder->getWindow("long")->getBounds();
    EXPECT_EQ(shortButton.size(), longButton.size());
    EXPECT_EQ(longButton.width, m_builder->getWindow("long")->getSize(SizeType::preferred).width);
    EXPECT_GT(longButton.width, m_builder->getWindow("short")->getSize(SizeType::preferred).width);
    EXPECT_EQ(m_builder->getSizeLink("buttons")->getMemberCount(), 2);
    // A width link leaves the heights alone.
    const CRect wide = m_builder->getWindow("wide")->getBounds();
    const CRect narrow = m_builder->getWindow("narrow")->getBounds();
    EXPECT_EQ(wide.width, narrow.width);
    EXPECT_EQ(narrow.height, m_builder->getWindow("narrow")->getSize(SizeType::preferred).height);
}

TEST_F(GUIBuilder, SizeLimitsRaiseAndLowerTheirSizeType)
{
    load("limits.xml", R"(<l>
        <button id="plain" text="OK"/>
        <button id="lowerMin" text="OK">
            <sizelimit limit="lower" sizetype="min" text="A text wider than OK" widthadd="10"/>
        </button>
        <button id="upperPreferred" text="A rather long button label">
            <sizelimit limit="Upper" sizetype="preferred" text="Short"/>
        </button>
        <textarea id="lines" text="x">
            <sizelimit limit="lower" sizetype="preferred" heightchars="4" heightadd="6"/>
        </textarea>
    </l>)");
    const auto sizeOf = [&](const char* id, SizeType type) {
        return fenn::TCast<CWindow>(m_builder->build(id, nullptr, nullptr))->getSize(type);
    };
    const CSize textSize = CStyle::get().font->measureText("A text wider than OK");
    EXPECT_EQ(sizeOf("lowerMin", SizeType::min).width, textSize.width + 10);
    EXPECT_LT(sizeOf("plain", SizeType::min).width, textSize.width);
    EXPECT_EQ(sizeOf("upperPreferred", SizeType::preferred).width, CStyle::get().font->measureText("Short").width);
    EXPECT_EQ(sizeOf("lines", SizeType::preferred).height, 4 * CStyle::get().font->getLineHeight() + 6);
}

class ClickCounter : public fenn::CObject, public virtual IWindowListener
{
public:
    void windowNotified(CWindow&, const CNotification& notification) override
    {
        if (notification.kind == Notification::clicked) ++clicks;
    }
    int clicks = 0;
};

TEST_F(GUIBuilder, BuiltDialogIsLaidOutAndTakesInput)
{
    load("dialog.xml", R"(<dialogs>
        <paddedlayoutgroup id="dialog" innerid="inner" width="20" height="14" layout="growvert" horzgrow="1" vertgrow="1">
            <textfield text="Name"/>
            <editfield id="name" horzgrow="1"/>
            <space height="16"/>
            <layoutgroup layout="growhorz" horzalign="100">
                <button id="ok" text="OK" sizelink="buttons"/>
                <space width="8"/>
                <button id="cancel" text="Cancel" sizelink="buttons"/>
            </layoutgroup>
        </paddedlayoutgroup>
    </dialogs>)");
    tbtest::GuiTestFrame frame(400, 200);
    const P<ILayoutItem> dialog = m_builder->build("dialog", &frame.frame(), nullptr);
    frame.render();
    EXPECT_EQ(m_builder->getLayoutItem("dialog"), dialog);
    ASSERT_TRUE(m_builder->getLayoutItem("inner"));
    const CRect outer = dialog->getBounds();
    const CRect inner = m_builder->getLayoutItem("inner")->getBounds();
    EXPECT_EQ(inner.x - outer.x, 20);
    EXPECT_EQ(inner.y - outer.y, 14);
    EXPECT_EQ(outer.right() - inner.right(), 20);

    const P<CButton> ok = m_builder->getButton("ok");
    const P<CButton> cancel = m_builder->getButton("cancel");
    ASSERT_TRUE(ok && cancel);
    // The buttons sit at the right, eight pixels apart, the same size.
    EXPECT_EQ(cancel->getBounds().right(), inner.right());
    EXPECT_EQ(cancel->getBounds().x - ok->getBounds().right(), 8);
    EXPECT_EQ(ok->getBounds().size(), cancel->getBounds().size());

    auto* name = dynamic_cast<CEditField*>(m_builder->getWindow("name").get());
    ASSERT_NE(name, nullptr);
    frame.frame().injectClick(frame.centreOf(*name));
    frame.frame().injectTyping("Quorrel");
    EXPECT_EQ(name->getText(), "Quorrel");

    auto counter = make<ClickCounter>();
    ok->addListener(counter.get());
    frame.frame().injectClick(frame.centreOf(*ok));
    frame.frame().injectClick(frame.centreOf(*cancel));
    EXPECT_EQ(counter->clicks, 1);
    ok->removeListener(counter.get());
}

}  // namespace

namespace {

// The alpha of the frame's buffer at a device pixel.
int bufferAlpha(fenn::gui::CFrameWindow& frame, int x, int y)
{
    cairo_surface_t* buffer = frame.getBuffer();
    cairo_surface_flush(buffer);
    const unsigned char* row = cairo_image_surface_get_data(buffer) + y * cairo_image_surface_get_stride(buffer);
    return static_cast<int>(reinterpret_cast<const std::uint32_t*>(row)[x] >> 24);
}

TEST_F(GUIBuilder, AShapeLeavesThePixelsOutsideItTransparent)
{
    // 20 by 20 pixels: the left half opaque, the right half clear.
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 20, 20);
    cairo_t* cr = cairo_create(surface);
    cairo_rectangle(cr, 0, 0, 10, 20);
    cairo_fill(cr);
    cairo_destroy(cr);
    std::filesystem::create_directories(m_folder / "images");
    ASSERT_EQ(cairo_surface_write_to_png(surface, (m_folder / "images/shape.png").c_str()), CAIRO_STATUS_SUCCESS);
    cairo_surface_destroy(surface);
    load("shaped.xml", R"(<l>
        <frame id="fixed"><shape image="images/shape.png" alphathreshold="100"/></frame>
        <modalframe id="adapted"><shape image="images/shape.png" adapttowindowsize="true">
            <scaleMargins left="2" right="2"/></shape></modalframe>
    </l>)");
    const auto fixed = fenn::TCast<CFrameWindow>(m_builder->build("fixed", nullptr, nullptr));
    fixed->setBounds({0, 0, 40, 20});
    fixed->updateAndPaint();
    EXPECT_EQ(bufferAlpha(*fixed, 5, 5), 255);
    EXPECT_EQ(bufferAlpha(*fixed, 15, 5), 0);
    // Beyond the image there is no shape either.
    EXPECT_EQ(bufferAlpha(*fixed, 30, 5), 0);
    // Stretched over the frame, the opaque half covers the frame's left half.
    const auto adapted = fenn::TCast<CFrameWindow>(m_builder->build("adapted", nullptr, nullptr));
    adapted->setBounds({0, 0, 40, 20});
    adapted->updateAndPaint();
    EXPECT_EQ(bufferAlpha(*adapted, 15, 5), 255);
    EXPECT_EQ(bufferAlpha(*adapted, 25, 5), 0);
    EXPECT_EQ(adapted->getShape().marginLeft, 2);
}

}  // namespace
