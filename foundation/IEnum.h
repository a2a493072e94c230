#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// Walks a collection of const objects. next puts the next element into the
// caller's slot and advances; past the end it throws CEndOfEnumError.
class IConstEnum : public virtual IBase
{
public:
    virtual bool hasMoreElements() = 0;
    virtual std::int32_t getCount() = 0;
    virtual void next(PC<IBase>& element) = 0;
    virtual void reset() = 0;
};

// Walks a collection of objects and may remove the element last returned.
class IEnum : public virtual IConstEnum
{
public:
    using IConstEnum::next;
    virtual void next(P<IBase>& element) = 0;
    virtual void remove() = 0;
};

// Walks a listener list; elements are the stored entries, strong or frail.
class IFrailEnum : public virtual IBase
{
public:
    virtual bool hasMoreElements() = 0;
    virtual std::int32_t getCount() = 0;
    virtual void next(PFrail<IBase>& element) = 0;
    virtual void reset() = 0;
};

}  // namespace fenn
