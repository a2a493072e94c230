#pragma once

#include "foundation/TSimpleArray.h"

namespace fenn {

// A callback of one argument: an object and one of its member functions,
// stored by value so that it can be found again for removal.
template <class A> struct TDelegate1
{
    void* target = nullptr;
    void (*thunk)(void*, A) = nullptr;

    template <class C, void (C::*Method)(A)> static TDelegate1 bind(C* object)
    {
        return TDelegate1{object, [](void* self, A argument) { (static_cast<C*>(self)->*Method)(argument); }};
    }

    bool operator==(const TDelegate1& other) const { return target == other.target && thunk == other.thunk; }
};

// A small group of callbacks, fired in the order in which they were added.
template <class A> class TDelegateGroup1
{
public:
    void add(const TDelegate1<A>& delegate) { m_delegates.add(delegate); }
    bool remove(const TDelegate1<A>& delegate)
    {
        const std::int32_t index = m_delegates.indexOf(delegate);
        if (index < 0) return false;
        m_delegates.remove(index);
        return true;
    }
    std::int32_t getCount() const { return m_delegates.getCount(); }
    void fire(A argument) const
    {
        for (const TDelegate1<A>& delegate : m_delegates) delegate.thunk(delegate.target, argument);
    }

private:
    TSimpleArray<TDelegate1<A>> m_delegates;
};

}  // namespace fenn
