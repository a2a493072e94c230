#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::net {

// The network package: TCP and HTTP clients.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::net", "1.0", {"fenn"}) {}
};

}  // namespace fenn::net
