#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::gui::sdl {

// The package of the "default" window system on SDL, cairo and pango: while
// it runs, frames shown get SDL windows, the clipboard is the desktop's and
// the window system "default" is registered.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui::sdl", "1.0", {"fenn::gui"}) {}

protected:
    void onStart() override;
    void onStop() override;
};

}  // namespace fenn::gui::sdl
