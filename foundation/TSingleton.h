#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "foundation/P.h"

namespace fenn {

// The one recursive mutex under which every lazy singleton is built, so that
// a factory may ask for other singletons.
std::recursive_mutex& getSingletonMutex();

// Registers the clean-up of a singleton holder, run by releaseSingletons in
// the reverse order of registration.
void registerSingletonCleanup(void (*cleanup)(void*), void* holder);

// Forgets the clean-up of a holder that is itself being destroyed.
void unregisterSingletonCleanup(void* holder);

// Releases every built singleton, newest first. The core calls it when it
// stops; a singleton asked for afterwards is built again.
void releaseSingletons();

// Sleeps one millisecond while another thread builds a singleton.
void waitForSingleton();

// A lazily built shared object. The first caller builds it under the
// singleton mutex; every caller then waits until both guard words carry
// their marks, so no thread sees a half-built object, even one whose holder
// memory is still zero.
template <class T> class TSingleton
{
public:
    using Factory = P<T> (*)();

    explicit constexpr TSingleton(Factory factory) : m_factory(factory) {}
    TSingleton(const TSingleton&) = delete;
    TSingleton& operator=(const TSingleton&) = delete;
    ~TSingleton() { unregisterSingletonCleanup(this); }

    P<T>& get()
    {
        if (!isPublished()) build();
        return m_object;
    }

private:
    static constexpr std::uint32_t kGuard1 = 0x3D92A405;
    static constexpr std::uint32_t kGuard2 = 0x73DF5089;

    bool isPublished() const
    {
        return m_guard1.load(std::memory_order_acquire) == kGuard1 &&
               m_guard2.load(std::memory_order_acquire) == kGuard2;
    }

    void build()
    {
        if (!m_cleanupRegistered.exchange(true)) registerSingletonCleanup(&TSingleton::cleanup, this);
        {
            std::lock_guard lock(getSingletonMutex());
            if (m_constructed == 0) {
                m_constructed = 1;
                m_guard1.store(0, std::memory_order_relaxed);
                m_guard2.store(0, std::memory_order_relaxed);
                m_object = m_factory();
                m_guard1.store(kGuard1, std::memory_order_release);
                m_guard2.store(kGuard2, std::memory_order_release);
            }
        }
        while (!isPublished()) waitForSingleton();
    }

    static void cleanup(void* holder)
    {
        auto* self = static_cast<TSingleton*>(holder);
        std::lock_guard lock(getSingletonMutex());
        self->m_guard1.store(0, std::memory_order_relaxed);
        self->m_guard2.store(0, std::memory_order_relaxed);
        self->m_object = nullptr;
        self->m_constructed = 0;
        self->m_cleanupRegistered.store(false);
    }

    Factory m_factory;
    P<T> m_object;
    std::atomic<std::uint32_t> m_guard1{0};
    std::atomic<std::uint32_t> m_guard2{0};
    std::atomic<bool> m_cleanupRegistered{false};
    std::uint8_t m_constructed = 0;
};

}  // namespace fenn
