#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/CObjectError.h"

namespace fenn {

// A block of bytes that can change its size. The data pointer stays valid
// until the next setSize. Not locked: the stream or object that owns the
// block serialises the calls.
class IMemoryBlock : public virtual IBase
{
public:
    virtual std::uint8_t* getData() = 0;
    virtual const std::uint8_t* getData() const = 0;
    virtual std::int64_t getSize() const = 0;
    // Grows with zero bytes or cuts the end off. A negative size throws
    // CInvalidArgError.
    virtual void setSize(std::int64_t size) = 0;
};

// A memory block on the heap. Growing doubles the reserved room (from
// kMinimumCapacity on), so a stream written in small pieces copies each
// byte a bounded number of times.
class CMemoryBlock : public CObject, public virtual IMemoryBlock
{
public:
    static constexpr std::int64_t kMinimumCapacity = 256;

    CMemoryBlock() = default;

    std::uint8_t* getData() override { return m_bytes.data(); }
    const std::uint8_t* getData() const override { return m_bytes.data(); }
    std::int64_t getSize() const override { return static_cast<std::int64_t>(m_bytes.size()); }

    void setSize(std::int64_t size) override
    {
        if (size < 0) throw CInvalidArgError(this, "setSize", "size");
        const auto needed = static_cast<std::size_t>(size);
        if (needed > m_bytes.capacity()) {
            const std::size_t doubled = std::max<std::size_t>(m_bytes.capacity() * 2, kMinimumCapacity);
            m_bytes.reserve(std::max(needed, doubled));
        }
        m_bytes.resize(needed);
    }

private:
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace fenn
