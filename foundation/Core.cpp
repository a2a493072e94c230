#include "foundation/Core.h"

#include "foundation/IStringLocalizer.h"
#include "foundation/TSingleton.h"

namespace fenn {

P<CPackageManager> startCore()
{
    auto manager = make<CPackageManager>();
    manager->addPackage(make<CPackage>());
    return manager;
}

void stopCore()
{
    setStringLocalizer(nullptr);
    releaseSingletons();
}

}  // namespace fenn
