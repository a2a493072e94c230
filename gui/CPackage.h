#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::gui {

// The GUI toolkit's package: windows, widgets and images.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui", "1.0", {"fenn::posix"}) {}
};

}  // namespace fenn::gui

namespace fenn::gui::format::mng {

// The package of the MNG and JNG animation decoder.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::gui::format::mng", "1.0", {"fenn::gui"}) {}
};

}  // namespace fenn::gui::format::mng
