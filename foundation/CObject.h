#pragma once

#include "foundation/CReferencable.h"
#include "foundation/IBase.h"

namespace fenn {

// Base of every concrete framework class: the counter of CReferencable seen
// through IBase. Concrete classes derive from CObject and, virtually, from
// their interfaces.
class CObject : public CReferencable, public virtual IBase
{
public:
    CObject() = default;
    CObject(const CObject&) noexcept : IBase(), CReferencable() {}
    CObject& operator=(const CObject&) noexcept { return *this; }

    void addRef() const override { CReferencable::addRef(); }
    void release() const override { CReferencable::release(); }

    // The run-time class name followed by " object".
    String toString() const override;
};

// The readable run-time class name of an object's dynamic type.
String getClassName(const std::type_info& type);

}  // namespace fenn
