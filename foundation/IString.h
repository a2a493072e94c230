#pragma once

#include <cstdint>

#include "foundation/IBase.h"

namespace fenn {

// Immutable text. The bytes never change after construction; only the cached
// code-point count is filled in lazily, with the same value on every thread.
class IString : public virtual IComparable
{
public:
    virtual const char* getData() const = 0;
    virtual std::int32_t getByteSize() const = 0;
    virtual bool isZeroTerminated() const = 0;
    // Number of code points.
    virtual std::int32_t getLength() const = 0;
};

}  // namespace fenn
