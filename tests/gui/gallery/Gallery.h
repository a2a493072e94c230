#pragma once

#include "gui/CFrameWindow.h"

namespace tbtest {

// A frame showing every widget of the toolkit in its states (normal,
// hovered, pressed, focused, disabled, checked, selected...), titled
// "Tonebench widget gallery". The test renders it to PNG; the gallery
// program shows it in a real window.
fenn::P<fenn::gui::CFrameWindow> buildGallery();

}  // namespace tbtest
