#pragma once

#include "gui/IWindowSystem.h"

namespace fenn::gui::sdl {

// The plain window system, id "default": every widget type of the toolkit,
// and "frame" and "modalframe", whose windows get an SDL window when shown.
P<CWindowSystem> createDefaultWindowSystem();

}  // namespace fenn::gui::sdl
