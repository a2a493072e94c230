#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::gui::skin {

// The package of the skin engine, the "skin" window system.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui::skin", "1.0", {"fenn::gui"}) {}
};

}  // namespace fenn::gui::skin
