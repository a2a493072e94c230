#include "foundation/CThreadLocalStorage.h"

#include <mutex>
#include <unordered_map>

#include "foundation/TSingleton.h"

namespace fenn {

namespace {

// The live slots and their clean-ups. Never destroyed: threads may end
// while the process's statics are going away.
class CSlotRegistry
{
public:
    std::uint64_t add(ThreadValueCleanup cleanup)
    {
        std::lock_guard lock(m_mutex);
        const std::uint64_t slot = ++m_lastSlot;
        m_cleanups.emplace(slot, cleanup);
        return slot;
    }

    void remove(std::uint64_t slot)
    {
        std::lock_guard lock(m_mutex);
        m_cleanups.erase(slot);
    }

    // The clean-up of a live slot; null for none or for a removed slot.
    ThreadValueCleanup find(std::uint64_t slot) const
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_cleanups.find(slot);
        return found == m_cleanups.end() ? nullptr : found->second;
    }

private:
    mutable std::mutex m_mutex;
    std::uint64_t m_lastSlot = 0;
    std::unordered_map<std::uint64_t, ThreadValueCleanup> m_cleanups;
};

CSlotRegistry& registry()
{
    static CSlotRegistry* const slots = new CSlotRegistry();
    return *slots;
}

// The pointers of one thread, by slot. At the end of the thread each live
// slot's clean-up runs on its pointer. A clean-up may set values again;
// those get further passes, at most four in all, as POSIX keys do.
struct ThreadValues
{
    std::unordered_map<std::uint64_t, void*> values;

    ~ThreadValues()
    {
        for (int pass = 0; pass < 4 && !values.empty(); ++pass) {
            std::unordered_map<std::uint64_t, void*> ending;
            ending.swap(values);
            for (const auto& [slot, value] : ending) {
                if (ThreadValueCleanup cleanup = registry().find(slot); cleanup && value) cleanup(value);
            }
        }
    }
};

thread_local ThreadValues t_threadValues;

}  // namespace

CSimpleThreadLocalStorage::CSimpleThreadLocalStorage(ThreadValueCleanup cleanup) : m_slot(registry().add(cleanup)) {}

CSimpleThreadLocalStorage::~CSimpleThreadLocalStorage()
{
    // Values that other threads left in the slot are not cleaned up, as with
    // a deleted POSIX key; their owners must have taken them out.
    registry().remove(m_slot);
    t_threadValues.values.erase(m_slot);
}

void* CSimpleThreadLocalStorage::getValue() const
{
    const auto found = t_threadValues.values.find(m_slot);
    return found == t_threadValues.values.end() ? nullptr : found->second;
}

void CSimpleThreadLocalStorage::setValue(void* value)
{
    if (value)
        t_threadValues.values[m_slot] = value;
    else
        t_threadValues.values.erase(m_slot);
}

P<CSimpleThreadLocalStorageFactory> CSimpleThreadLocalStorageFactory::getInstance()
{
    static TSingleton<CSimpleThreadLocalStorageFactory> instance(
        [] { return make<CSimpleThreadLocalStorageFactory>(); });
    return instance.get();
}

P<ISimpleThreadLocalStorage> CSimpleThreadLocalStorageFactory::createStorage(ThreadValueCleanup cleanup)
{
    return make<CSimpleThreadLocalStorage>(cleanup);
}

P<IBase> CThreadLocalStorage::getValue(std::uint32_t key) const
{
    const P<IBase>* value = m_values.find(key);
    return value ? *value : nullptr;
}

void CThreadLocalStorage::setValue(std::uint32_t key, P<IBase> value)
{
    if (value)
        m_values.put(key, std::move(value));
    else
        m_values.remove(key);
}

void CThreadLocalStorage::removeValue(std::uint32_t key)
{
    m_values.remove(key);
}

P<CThreadLocalStorageManager> CThreadLocalStorageManager::getInstance()
{
    // Lives as long as the process, so that its slot, and with it the
    // clean-up of every thread's store, never goes away before the threads.
    static CThreadLocalStorageManager* const instance = new CThreadLocalStorageManager();
    return instance;
}

CThreadLocalStorageManager::CThreadLocalStorageManager()
    : m_slot(make<CSimpleThreadLocalStorage>(
          [](void* store) { P<CThreadLocalStorage> ending(static_cast<CThreadLocalStorage*>(store), adopt); }))
{
}

P<IThreadLocalStorage> CThreadLocalStorageManager::getStorage()
{
    if (auto* store = static_cast<CThreadLocalStorage*>(m_slot->getValue())) return P<IThreadLocalStorage>(store);
    P<CThreadLocalStorage> store = make<CThreadLocalStorage>();
    m_slot->setValue(P<CThreadLocalStorage>(store).detach());
    return store;
}

}  // namespace fenn
