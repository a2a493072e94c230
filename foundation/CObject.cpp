#include "foundation/CObject.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "foundation/String.h"

namespace fenn {

bool IBase::getCastDelegates(const std::type_info&, IBase*&, const CCastDelegateList*&)
{
    return true;
}

String getClassName(const std::type_info& type)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                     std::free);
    return String::copyOf(status == 0 && demangled ? demangled.get() : type.name());
}

String CObject::toString() const
{
    return getClassName(typeid(*this)) + " object";
}

}  // namespace fenn
