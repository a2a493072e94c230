#pragma once

#include "gui/IWindowSystem.h"

namespace fenn::gui {

// Each group of widgets registers its types (layout file element names)
// with a window system; the plain window system calls them all.

// "button", "checkbox", "selectfield", "selectgroup", "textfield",
// "textarea", "progressbar", "sliderbar", "imagebutton", "imagedisplay",
// "canvas", "tabview".
void registerBasicWidgets(CWindowSystem& system);
// "editfield", "editarea", "droplist".
void registerEditWidgets(CWindowSystem& system);
// "cellview", "scrollpanel", "splitpanel".
void registerListWidgets(CWindowSystem& system);

}  // namespace fenn::gui
