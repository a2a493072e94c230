#include <gtest/gtest.h>

#include <cairo.h>

#include <cstdint>
#include <filesystem>
#include <functional>

#include "gui/CPainter.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/skin/CCoreButton.h"
#include "gui/skin/CCoreCheckBox.h"
#include "gui/skin/CCoreSelectField.h"
#include "gui/skin/CCoreSliderBar.h"
#include "gui/skin/CCoreTabView.h"
#include "gui/skin/CCoreTextField.h"
#include "gui/widgets/CSelectGroup.h"
#include "tests/gui/skin/SkinTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using namespace fenn::gui::skin;
using fenn::make;
using fenn::P;
using fenn::String;
using namespace skintest;

// Icons named by a window property: relative to the package, absolute, as
// a file URI, the @2x twin in a scaled frame, and a change of the property
// showing at once.
class SkinPropertyImages : public SkinSetTest
{
};

TEST_F(SkinPropertyImages, ResolveAgainstThePackageAndFollowTheProperty)
{
    const StartedPackages packages;
    loadSet(R"(<skinpackage><skinset id="main">
      <buttonskin id="tile"><animlayer uriprop="icon" states="*"><minsize width="40" height="40"/></animlayer></buttonskin>
    </skinset></skinpackage>)",
            {{"icons/red.png", {red}},
             {"icons/red@2x.png", {yellow}, 16, 16},
             {"other/blue.png", {blue}},
             {"other/green.png", {green}}});

    for (const double scale : {1.0, 2.0}) {
        tbtest::GuiTestFrame test(200, 100, scale);
        auto tile = make<CCoreButton>(&test.frame(), skin<IButtonSkin>("tile"));
        tile->setProperty("icon", "icons/red.png");
        test.add(tile);
        test.render();
        const CPoint centre = test.centreOf(*tile);
        const auto colour = [&] {
            test.render();
            return test.pixel(static_cast<int>(centre.x * scale), static_cast<int>(centre.y * scale));
        };
        EXPECT_EQ(colour(), scale == 1.0 ? red : yellow) << scale;
        tile->setProperty("icon", String::copyOf(folder.path() + "/other/blue.png"));
        EXPECT_EQ(colour(), blue) << scale;
        tile->setProperty("icon", fenn::CURI::fromPath(String::copyOf(folder.path() + "/other/green.png")).toString());
        EXPECT_EQ(colour(), green) << scale;
        // A name that cannot be read leaves the layer empty, not the window broken.
        tile->setProperty("icon", "icons/missing.png");
        EXPECT_NE(colour(), green) << scale;
    }
}

// A window showing a copy of another frame's picture, at that frame's scale.
class Snapshot : public CWindow
{
public:
    Snapshot(cairo_surface_t* picture, CSize size, double scale)
        : m_picture(cairo_surface_reference(picture)), m_size(size), m_scale(scale)
    {
    }
    ~Snapshot() override { cairo_surface_destroy(m_picture); }

    CSize computeSize(SizeType) override { return m_size; }
    void paint(CPainter& painter) override
    {
        cairo_t* cr = painter.getCairo();
        cairo_save(cr);
        cairo_scale(cr, 1.0 / m_scale, 1.0 / m_scale);
        cairo_set_source_surface(cr, m_picture, 0, 0);
        cairo_paint(cr);
        cairo_restore(cr);
    }

private:
    cairo_surface_t* m_picture;
    CSize m_size;
    double m_scale;
};

// Plays every change of the core windows in a tree to its end.
void settle(CWindow& window, std::int64_t now)
{
    std::vector<CCoreWindow*> cores;
    if (auto* button = dynamic_cast<CCoreButton*>(&window)) cores.push_back(&button->getCore());
    if (auto* box = dynamic_cast<CCoreCheckBox*>(&window)) cores.push_back(&box->getCore());
    if (auto* choice = dynamic_cast<CCoreSelectField*>(&window)) cores.push_back(&choice->getCore());
    if (auto* slider = dynamic_cast<CCoreSliderBar*>(&window)) {
        for (CCoreWindow* part : {&slider->getCore(), &slider->getStaticFiller(), &slider->getScalingFiller(),
                                  &slider->getSlider(), &slider->getTickMark()}) {
            cores.push_back(part);
        }
    }
    if (auto* tabs = dynamic_cast<CCoreTabView*>(&window)) {
        cores.push_back(&tabs->getCore());
        for (int index = 0; tabs->getTabCore(index); ++index) cores.push_back(tabs->getTabCore(index));
    }
    for (CCoreWindow* core : cores) core->update(now);
    for (const P<CWindow>& child : window.getChildren()) settle(*child, now);
}

// One widget in one state: made in a frame of its own (each has its own
// pointer), then shown in the picture.
struct Cell
{
    int width;
    int height;
    std::function<P<CWindow>(CWindow& frame)> make;
    std::function<void(tbtest::GuiTestFrame&, CWindow&)> act = nullptr;
    CLayoutParams params = {};
};

class DefaultSkinPicture : public SkinSetTest
{
protected:
    void SetUp() override
    {
        loadPackage((std::filesystem::path(TB_SOURCE_DATA_DIR) / "skin" / "default").string(), "default");
    }

    P<CWindow> snapshot(const Cell& cell, double scale)
    {
        tbtest::GuiTestFrame test(cell.width, cell.height, scale);
        test.frame().setLayoutMargins(6, 6, 6, 6);
        P<CWindow> window = cell.make(test.frame());
        test.add(window, cell.params);
        test.render();
        if (cell.act) cell.act(test, *window);
        test.render();
        // Hover fades and the like show their end, not their first frame.
        clock.set(clock.now() + 1000);
        settle(test.frame(), clock.now());
        test.render();
        return make<Snapshot>(test.frame().getBuffer(), CSize{cell.width, cell.height}, scale);
    }

    void writePicture(const std::vector<std::vector<Cell>>& rows, double scale, const std::string& name)
    {
        int width = 0;
        int height = 0;
        for (const std::vector<Cell>& row : rows) {
            int rowWidth = 0;
            int rowHeight = 0;
            for (const Cell& cell : row) {
                rowWidth += cell.width;
                rowHeight = std::max(rowHeight, cell.height);
            }
            width = std::max(width, rowWidth);
            height += rowHeight;
        }
        tbtest::GuiTestFrame picture(width, height, scale);
        picture.frame().setLayoutMargins(0, 0, 0, 0);
        dynamic_cast<CGrowLayout&>(*picture.frame().getLayout()).setSpacing(0);
        for (const std::vector<Cell>& row : rows) {
            auto line = make<CWindow>();
            auto layout = make<CGrowLayout>(Orientation::horizontal);
            line->setLayout(layout);
            for (const Cell& cell : row) {
                const P<CWindow> shot = snapshot(cell, scale);
                line->addChild(shot);
                layout->addItem(shot, {});
            }
            picture.add(line);
        }
        picture.render();
        picture.writePNG(name);
    }
};

void hover(tbtest::GuiTestFrame& test, CWindow& window)
{
    test.frame().injectMouseMove(test.centreOf(window));
}

void press(tbtest::GuiTestFrame& test, CWindow& window)
{
    hover(test, window);
    test.frame().injectMouseButton(test.centreOf(window), MouseButton::left, true);
}

TEST_F(DefaultSkinPicture, EveryWidgetInItsStates)
{
    const StartedPackages packages;
    const auto button = [&](const char* text, bool enabled = true) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreButton>(&frame, skin<IButtonSkin>("button"));
            window->setText(text);
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto tile = [&](const char* text, const char* icon, bool enabled = true) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreButton>(&frame, skin<IButtonSkin>("startbutton"));
            window->setText(text);
            window->setProperty("icon", icon);
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto field = [&](const char* text, bool enabled) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreTextField>(&frame, skin<IFieldSkin>("framedfield"));
            window->setText(text);
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto area = [&](CWindow& frame) {
        auto window = make<CCoreTextArea>(&frame, skin<IFieldSkin>("framedarea"));
        window->setText("A text area wraps its text inside the skin's margins, line after line.");
        return P<CWindow>(window);
    };
    const auto checkBox = [&](const char* text, bool checked, bool enabled = true) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreCheckBox>(&frame, skin<ICheckBoxSkin>("checkbox"));
            window->setText(text);
            window->setChecked(checked);
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto group = [&](bool enabled) {
        return [=, this](CWindow& frame) {
            auto window = make<CSelectGroup>();
            frame.addChild(window);
            for (const char* text : {"MP3", "Ogg Vorbis", "FLAC"}) {
                auto choice = make<CCoreSelectField>(window.get(), skin<ISelectFieldSkin>("selectfield"));
                choice->setText(text);
                window->addChild(choice);
                window->getLayout()->addItem(choice, {});
            }
            window->setSelectedIndex(1);
            window->setEnabled(enabled);
            frame.removeChild(window.get());
            return P<CWindow>(window);
        };
    };
    const auto slider = [&](bool enabled, Orientation orientation = Orientation::horizontal) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreSliderBar>(&frame, skin<ISliderBarSkin>("sliderbar"), orientation);
            window->setTickMarkDelta(10);
            window->setPosition(30);
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto tabs = [&](bool enabled) {
        return [=, this](CWindow& frame) {
            auto window = make<CCoreTabView>(&frame, skin<ITabViewSkin>("tabview"));
            for (const char* text : {"General", "Tags", "Output"}) {
                auto page = make<CWindow>();
                window->addPage(text, page);
            }
            window->setEnabled(enabled);
            return P<CWindow>(window);
        };
    };
    const auto onThumb = [](tbtest::GuiTestFrame& test, CWindow& window) {
        const CRect thumb = dynamic_cast<CCoreSliderBar&>(window).getThumbRect();
        const CRect bounds = window.getBounds();
        test.frame().injectMouseMove({bounds.x + thumb.x + thumb.width / 2, bounds.y + thumb.y + thumb.height / 2});
    };
    const auto dragThumb = [&](tbtest::GuiTestFrame& test, CWindow& window) {
        onThumb(test, window);
        const CRect thumb =
            dynamic_cast<CCoreSliderBar&>(window).getThumbRect().translated(window.getBounds().x, window.getBounds().y);
        test.frame().injectMouseButton({thumb.x + thumb.width / 2, thumb.y + thumb.height / 2}, MouseButton::left,
                                       true);
    };
    const auto overSecondTab = [](tbtest::GuiTestFrame& test, CWindow& window) {
        const CRect tab = dynamic_cast<CCoreTabView&>(window).getTabRect(1);
        test.frame().injectMouseMove(
            {window.getBounds().x + tab.x + tab.width / 2, window.getBounds().y + tab.y + tab.height / 2});
    };
    const CLayoutParams fill{1, 1};
    const std::vector<std::vector<Cell>> rows = {
        {{130, 50, button("Normal")},
         {130, 50, button("Hover"), hover},
         {130, 50, button("Pressed"), press},
         {130, 50, button("Disabled", false)}},
        {{180, 46, field("Text field", true), nullptr, fill},
         {180, 46, field("Disabled field", false), nullptr, fill},
         {300, 80, area, nullptr, fill}},
        {{130, 36, checkBox("Unchecked", false)},
         {130, 36, checkBox("Checked", true)},
         {130, 36, checkBox("Hover", false), hover},
         {130, 36, checkBox("Hover", true), hover},
         {130, 36, checkBox("Disabled", true, false)},
         {130, 36, checkBox("Disabled", false, false)}},
        {{150, 90, group(true)}, {150, 90, group(false)}, {56, 90, slider(true, Orientation::vertical), nullptr, fill}},
        {{190, 50, slider(true), nullptr, fill},
         {190, 50, slider(true), onThumb, fill},
         {190, 50, slider(true), dragThumb, fill},
         {190, 50, slider(false), nullptr, fill}},
        {{340, 130, tabs(true), overSecondTab, fill}, {340, 130, tabs(false), nullptr, fill}},
        {{260, 96, tile("Rip a CD", "images/start/rip.png")},
         {260, 96, tile("Convert", "images/start/convert.png"), hover},
         {260, 96, tile("Record", "images/start/record.png"), press},
         {260, 96, tile("Burn", "images/start/burn.png", false)}},
    };
    writePicture(rows, 1.0, "skin-default-widgets");
    writePicture(rows, 2.0, "skin-default-widgets@2x");
}

}  // namespace
