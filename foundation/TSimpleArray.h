#pragma once

#include <algorithm>
#include <cstdint>

#include "foundation/CObject.h"

namespace fenn {

// The untyped part of every simple array: sizes, growth and index checks.
// Arrays are not locked; their owner locks them when it shares them.
class CSimpleArrayTemplateBase : public CObject
{
public:
    std::int32_t getCount() const { return m_count; }
    std::int32_t getCapacity() const { return m_capacity; }
    std::int32_t getGrowthStep() const { return m_growthStep; }

protected:
    CSimpleArrayTemplateBase(std::int32_t initialCapacity, std::int32_t growthStep);

    // Throws CInvalidArgError unless 0 <= index < limit.
    void checkIndex(std::int32_t index, std::int32_t limit, const char* method) const;
    void checkRange(std::int32_t from, std::int32_t count, std::int32_t limit, const char* method) const;
    // The capacity to grow to when count must reach needed.
    std::int32_t grownCapacity(std::int32_t needed) const;

    std::int32_t m_capacity = 0;
    std::int32_t m_count = 0;
    std::int32_t m_growthStep;
};

// A growing array of values. Removal shifts the later elements down; the
// vacated slots keep their old values until they are overwritten (see
// TCleaningSimpleArray for the form that resets them).
template <class E> class TSimpleArray : public CSimpleArrayTemplateBase
{
public:
    explicit TSimpleArray(std::int32_t initialCapacity = 0, std::int32_t growthStep = 10)
        : CSimpleArrayTemplateBase(initialCapacity, growthStep)
    {
        if (initialCapacity > 0) {
            m_elements = new E[static_cast<std::size_t>(initialCapacity)];
            m_capacity = initialCapacity;
        }
    }
    TSimpleArray(const TSimpleArray& other) : CSimpleArrayTemplateBase(other.m_count, other.m_growthStep)
    {
        setCapacity(other.m_count);
        for (std::int32_t i = 0; i < other.m_count; ++i) m_elements[i] = other.m_elements[i];
        m_count = other.m_count;
    }
    TSimpleArray& operator=(const TSimpleArray&) = delete;
    ~TSimpleArray() override { delete[] m_elements; }

    const E& get(std::int32_t index) const
    {
        checkIndex(index, m_count, "get");
        return m_elements[index];
    }
    E& get(std::int32_t index)
    {
        checkIndex(index, m_count, "get");
        return m_elements[index];
    }
    void set(std::int32_t index, const E& value)
    {
        checkIndex(index, m_count, "set");
        m_elements[index] = value;
    }

    void add(const E& value)
    {
        // The value may live in this array: copy it before the block moves.
        E copy(value);
        reserve(m_count + 1);
        m_elements[m_count++] = copy;
    }

    void insert(std::int32_t index, const E& value)
    {
        checkIndex(index, m_count + 1, "insert");
        E copy(value);
        reserve(m_count + 1);
        move(index, index + 1, m_count - index);
        m_elements[index] = copy;
        ++m_count;
    }

    void remove(std::int32_t index) { removeRange(index, 1); }

    void removeRange(std::int32_t from, std::int32_t count)
    {
        checkRange(from, count, m_count, "removeRange");
        move(from + count, from, m_count - from - count);
        m_count -= count;
        clearVacated(m_count, count);
    }

    void clear()
    {
        clearVacated(0, m_count);
        m_count = 0;
    }

    // A new block of exactly capacity elements; a smaller capacity drops the
    // elements beyond it.
    void setCapacity(std::int32_t capacity)
    {
        capacity = std::max<std::int32_t>(capacity, 0);
        if (capacity == m_capacity) return;
        E* block = capacity > 0 ? new E[static_cast<std::size_t>(capacity)] : nullptr;
        const std::int32_t kept = std::min(m_count, capacity);
        for (std::int32_t i = 0; i < kept; ++i) block[i] = m_elements[i];
        delete[] m_elements;
        m_elements = block;
        m_capacity = capacity;
        m_count = kept;
    }

    // Copies count elements from one index to another, element by element, in
    // the order that keeps overlapping ranges intact.
    void move(std::int32_t from, std::int32_t to, std::int32_t count)
    {
        if (count <= 0 || from == to) return;
        checkRange(from, count, m_capacity, "move");
        checkRange(to, count, m_capacity, "move");
        if (to > from) {
            for (std::int32_t i = count - 1; i >= 0; --i) m_elements[to + i] = m_elements[from + i];
        } else {
            for (std::int32_t i = 0; i < count; ++i) m_elements[to + i] = m_elements[from + i];
        }
    }

    // Index of the first element equal to value, or -1.
    std::int32_t indexOf(const E& value) const
    {
        for (std::int32_t i = 0; i < m_count; ++i) {
            if (m_elements[i] == value) return i;
        }
        return -1;
    }

    const E* begin() const { return m_elements; }
    const E* end() const { return m_elements + m_count; }

protected:
    // Called with the slots that a removal has vacated.
    virtual void clearVacated(std::int32_t /*from*/, std::int32_t /*count*/) {}

    void reserve(std::int32_t needed)
    {
        if (needed > m_capacity) setCapacity(grownCapacity(needed));
    }

    E* m_elements = nullptr;
};

// A TSimpleArray that resets every vacated slot to the default value at once,
// so that references held by removed elements are released at once.
template <class E> class TCleaningSimpleArray : public TSimpleArray<E>
{
public:
    using TSimpleArray<E>::TSimpleArray;

protected:
    void clearVacated(std::int32_t from, std::int32_t count) override
    {
        for (std::int32_t i = 0; i < count; ++i) this->m_elements[from + i] = E();
    }
};

}  // namespace fenn
