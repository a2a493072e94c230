#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/layout/CTextGUISize.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CSelectField.h"
#include "gui/widgets/CSelectGroup.h"
#include "gui/widgets/CSliderBar.h"
#include "gui/widgets/CTabView.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"
#include "gui/widgets/WidgetRegistration.h"
#include "tests/gui/basic/BasicWidgetTests.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using basictest::addTo;
using basictest::makeBox;
using fenn::make;
using fenn::P;

// Every widget of the gallery, made through the window system as a layout
// file makes it, so that a type name giving the wrong class fails here.
class Gallery
{
public:
    Gallery() { registerBasicWidgets(m_system); }

    template <class T> P<T> create(const char* type, const char* text = "", bool enabled = true)
    {
        const P<CWindow> made = m_system.createWindow(type, nullptr);
        const P<T> window(dynamic_cast<T*>(made.get()));
        if (!window) throw std::runtime_error(std::string("wrong or no window for ") + type);
        window->setText(text);
        window->setEnabled(enabled);
        widgets.push_back(window);
        return window;
    }
    P<CTextField> heading(const char* text)
    {
        auto field = create<CTextField>("textfield", text);
        field->setFont(CStyle::get().boldFont);
        return field;
    }
    P<CCheckBox> checkBox(const char* text, bool checked, bool enabled = true)
    {
        auto box = create<CCheckBox>("checkbox", text, enabled);
        box->setChecked(checked);
        return box;
    }

    std::vector<P<CWindow>> widgets;

private:
    CWindowSystem m_system{"default"};
};

// A round play symbol for the image buttons.
P<CImage> playIcon()
{
    auto image = make<CImage>(CSize{24, 24});
    cairo_t* cr = cairo_create(image->getSurface());
    cairo_arc(cr, 12, 12, 11, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 0.15, 0.39, 0.92);
    cairo_fill(cr);
    cairo_move_to(cr, 9.5, 7);
    cairo_line_to(cr, 17.5, 12);
    cairo_line_to(cr, 9.5, 17);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_fill(cr);
    cairo_destroy(cr);
    image->markDirty();
    return image;
}

// A wave form on a grid, the kind of drawing canvases are for.
void drawWave(CPainter& painter, CSize size)
{
    const CStyle& style = CStyle::get();
    painter.fillRoundedRect({0, 0, size.width, size.height}, style.cornerRadius, style.panelBackground);
    painter.strokeRoundedRect({0, 0, size.width, size.height}, style.cornerRadius, style.border);
    for (int x = 20; x < size.width; x += 20) painter.drawLine({x, 1}, {x, size.height - 1}, style.gridLine);
    cairo_t* cr = painter.getCairo();
    for (int x = 2; x < size.width - 2; ++x) {
        const double value = std::sin(M_PI * x / size.width) * std::sin(x * 0.21) * std::cos(x * 0.03);
        cairo_line_to(cr, x, size.height / 2.0 * (1.0 - 0.85 * value));
    }
    cairo_set_source_rgb(cr, style.accent.red() / 255.0, style.accent.green() / 255.0, style.accent.blue() / 255.0);
    cairo_set_line_width(cr, 1.5);
    cairo_stroke(cr);
}

struct Shown
{
    P<CWindow> hovered;
    P<CWindow> slider;
    P<CWindow> tabs;
};

// Builds the gallery into the test frame; returns the image button to hover
// and the windows to focus.
Shown buildGallery(tbtest::GuiTestFrame& test, Gallery& gallery)
{
    const P<CFont> font = CStyle::get().font;
    auto row = makeBox(Orientation::horizontal, 24);
    test.add(row, {.horzGrow = 1, .vertGrow = 1});

    // A narrow column, so that the long label and the text area run short of room.
    auto choices = makeBox(Orientation::vertical);
    auto narrow = make<CGUISizeLimits>();
    narrow->addLimit(LimitKind::upper, SizeType::preferred, make<CTextGUISize>(font, "Disabled and checked", 0, 60),
                     Directions::width);
    choices->setSizeLimits(narrow);
    addTo(*row, choices, {.vertGrow = 1});
    addTo(*choices, gallery.heading("Choices"));
    addTo(*choices, gallery.checkBox("Unchecked", false));
    addTo(*choices, gallery.checkBox("Checked", true));
    addTo(*choices, gallery.checkBox("Disabled", false, false));
    addTo(*choices, gallery.checkBox("Disabled and checked", true, false));
    auto group = gallery.create<CSelectGroup>("selectgroup");
    addTo(*group, gallery.create<CSelectField>("selectfield", "MP3"));
    addTo(*group, gallery.create<CSelectField>("selectfield", "Ogg Vorbis"));
    addTo(*group, gallery.create<CSelectField>("selectfield", "FLAC (disabled)", false));
    group->setSelectedIndex(1);
    addTo(*choices, group);
    addTo(*choices, gallery.heading("Text"));
    auto right = gallery.create<CTextField>("textfield", "Right-aligned label");
    right->setTextAlign(TextAlign::right);
    addTo(*choices, right, {.horzGrow = 1});
    addTo(*choices, gallery.create<CTextField>("textfield", "A label far too long for its column is cut off"),
          {.horzGrow = 1});
    auto area = gallery.create<CTextArea>("textarea", "A text area wraps its text at its width and is as high as "
                                                      "the wrapped lines. This one is kept to three lines, so its "
                                                      "last line ends in an ellipsis.");
    auto threeLines = make<CGUISizeLimits>();
    for (const SizeType type : {SizeType::preferred, SizeType::max})
        threeLines->addLimit(LimitKind::upper, type, make<CTextGUISize>(font, "", 3), Directions::height);
    area->setSizeLimits(threeLines);
    addTo(*choices, area, {.horzGrow = 1});

    auto levels = makeBox(Orientation::vertical, 10);
    addTo(*row, levels, {.horzGrow = 1, .vertGrow = 1});
    addTo(*levels, gallery.heading("Progress"));
    const struct
    {
        int position;
        double factor;
        bool enabled;
    } bars[] = {{0, 0.4, true}, {35, 0.4, true}, {100, 0.4, true}, {60, 0.4, false}, {70, 0.8, true}};
    for (const auto& bar : bars) {
        auto progress = gallery.create<CProgressBar>("progressbar", "", bar.enabled);
        progress->setPosition(bar.position);
        progress->setBarHeightFactor(bar.factor);
        addTo(*levels, progress, {.horzGrow = 1});
    }
    addTo(*levels, gallery.heading("Sliders"));
    P<CWindow> focused;
    for (const int position : {40, 20, 70}) {
        auto slider = gallery.create<CSliderBar>("sliderbar", "", position != 70);
        slider->setStepSize(5);
        slider->setTickMarkDelta(position == 40 ? 10 : 0);
        slider->setBarHeightFactor(position == 20 ? 0.35 : CSliderBar::kDefaultBarHeightFactor);
        slider->setPosition(position);
        if (position == 20) focused = slider;
        addTo(*levels, slider, {.horzGrow = 1});
    }
    addTo(*levels, gallery.heading("Images"));
    auto images = makeBox(Orientation::horizontal, 6);
    const P<CImage> icon = playIcon();
    P<CWindow> hovered;
    for (int index = 0; index < 3; ++index) {
        auto button = gallery.create<CImageButton>("imagebutton", "", index != 2);
        button->setImage(icon);
        if (index == 1) hovered = button;
        addTo(*images, button);
    }
    auto display = gallery.create<CImageDisplay>("imagedisplay");
    display->setImage(basictest::solidImage({96, 64}, CColor{120, 180, 240}, CColor{70, 150, 90}));
    addTo(*images, display, {.horzGrow = 1});
    addTo(*levels, images, {.horzGrow = 1});

    auto drawings = makeBox(Orientation::vertical, 10);
    addTo(*row, drawings, {.horzGrow = 1, .vertGrow = 1});
    addTo(*drawings, gallery.heading("Canvas and tabs"));
    auto canvasRow = makeBox(Orientation::horizontal, 10);
    auto vertical = gallery.create<CSliderBar>("sliderbar");
    vertical->setOrientation(Orientation::vertical);
    vertical->setTickMarkDelta(25);
    vertical->setPosition(65);
    addTo(*canvasRow, vertical);
    auto canvas = gallery.create<CCanvas>("canvas");
    canvas->setDoubleBuffered(true);
    canvas->setPaintFunction(drawWave);
    addTo(*canvasRow, canvas, {.horzGrow = 1, .vertGrow = 1});
    addTo(*drawings, canvasRow, {.horzGrow = 1});
    auto tabs = gallery.create<CTabView>("tabview");
    auto general = makeBox(Orientation::vertical, 6);
    addTo(*general, gallery.checkBox("Show the start screen", true));
    addTo(*general, gallery.checkBox("Check for updates", false));
    addTo(*general, gallery.create<CButton>("button", "Save"));
    tabs->addPage("General", general);
    tabs->addPage("Formats", gallery.checkBox("Keep the source format", true));
    tabs->addPage("Advanced", make<CTextArea>("Nothing to see here."));
    addTo(*drawings, tabs, {.horzGrow = 1, .vertGrow = 1});
    return {hovered, focused, tabs};
}

TEST(BasicWidgets, GalleryOfEveryWidgetInSeveralStates)
{
    for (const double scale : {1.0, 2.0}) {
        tbtest::GuiTestFrame test(820, 560, scale);
        Gallery gallery;
        const Shown shown = buildGallery(test, gallery);
        test.render();
        test.render();
        // One image button under the pointer; a slider (or the tabs) focused
        // by the keyboard, with the focus ring.
        test.frame().injectMouseMove(test.centreOf(*shown.hovered));
        test.frame().setFocusWindow(nullptr);
        const auto focusReached = [&] {
            const CWindow* focus = test.frame().getFocusWindow();
            return focus && (scale == 1.0 ? focus == shown.slider.get() : focus->getParent() == shown.tabs.get());
        };
        for (int press = 0; press < 40 && !focusReached(); ++press) test.frame().injectKey({Key::tab}, true);
        ASSERT_TRUE(focusReached());
        test.render();
        // Every widget on show has room of its own inside the frame.
        const CRect frame = test.frame().getClientRect();
        for (const P<CWindow>& widget : gallery.widgets) {
            if (!widget->isShowing()) continue;
            const CRect rect = widget->toFrame(widget->getClientRect());
            EXPECT_FALSE(rect.isEmpty()) << typeid(*widget).name();
            EXPECT_EQ(rect.intersected(frame), rect) << typeid(*widget).name();
        }
        test.writePNG(scale == 1.0 ? "basic-widgets" : "basic-widgets@2x");
    }
}

}  // namespace
