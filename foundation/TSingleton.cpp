#include "foundation/TSingleton.h"

#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/CTimerManager.h"

namespace fenn {

namespace {

struct Cleanup
{
    void (*function)(void*);
    void* holder;
};

std::vector<Cleanup>& cleanups()
{
    static std::vector<Cleanup>* list = new std::vector<Cleanup>();
    return *list;
}

}  // namespace

std::recursive_mutex& getSingletonMutex()
{
    // Never destroyed: singletons may be asked for while statics die.
    static std::recursive_mutex* mutex = new std::recursive_mutex();
    return *mutex;
}

void registerSingletonCleanup(void (*cleanup)(void*), void* holder)
{
    std::lock_guard lock(getSingletonMutex());
    static const bool atExitRegistered = (std::atexit(&releaseSingletons), true);
    (void)atExitRegistered;
    cleanups().push_back(Cleanup{cleanup, holder});
}

void unregisterSingletonCleanup(void* holder)
{
    std::lock_guard lock(getSingletonMutex());
    std::erase_if(cleanups(), [holder](const Cleanup& entry) { return entry.holder == holder; });
}

void releaseSingletons()
{
    std::vector<Cleanup> pending;
    {
        std::lock_guard lock(getSingletonMutex());
        pending.swap(cleanups());
    }
    for (auto entry = pending.rbegin(); entry != pending.rend(); ++entry) entry->function(entry->holder);
}

void waitForSingleton()
{
    CTimerManager::getInstance()->sleep(1);
}

}  // namespace fenn
