// The widget gallery in a real window, for looking at the toolkit and for
// the smoke test that drives it under Xvfb. Escape or closing the window
// ends it with status 0.
#include <cstdio>
#include <cstdlib>

#include "foundation/CLogManager.h"
#include "foundation/Core.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "gui/CPackage.h"
#include "gui/sdl/CPackage.h"
#include "tests/gui/gallery/Gallery.h"

int main()
{
    fenn::posix::CPlatformSession platform;
    fenn::P<fenn::CPackageManager> packages = fenn::startCore();
    packages->addPackage(fenn::make<fenn::posix::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::CPackage>());
    packages->addPackage(fenn::make<fenn::gui::sdl::CPackage>());
    packages->startAll();
    int status = EXIT_SUCCESS;
    try {
        fenn::P<fenn::gui::CFrameWindow> gallery = tbtest::buildGallery();
        gallery->setCloseAction(fenn::gui::CloseAction::exit);
        gallery->addAccelerator("Escape", [frame = gallery.get()] { frame->requestClose(); });
        gallery->show();
        std::printf("gallery shown\n");
        std::fflush(stdout);
        fenn::getSystem()->runMessageLoop();
    } catch (const fenn::CException& error) {
        std::fprintf(stderr, "gallery: %s\n", error.getDescription().c_str());
        status = EXIT_FAILURE;
    }
    packages->stopAll();
    packages = nullptr;
    fenn::stopCore();
    return status;
}
