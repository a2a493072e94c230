// A picture of the list widgets in their states, for the eye: a focused
// cell view with a multiple selection, a sort mark, icons and buttons, an
// unfocused one with grid lines, a scrolled panel with both bars, all in
// split panels.
#include <cairo.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gui/image/CImage.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSplitPanel.h"
#include "tests/gui/lists/ListTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;

// A round coloured icon.
P<IImage> dot(double red, double green, double blue)
{
    auto image = make<CImage>(CSize{32, 32});
    cairo_t* cr = cairo_create(image->getSurface());
    cairo_arc(cr, 16, 16, 13, 0, 2 * 3.14159265);
    cairo_set_source_rgb(cr, red, green, blue);
    cairo_fill(cr);
    cairo_destroy(cr);
    cairo_surface_mark_dirty(image->getSurface());
    return image;
}

// The numbered rows with an icon before each title.
class IconModel : public liststest::NumberedModel
{
public:
    IconModel() : NumberedModel(2000), m_icons{dot(0.6, 0.4, 0.9), dot(0.95, 0.6, 0.2), dot(0.2, 0.72, 0.45)} {}
    P<IImage> getCellImage(int row, int column) const override
    {
        return column == 0 ? m_icons[static_cast<std::size_t>(row % 3)] : nullptr;
    }

private:
    std::vector<P<IImage>> m_icons;
};

void writeGallery(double scale, const std::string& name)
{
    tbtest::GuiTestFrame test(960, 560, scale);
    auto main = make<CCellView>();
    main->addColumn("Title", 190);
    main->addColumn("Artist", 130);
    main->addColumn("Length", 80);
    main->setColumnAlign(2, TextAlign::right);
    main->addColumn("", 80, CellKind::button);
    main->setModel(make<IconModel>());
    main->setSelectionMode(SelectionMode::multiple);
    main->setColumnComparator(1, [](int a, int b) { return a % 7 < b % 7; });

    auto second = make<CCellView>();
    second->addColumn("Name", 150);
    second->addColumn("Artist", 110);
    second->setModel(make<liststest::NumberedModel>(40));
    second->setGridLines(true, true);

    auto content = make<CWindow>();
    auto layout = make<CGrowLayout>(Orientation::vertical);
    layout->setSpacing(8);
    layout->setMargins(10, 10, 10, 10);
    for (int i = 0; i < 14; ++i) {
        auto button = make<CButton>(fenn::String("Button ") + fenn::fromInt(i) +
                                    " with a label far too long for the width of this panel");
        if (i == 2) button->setKind(ButtonKind::primary);
        content->addChild(button);
        layout->addItem(button, {.horzGrow = 1});
    }
    content->setLayout(layout);
    auto panel = make<CScrollPanel>();
    panel->setContent(content);

    auto right = make<CSplitPanel>(Orientation::vertical);
    right->setPanes(panel, second);
    right->setDividerPosition(250);
    auto outer = make<CSplitPanel>(Orientation::horizontal);
    outer->setPanes(main, right);
    outer->setDividerPosition(560);
    test.add(outer, {.horzGrow = 1, .vertGrow = 1});
    test.render();

    main->setFocus();
    main->sortBy(1, SortOrder::ascending);
    main->select(2);
    main->select(4, SelectAction::extend);
    main->select(7, SelectAction::toggle);
    second->select(3);
    panel->setScrollPosition({60, 40});
    test.render();
    // The pointer rests on the panel's vertical thumb and on a button cell.
    const CRect thumb = panel->toFrame(panel->getBar(Orientation::vertical).getThumbRect());
    test.frame().injectMouseMove({thumb.x + thumb.width / 2, thumb.y + thumb.height / 2});
    test.render();
    const std::string path = test.writePNG(name);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_TRUE(panel->getBar(Orientation::vertical).isHovered());
}

TEST(ListGallery, WritesThePictureOfTheListWidgetsAtScaleOneAndTwo)
{
    writeGallery(1.0, "lists-widgets");
    writeGallery(2.0, "lists-widgets@2x");
}

}  // namespace
