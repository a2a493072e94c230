#pragma once

#include <mutex>

#include "foundation/CObject.h"
#include "foundation/IMutex.h"

namespace fenn {

// A recursive mutex of the standard library behind IMutex.
class CMutexImpl : public CObject, public virtual IMutex
{
public:
    void lock() override { m_mutex.lock(); }
    void unlock() override { m_mutex.unlock(); }
    bool tryLock() override { return m_mutex.try_lock(); }

private:
    std::recursive_mutex m_mutex;
};

// The shared maker of mutexes; any thread may call it.
class CMutexFactory : public CObject, public virtual IMutexFactory
{
public:
    static P<CMutexFactory> getInstance();

    P<IMutex> createMutex() override;
};

}  // namespace fenn
