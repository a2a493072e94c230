#pragma once

#include "foundation/CPackageBase.h"

namespace fenn::net::posix {

// The platform backing of the network: POSIX sockets need no start of
// their own, so this package only orders itself after the network package.
class CPackage : public CPackageBase
{
public:
    CPackage() : CPackageBase("fenn::net::posix", "1.0", {"fenn::net"}) {}
};

}  // namespace fenn::net::posix
