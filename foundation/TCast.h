#pragma once

#include "foundation/CObjectError.h"
#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// The run-time cast of the framework. It asks the object for delegates
// first: a false answer refuses the cast; a primary delegate, with deep set,
// is cast in the object's place; otherwise the language's type information
// decides, and the further delegates are tried in order as a last resort.
template <class T> T* TCast(IBase* object, bool deep = true)
{
    if (object == nullptr) return nullptr;
    IBase* primary = nullptr;
    const CCastDelegateList* others = nullptr;
    if (!object->getCastDelegates(typeid(T), primary, others)) return nullptr;
    if (primary != nullptr && deep) return TCast<T>(primary, true);
    if (T* direct = dynamic_cast<T*>(object)) return direct;
    for (const CCastDelegateList* entry = others; entry != nullptr; entry = entry->next) {
        if (T* hit = TCast<T>(entry->object, false)) return hit;
    }
    return nullptr;
}

template <class T> const T* TCast(const IBase* object, bool deep = true)
{
    return TCast<T>(const_cast<IBase*>(object), deep);
}

template <class T, class U> P<T> TCast(const P<U>& object, bool deep = true)
{
    return P<T>(TCast<T>(static_cast<IBase*>(const_cast<std::remove_const_t<U>*>(object.get())), deep));
}

// As TCast, but a non-null object that does not cast throws CCastError.
template <class T> T* TCastChecked(IBase* object, bool deep = true)
{
    T* result = TCast<T>(object, deep);
    if (result == nullptr && object != nullptr) throw CCastError(object, typeid(T));
    return result;
}

template <class T, class U> P<T> TCastChecked(const P<U>& object, bool deep = true)
{
    return P<T>(TCastChecked<T>(static_cast<IBase*>(const_cast<std::remove_const_t<U>*>(object.get())), deep));
}

}  // namespace fenn
