#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// A lock that the thread holding it may take again; each lock needs its
// unlock. Any thread may use it.
class IMutex : public virtual IBase
{
public:
    virtual void lock() = 0;
    virtual void unlock() = 0;
    // Takes the lock if no other thread holds it; true when taken.
    virtual bool tryLock() = 0;
};

class IMutexFactory : public virtual IBase
{
public:
    virtual P<IMutex> createMutex() = 0;
};

}  // namespace fenn
