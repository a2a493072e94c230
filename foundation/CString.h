#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/ICharEncoding.h"
#include "foundation/IString.h"
#include "foundation/P.h"

namespace fenn {

// How a string comes by its bytes.
enum class StringBufferMode {
    copy,    // a new, owned buffer with a terminator written through the encoding
    adopt,   // takes a buffer allocated with new char[], terminated after byteSize bytes, and frees it
    literal  // refers to the bytes for its whole life and never frees them
};

// The one implementation of IString: bytes, their size, whether a
// terminator follows, who owns them, and the encoding that reads them.
class CString : public CObject, public virtual IString
{
public:
    // byteSize -1: the text ends at its terminator. charCount -1: counted
    // through the encoding when first asked.
    CString(const ICharEncoding& encoding, const void* data, std::int32_t byteSize, std::int32_t charCount,
            StringBufferMode mode);
    ~CString() override;
    CString(const CString&) = delete;
    CString& operator=(const CString&) = delete;

    const char* getData() const override { return m_data; }
    std::int32_t getByteSize() const override { return m_byteSize; }
    bool isZeroTerminated() const override { return m_zeroTerminated; }
    const ICharEncoding& getEncoding() const override { return *m_encoding; }
    std::int32_t getLength() const override;
    std::int32_t getKnownLength() const override { return m_charCount.load(std::memory_order_relaxed); }
    void setKnownLength(std::int32_t length) const override { m_charCount.store(length, std::memory_order_relaxed); }
    int compareTo(const IBase& other) const override;
    String toString() const override;

protected:
    // A view of bytes that another string owns.
    CString(const ICharEncoding& encoding, const char* data, std::int32_t byteSize, bool zeroTerminated);

private:
    const char* m_data;
    std::int32_t m_byteSize;
    bool m_zeroTerminated;
    bool m_ownsBuffer;
    const ICharEncoding* m_encoding;  // a shared instance that never dies
    mutable std::atomic<std::int32_t> m_charCount;
};

// The string classes by encoding; each only fixes the encoding.
class CLatin1String : public CString
{
public:
    CLatin1String(const char* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
                  StringBufferMode mode = StringBufferMode::copy);
};

class CUTF8String : public CString
{
public:
    CUTF8String(const char* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
                StringBufferMode mode = StringBufferMode::copy);
};

class CUTF16String : public CString
{
public:
    CUTF16String(const char16_t* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
                 StringBufferMode mode = StringBufferMode::copy);
};

class CUTF32String : public CString
{
public:
    CUTF32String(const char32_t* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
                 StringBufferMode mode = StringBufferMode::copy);
};

// Wide text: UTF-32 on Linux.
class CWCharString : public CString
{
public:
    CWCharString(const wchar_t* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
                 StringBufferMode mode = StringBufferMode::copy);
};

// Text in the multibyte form of the user's locale.
class CCPString : public CString
{
public:
    CCPString(const char* data, std::int32_t byteSize = -1, std::int32_t charCount = -1,
              StringBufferMode mode = StringBufferMode::copy);
};

// A piece of another string that shares its bytes and keeps the owner of
// those bytes alive. A slice of a slice refers to the outermost owner.
class CStringSlice : public CString
{
public:
    // startByte and endByte are byte offsets into parent; charCount may be -1.
    CStringSlice(const P<IString>& parent, std::int32_t startByte, std::int32_t endByte, std::int32_t charCount);

private:
    P<IString> m_owner;
};

// The shared empty string of an encoding.
const P<IString>& getEmptyString(const ICharEncoding& encoding);

}  // namespace fenn
