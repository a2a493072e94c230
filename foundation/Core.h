#pragma once

#include "foundation/CPackageBase.h"
#include "foundation/CPackageManager.h"

namespace fenn {

// Starts the framework core: a package manager holding the "fenn" package.
// The caller adds its packages and calls startAll.
P<CPackageManager> startCore();

// Stops the core after the packages have stopped: releases the lazy
// singletons and the localizer. The core may be started again afterwards.
void stopCore();

}  // namespace fenn
