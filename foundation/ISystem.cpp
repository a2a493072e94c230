#include "foundation/ISystem.h"

#include <mutex>

namespace fenn {

namespace {

std::mutex& systemMutex()
{
    static std::mutex mutex;
    return mutex;
}

P<ISystem>& installedSystem()
{
    static P<ISystem> system;
    return system;
}

}  // namespace

P<ISystem> getSystem()
{
    std::lock_guard lock(systemMutex());
    return installedSystem();
}

void setSystem(P<ISystem> system)
{
    std::lock_guard lock(systemMutex());
    installedSystem() = std::move(system);
}

}  // namespace fenn
