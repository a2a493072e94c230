#pragma once

#include <atomic>
#include <cstdint>

namespace fenn {

// The reference count of every framework object. A new object has the count
// 1, which the creator's pointer adopts. When release drops the count from 1,
// the count is parked at a large negative value before destroy runs, so that
// pointers taken and dropped inside the destructor never reach zero again.
class CReferencable
{
public:
    static constexpr std::int32_t kDestroyingCount = -1000000;

    CReferencable() = default;
    // A copy is a new object: it starts with its own count of 1.
    CReferencable(const CReferencable&) noexcept {}
    CReferencable& operator=(const CReferencable&) noexcept { return *this; }
    virtual ~CReferencable() = default;

    virtual void addRef() const;
    virtual void release() const;

    std::int32_t getReferenceCount() const { return m_referenceCount.load(std::memory_order_relaxed); }

protected:
    // Deletes the object; a subclass may end its life differently.
    virtual void destroy() const;

private:
    mutable std::atomic<std::int32_t> m_referenceCount{1};
};

}  // namespace fenn
