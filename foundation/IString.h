#pragma once

#include <cstdint>

#include "foundation/IBase.h"

namespace fenn {

class ICharEncoding;

// Immutable text: bytes in one encoding. The bytes never change after
// construction; only the cached code-point count is filled in lazily, with
// the same value on every thread, so strings may be shared freely.
class IString : public virtual IComparable
{
public:
    virtual const char* getData() const = 0;
    virtual std::int32_t getByteSize() const = 0;
    virtual bool isZeroTerminated() const = 0;
    virtual const ICharEncoding& getEncoding() const = 0;
    // Number of code points (counted on first use).
    virtual std::int32_t getLength() const = 0;
    // The number of code points if already known, else -1.
    virtual std::int32_t getKnownLength() const = 0;
    // Stores a count found by a walk over the whole text.
    virtual void setKnownLength(std::int32_t length) const = 0;
};

}  // namespace fenn
