#include "foundation/CMutexFactory.h"

#include "foundation/TSingleton.h"

namespace fenn {

P<CMutexFactory> CMutexFactory::getInstance()
{
    static TSingleton<CMutexFactory> instance([] { return make<CMutexFactory>(); });
    return instance.get();
}

P<IMutex> CMutexFactory::createMutex()
{
    return make<CMutexImpl>();
}

}  // namespace fenn
