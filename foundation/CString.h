#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IString.h"

namespace fenn {

// How a CString comes by its bytes.
enum class StringBufferMode {
    copy,    // a new, owned, zero-terminated buffer
    adopt,   // takes the given heap buffer (allocated with new[]) and frees it
    literal  // refers to the bytes for its whole life and never frees them
};

// The implementation of IString over UTF-8 bytes. Lenient: invalid bytes are
// stepped over when code points are read, so bad input is readable.
class CString : public CObject, public virtual IString
{
public:
    // byteSize -1: the text ends at its terminator.
    CString(const char* data, std::int32_t byteSize, StringBufferMode mode);
    ~CString() override;
    CString(const CString&) = delete;
    CString& operator=(const CString&) = delete;

    const char* getData() const override { return m_data; }
    std::int32_t getByteSize() const override { return m_byteSize; }
    bool isZeroTerminated() const override { return m_zeroTerminated; }
    std::int32_t getLength() const override;
    int compareTo(const IBase& other) const override;
    String toString() const override;

private:
    const char* m_data;
    std::int32_t m_byteSize;
    bool m_zeroTerminated;
    bool m_ownsBuffer;
    mutable std::atomic<std::int32_t> m_charCount{-1};
};

}  // namespace fenn
