#include "tests/gui/gallery/Gallery.h"

#include <cairo.h>

#include <cmath>

#include "foundation/CError.h"
#include "foundation/TCast.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/image/CImage.h"
#include "gui/skin/CSkinManager.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CMenuBar.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CSelectField.h"
#include "gui/widgets/CSelectGroup.h"
#include "gui/widgets/CSliderBar.h"

namespace tbtest {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using fenn::String;

namespace {

// A play symbol on an accent disc, drawn with cairo.
P<IImage> playImage(int size)
{
    auto image = make<CImage>(CSize{size, size});
    cairo_t* cr = cairo_create(image->getSurface());
    const CColor accent = CStyle::get().accent;
    cairo_set_source_rgb(cr, accent.red() / 255.0, accent.green() / 255.0, accent.blue() / 255.0);
    cairo_arc(cr, size / 2.0, size / 2.0, size / 2.0 - 1, 0, 2 * M_PI);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_move_to(cr, size * 0.40, size * 0.30);
    cairo_line_to(cr, size * 0.72, size * 0.50);
    cairo_line_to(cr, size * 0.40, size * 0.70);
    cairo_close_path(cr);
    cairo_fill(cr);
    cairo_destroy(cr);
    image->markDirty();
    return image;
}

void paintWave(CPainter& painter, CSize size)
{
    const CStyle& style = CStyle::get();
    painter.fillRoundedRect({0, 0, size.width, size.height}, 6, CColor(24, 28, 36));
    cairo_t* cr = painter.getCairo();
    cairo_set_source_rgba(cr, style.accent.red() / 255.0, 0.7, 1.0, 0.9);
    cairo_set_line_width(cr, 1.0);
    const double middle = size.height / 2.0;
    for (int x = 0; x < size.width; ++x) {
        const double t = x / 18.0;
        const double level = (0.35 + 0.3 * std::sin(t * 0.31)) * std::fabs(std::sin(t)) * middle;
        cairo_move_to(cr, x + 0.5, middle - level);
        cairo_line_to(cr, x + 0.5, middle + level);
    }
    cairo_stroke(cr);
}

// The window of the last build with the id, as T; a gallery file without
// it is broken, which the tests should hear about.
template <class T> T& part(CGUIBuilder& builder, const char* id)
{
    auto* window = dynamic_cast<T*>(builder.getWindow(id).get());
    if (!window) throw fenn::CError("Gallery", String("The gallery layout has no '") + id + "' of the right type.");
    return *window;
}

void makeHeadingsBold(CWindow& window)
{
    if (window.getProperties().getString("role", "") == "heading") {
        window.setFont(CStyle::get().boldFont->withPixelSize(15));
    }
    for (const auto& child : window.getChildren()) makeHeadingsBold(*child);
}

void fillTrackList(CCellView& list)
{
    list.addColumn("#", 36);
    list.addColumn("Title", 122);
    list.addColumn("Length", 70);
    list.addColumn("", 56, CellKind::button);
    auto model = make<CCellViewListModel>();
    for (int row = 0; row < 200; ++row) {
        model->addRow({fenn::fromInt(row + 1), String("Track number ") + fenn::fromInt(row + 1),
                       fenn::fromInt(2 + row % 5) + ":" + fenn::fromInt(10 + row % 50), "Play"});
    }
    list.setModel(model);
    list.setSelectionMode(SelectionMode::multiple);
    list.select(2);
    list.select(4, SelectAction::toggle);
    list.sortBy(1, SortOrder::ascending);
    list.setScrollPosition(0);
}

P<CMenuBar> buildMenuBar()
{
    auto bar = make<CMenuBar>();
    bar->setId("menuBar");
    auto file = make<CMenu>();
    file->addItem(
        "Add files...", [] {}, "Ctrl+O");
    file->addItem("Add folder...", [] {});
    auto recent = make<CMenu>();
    recent->addItem("Live at home.flac", [] {});
    recent->addItem("Rehearsal 3.wav", [] {});
    file->addSubmenu("Recent files", recent);
    file->addSeparator();
    const int save = file->addItem(
        "Save list", [] {}, "Ctrl+S");
    file->setEnabled(save, false);
    file->addItem(
        "Quit", [] {}, "Ctrl+Q");
    auto view = make<CMenu>();
    const int large = view->addItem("Large icons", [] {});
    view->setChecked(large, true);
    view->addItem("Details", [] {});
    auto help = make<CMenu>();
    help->addItem(
        "Contents", [] {}, "F1");
    bar->addMenu("File", file);
    bar->addMenu("View", view);
    bar->addMenu("Help", help);
    return bar;
}

}  // namespace

fenn::CURI galleryLayoutURI()
{
    return fenn::CURI::fromPath(TB_GALLERY_LAYOUT);
}

void loadDefaultSkin()
{
    const auto manager = fenn::gui::skin::CSkinManager::getInstance();
    const fenn::P<fenn::gui::skin::ISkinPackage> package = manager->addPackage(fenn::CURI::fromPath(TB_DEFAULT_SKIN));
    manager->setCurrentPackage(package->getFolder());
}

P<ILayoutItem> buildGalleryContent(CGUIBuilder& builder, CWindow& parent)
{
    const P<ILayoutItem> content = builder.build("galleryContent", &parent, nullptr);

    part<CButton>(builder, "convert").setKind(ButtonKind::primary);
    part<CButton>(builder, "disabledButton").setEnabled(false);
    part<CCheckBox>(builder, "normalise").setChecked(true);
    part<CCheckBox>(builder, "cueSheet").setEnabled(false);
    part<CSelectField>(builder, "cdQuality").setChecked(true);
    part<CDropList>(builder, "pattern").setEditable(true);
    part<CDropList>(builder, "disabledList").setEnabled(false);
    part<CEditField>(builder, "search").setPlaceholder("Search in the list");
    part<CEditField>(builder, "disabledField").setEnabled(false);
    part<CProgressBar>(builder, "progress").setPosition(65);
    part<CSliderBar>(builder, "volume").setPosition(40);
    part<CImageButton>(builder, "play").setImage(playImage(40));
    part<CImageDisplay>(builder, "cover").setImage(playImage(64));
    part<CCanvas>(builder, "wave").setPaintFunction(&paintWave);
    fillTrackList(part<CCellView>(builder, "tracks"));
    makeHeadingsBold(parent);
    return content;
}

P<CFrameWindow> buildGallery(const P<IWindowSystem>& system)
{
    auto builder = make<CGUIBuilder>();
    builder->setDefaultWindowSystem(system);
    builder->loadFile(galleryLayoutURI());
    const P<CFrameWindow> frame = fenn::TCast<CFrameWindow>(builder->build("gallery", nullptr, nullptr));
    if (!frame) throw fenn::CError("Gallery", "The gallery layout's \"gallery\" is no frame.");
    auto bar = buildMenuBar();
    frame->addChild(bar);
    frame->getLayout()->addItem(bar, {.horzGrow = 1});
    buildGalleryContent(*builder, *frame);
    frame->setBounds({0, 0, 1120, 760});
    return frame;
}

}  // namespace tbtest
