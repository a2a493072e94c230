#include "gui/sdl/DefaultWindowSystem.h"

#include "gui/CModalFrame.h"
#include "gui/widgets/WidgetRegistration.h"

namespace fenn::gui::sdl {

P<CWindowSystem> createDefaultWindowSystem()
{
    auto system = make<CWindowSystem>("default");
    registerBasicWidgets(*system);
    registerEditWidgets(*system);
    registerListWidgets(*system);
    system->registerType("frame", [] { return P<CWindow>(make<CFrameWindow>()); });
    system->registerType("modalframe", [] { return P<CWindow>(make<CModalFrame>()); });
    return system;
}

}  // namespace fenn::gui::sdl
