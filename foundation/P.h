#pragma once

#include <cstddef>
#include <utility>

#include "foundation/IBase.h"

namespace fenn {

// Marks the adoption of the count 1 that a new object starts with.
struct AdoptTag
{
};
inline constexpr AdoptTag adopt{};

// Counted pointer. Copying takes a count on the new value before it lets go of
// the old one, so self-assignment is safe.
template <class T> class P
{
public:
    P() noexcept = default;
    P(std::nullptr_t) noexcept {}
    P(T* object) noexcept : m_object(object) { take(m_object); }
    P(T* object, AdoptTag) noexcept : m_object(object) {}
    P(const P& other) noexcept : m_object(other.m_object) { take(m_object); }
    P(P&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U> P(const P<U>& other) noexcept : m_object(other.get()) { take(m_object); }
    template <class U> P(P<U>&& other) noexcept : m_object(other.detach()) {}
    ~P() { drop(m_object); }

    P& operator=(const P& other) noexcept { return assign(other.m_object); }
    P& operator=(P&& other) noexcept
    {
        T* old = std::exchange(m_object, std::exchange(other.m_object, nullptr));
        drop(old);
        return *this;
    }
    P& operator=(T* object) noexcept { return assign(object); }
    P& operator=(std::nullptr_t) noexcept { return assign(nullptr); }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    // Hands the count to the caller and leaves this pointer null.
    T* detach() noexcept { return std::exchange(m_object, nullptr); }

private:
    static void take(T* object) noexcept
    {
        if (object) object->addRef();
    }
    static void drop(T* object) noexcept
    {
        if (object) object->release();
    }
    P& assign(T* object) noexcept
    {
        take(object);
        T* old = std::exchange(m_object, object);
        drop(old);
        return *this;
    }

    T* m_object = nullptr;
};

// Counted pointer to a const object; counts like P.
template <class T> using PC = P<const T>;

template <class T, class U> bool operator==(const P<T>& a, const P<U>& b) noexcept
{
    return a.get() == b.get();
}
template <class T> bool operator==(const P<T>& a, std::nullptr_t) noexcept
{
    return a.get() == nullptr;
}

// Whether a PFrail holds a count.
enum class Hold { strong, frail };

// A pointer that holds a count only when strong. A frail one neither keeps its
// object alive nor is cleared when the object dies: whoever registers a frail
// reference promises to remove it before the object goes.
template <class T> class PFrail
{
public:
    PFrail() noexcept = default;
    PFrail(T* object, Hold hold) noexcept : m_object(object), m_strong(hold == Hold::strong) { take(); }
    PFrail(const PFrail& other) noexcept : m_object(other.m_object), m_strong(other.m_strong) { take(); }
    PFrail& operator=(const PFrail& other) noexcept
    {
        if (this != &other) {
            PFrail copy(other);
            swap(copy);
        }
        return *this;
    }
    ~PFrail() { drop(); }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    bool isStrong() const noexcept { return m_strong; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    void swap(PFrail& other) noexcept
    {
        std::swap(m_object, other.m_object);
        std::swap(m_strong, other.m_strong);
    }

private:
    void take() noexcept
    {
        if (m_strong && m_object) m_object->addRef();
    }
    void drop() noexcept
    {
        if (m_strong && m_object) m_object->release();
    }

    T* m_object = nullptr;
    bool m_strong = true;
};

// The one way to create a counted object: the new object's count is adopted.
template <class T, class... Args> P<T> make(Args&&... args)
{
    return P<T>(new T(std::forward<Args>(args)...), adopt);
}

}  // namespace fenn
