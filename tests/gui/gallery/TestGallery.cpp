#include <cairo.h>
#include <gtest/gtest.h>

#include <set>

#include "foundation/CStreamManager.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "gui/CStyle.h"
#include "gui/sdl/DefaultWindowSystem.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CMenuBar.h"
#include "tests/gui/gallery/Gallery.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;

// Colours in a horizontal band of the picture: a band of painted widgets
// and antialiased text has hundreds, a blank or half-painted one a few.
std::size_t coloursIn(cairo_surface_t* surface, int top, int bottom)
{
    cairo_surface_flush(surface);
    std::set<std::uint32_t> colours;
    for (int y = top; y < bottom; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface) +
                                                                 y * cairo_image_surface_get_stride(surface));
        colours.insert(row, row + cairo_image_surface_get_width(surface));
    }
    return colours.size();
}

TEST(Gallery, EveryWidgetPaintsAtBothScalesAndTakesInput)
{
    // The gallery's layout file is read through the stream manager.
    const auto diskStreams = fenn::make<fenn::posix::CDiskStreamFactory>();
    fenn::CStreamManager::getInstance()->addFactory(diskStreams);
    struct RemoveFactory
    {
        fenn::posix::CDiskStreamFactory* factory;
        ~RemoveFactory() { fenn::CStreamManager::getInstance()->removeFactory(factory); }
    } removeFactory{diskStreams.get()};

    for (const double scale : {1.0, 2.0}) {
        const fenn::P<CFrameWindow> gallery = tbtest::buildGallery(sdl::createDefaultWindowSystem());
        gallery->setScaleFactor(scale);
        gallery->show();
        gallery->updateAndPaint();
        // Every window got a place inside the frame.
        std::vector<CWindow*> pending{gallery.get()};
        int windows = 0;
        while (!pending.empty()) {
            CWindow* window = pending.back();
            pending.pop_back();
            ++windows;
            const CRect inFrame = window->toFrame(window->getClientRect());
            if (window->isShowing() && window != gallery.get() && window->getParent() == gallery.get()) {
                EXPECT_FALSE(inFrame.isEmpty());
                EXPECT_LE(inFrame.right(), gallery->getBounds().width);
                EXPECT_LE(inFrame.bottom(), gallery->getBounds().height);
            }
            for (const auto& child : window->getChildren()) pending.push_back(child.get());
        }
        EXPECT_GT(windows, 40);
        const int height = cairo_image_surface_get_height(gallery->getBuffer());
        for (int band = 0; band < 4; ++band)
            EXPECT_GT(coloursIn(gallery->getBuffer(), height * band / 4, height * (band + 1) / 4), 100u) << band;

        // Typing reaches the field that was clicked.
        auto* artist = dynamic_cast<CEditField*>(gallery->findWindow("artist"));
        ASSERT_NE(artist, nullptr);
        const CRect field = artist->toFrame(artist->getClientRect());
        gallery->injectClick({field.x + 5, field.y + field.height / 2});
        EXPECT_TRUE(artist->hasFocus());
        gallery->injectKey({Key::home}, true);
        gallery->injectTyping("The ");
        EXPECT_TRUE(artist->getText().startsWith("The Quorrel"));
        // The File menu open, with its sub-menu, for the picture.
        gallery->injectKey({Key::f10}, true);
        gallery->injectKey({Key::down}, true);
        gallery->injectKey({Key::down}, true);
        gallery->injectKey({Key::right}, true);
        EXPECT_TRUE(gallery->hasPopups());
        gallery->updateAndPaint();
        const std::string name = scale == 1.0 ? "gallery" : "gallery@2x";
        gallery->writePNG(fenn::String::copyOf(tbtest::testOutputFolder() + "/" + name + ".png"));
    }
}

}  // namespace
