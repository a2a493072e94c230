#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IThreadLocalStorage.h"
#include "foundation/TSimpleHashTable.h"

namespace fenn {

// A slot number of the process-wide table of thread_local pointers. Slot
// numbers are never reused, so a new slot never sees a value that a thread
// left in an old one.
class CSimpleThreadLocalStorage : public CObject, public virtual ISimpleThreadLocalStorage
{
public:
    explicit CSimpleThreadLocalStorage(ThreadValueCleanup cleanup);
    ~CSimpleThreadLocalStorage() override;

    void* getValue() const override;
    void setValue(void* value) override;

private:
    std::uint64_t m_slot;
};

class CSimpleThreadLocalStorageFactory : public CObject, public virtual ISimpleThreadLocalStorageFactory
{
public:
    static P<CSimpleThreadLocalStorageFactory> getInstance();

    P<ISimpleThreadLocalStorage> createStorage(ThreadValueCleanup cleanup = nullptr) override;
};

// The store of one thread. Only that thread touches it, so it needs no lock.
class CThreadLocalStorage : public CObject, public virtual IThreadLocalStorage
{
public:
    P<IBase> getValue(std::uint32_t key) const override;
    void setValue(std::uint32_t key, P<IBase> value) override;
    void removeValue(std::uint32_t key) override;

private:
    TSimpleHashTable<std::uint32_t, P<IBase>> m_values;
};

// Hands each thread its own store, made on first use in one simple slot and
// released when the thread ends.
class CThreadLocalStorageManager : public CObject
{
public:
    static P<CThreadLocalStorageManager> getInstance();

    CThreadLocalStorageManager();

    // The calling thread's store.
    P<IThreadLocalStorage> getStorage();

private:
    P<ISimpleThreadLocalStorage> m_slot;
};

}  // namespace fenn
