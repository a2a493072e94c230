#include "gui/sdl/CPackage.h"

#include "gui/CFrameWindow.h"
#include "gui/sdl/CSDLClipboard.h"
#include "gui/sdl/CSDLFrameHost.h"
#include "gui/sdl/DefaultWindowSystem.h"

namespace fenn::gui::sdl {

void CPackage::onStart()
{
    CFrameWindow::setHostFactory([](CFrameWindow& frame) -> P<IFrameHost> { return make<CSDLFrameHost>(&frame); });
    setClipboard(make<CSDLClipboard>());
    CWindowSystemRegistry::add(createDefaultWindowSystem());
}

void CPackage::onStop()
{
    CWindowSystemRegistry::remove("default");
    setClipboard(nullptr);
    CFrameWindow::setHostFactory(nullptr);
}

}  // namespace fenn::gui::sdl
