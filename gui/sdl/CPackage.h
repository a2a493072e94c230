#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::gui::sdl {

// The package of the "default" window system on SDL, cairo and pango.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui::sdl", "1.0", {"fenn::gui"}) {}
};

}  // namespace fenn::gui::sdl
