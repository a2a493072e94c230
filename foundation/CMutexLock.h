#pragma once

#include "foundation/IMutex.h"

namespace fenn {

// Holds a mutex for the life of a scope: takes it in the constructor and
// lets go in the destructor. It keeps a count on the mutex so that the
// unlock never reaches a released object.
class CMutexLock
{
public:
    explicit CMutexLock(IMutex* mutex) : m_mutex(mutex)
    {
        if (m_mutex) m_mutex->lock();
    }
    explicit CMutexLock(const P<IMutex>& mutex) : CMutexLock(mutex.get()) {}
    ~CMutexLock()
    {
        if (m_mutex) m_mutex->unlock();
    }
    CMutexLock(const CMutexLock&) = delete;
    CMutexLock& operator=(const CMutexLock&) = delete;

private:
    P<IMutex> m_mutex;
};

}  // namespace fenn
