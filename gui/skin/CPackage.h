#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::gui::skin {

// The package of the skin engine, the "skin" window system. The
// application adds its skin packages to CSkinManager::getInstance().
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui::skin", "1.0", {"fenn::gui"}) {}

protected:
    // Registers the "skin" window system; onStop removes it and forgets the
    // skin packages.
    void onStart() override;
    void onStop() override;
};

}  // namespace fenn::gui::skin
