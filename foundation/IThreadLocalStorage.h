#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// One slot that holds one pointer per thread. The slot does not own what
// the pointer points at; see the factory for clean-up at thread end.
class ISimpleThreadLocalStorage : public virtual IBase
{
public:
    // The calling thread's pointer; null until this thread sets one.
    virtual void* getValue() const = 0;
    virtual void setValue(void* value) = 0;
};

// Called at the end of a thread for its pointer in a slot, when that is not null.
using ThreadValueCleanup = void (*)(void* value);

class ISimpleThreadLocalStorageFactory : public virtual IBase
{
public:
    virtual P<ISimpleThreadLocalStorage> createStorage(ThreadValueCleanup cleanup = nullptr) = 0;
};

// Values of the calling thread by 32-bit key. A value is held with a count
// and released when it is replaced or removed, or when the thread ends.
class IThreadLocalStorage : public virtual IBase
{
public:
    // The value under key, or null.
    virtual P<IBase> getValue(std::uint32_t key) const = 0;
    virtual void setValue(std::uint32_t key, P<IBase> value) = 0;
    virtual void removeValue(std::uint32_t key) = 0;
};

}  // namespace fenn
