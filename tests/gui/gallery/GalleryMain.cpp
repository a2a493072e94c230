// The widget gallery in a real window, built from gallery.xml, for looking
// at the toolkit and for the smoke test that drives it under Xvfb. Escape
// or closing the window ends it with status 0.
//
//   gui_gallery [--window-system=default|skin]
//
// The window system must be registered: "default" by the SDL package,
// "skin" by the skin package; a missing one ends the program with status 2.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "foundation/CLogManager.h"
#include "foundation/Core.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "gui/CPackage.h"
#include "gui/sdl/CPackage.h"
#include "gui/skin/CPackage.h"
#include "tests/gui/gallery/Gallery.h"

namespace {

constexpr int kUsageError = 2;

}  // namespace

int main(int argc, char** argv)
{
    std::string systemId = "default";
    for (int index = 1; index < argc; ++index) {
        const char* option = "--window-system=";
        if (std::strncmp(argv[index], option, std::strlen(option)) == 0) {
            systemId = argv[index] + std::strlen(option);
        } else {
            std::fprintf(stderr, "usage: gui_gallery [--window-system=default|skin]\n");
            return kUsageError;
        }
    }

    fenn::posix::CPlatformSession platform;
    fenn::P<fenn::CPackageManager> packages = fenn::startCore();
    packages->addPackage(fenn::make<fenn::posix::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::sdl::CPackage>());
    if (systemId == "skin") packages->addPackage(fenn::make<fenn::gui::skin::CPackage>());
    int status = EXIT_SUCCESS;
    try {
        packages->startAll();
        const fenn::P<fenn::gui::IWindowSystem> system =
            fenn::gui::CWindowSystemRegistry::get(fenn::String::copyOf(systemId));
        if (!system) {
            std::fprintf(stderr, "gallery: the window system '%s' is not available\n", systemId.c_str());
            status = kUsageError;
        } else {
            if (systemId == "skin") tbtest::loadDefaultSkin();
            fenn::P<fenn::gui::CFrameWindow> gallery = tbtest::buildGallery(system);
            gallery->addAccelerator("Escape", [frame = gallery.get()] { frame->requestClose(); });
            gallery->show();
            std::printf("gallery shown (window system '%s')\n", systemId.c_str());
            std::fflush(stdout);
            fenn::getSystem()->runMessageLoop();
        }
    } catch (const fenn::CException& error) {
        std::fprintf(stderr, "gallery: %s\n", error.getDescription().c_str());
        status = EXIT_FAILURE;
    }
    packages->stopAll();
    packages = nullptr;
    fenn::stopCore();
    return status;
}
