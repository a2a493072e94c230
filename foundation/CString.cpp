#include "foundation/CString.h"

#include <cstring>

#include "foundation/CCharEncodings.h"
#include "foundation/String.h"

namespace fenn {

CString::CString(const ICharEncoding& encoding, const void* data, std::int32_t byteSize, std::int32_t charCount,
                 StringBufferMode mode)
    : m_data(static_cast<const char*>(data)), m_byteSize(byteSize), m_zeroTerminated(false),
      m_ownsBuffer(mode == StringBufferMode::adopt), m_encoding(&encoding), m_charCount(charCount)
{
    if (data == nullptr) {
        m_data = "\0\0\0";
        m_byteSize = 0;
        m_zeroTerminated = true;
        m_ownsBuffer = false;
        m_charCount = 0;
        return;
    }
    if (byteSize < 0) {
        m_byteSize = encoding.getZeroTerminatedSize(static_cast<const std::uint8_t*>(data));
        m_zeroTerminated = true;
    }
    if (mode == StringBufferMode::adopt) m_zeroTerminated = true;
    if (mode == StringBufferMode::copy) {
        const std::int32_t terminator = encoding.getEncodedSize(0);
        auto* buffer = new char[static_cast<std::size_t>(m_byteSize + terminator)];
        std::memcpy(buffer, data, static_cast<std::size_t>(m_byteSize));
        encoding.encodeChar(0, reinterpret_cast<std::uint8_t*>(buffer), m_byteSize + terminator, m_byteSize);
        m_data = buffer;
        m_zeroTerminated = true;
        m_ownsBuffer = true;
    }
}

CString::CString(const ICharEncoding& encoding, const char* data, std::int32_t byteSize, bool zeroTerminated)
    : m_data(data), m_byteSize(byteSize), m_zeroTerminated(zeroTerminated), m_ownsBuffer(false), m_encoding(&encoding),
      m_charCount(-1)
{
}

CString::~CString()
{
    if (m_ownsBuffer) delete[] m_data;
}

std::int32_t CString::getLength() const
{
    std::int32_t count = m_charCount.load(std::memory_order_relaxed);
    if (count < 0) {
        count = m_encoding->countChars(reinterpret_cast<const std::uint8_t*>(m_data), m_byteSize, 0);
        m_charCount.store(count, std::memory_order_relaxed);
    }
    return count;
}

int CString::compareTo(const IBase& other) const
{
    const auto* text = dynamic_cast<const IString*>(&other);
    if (text == nullptr) return 1;
    return toString().compare(String(P<IString>(const_cast<IString*>(text))));
}

String CString::toString() const
{
    return String(P<IString>(const_cast<CString*>(this)));
}

CLatin1String::CLatin1String(const char* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getLatin1Encoding(), data, byteSize, charCount, mode)
{
}

CUTF8String::CUTF8String(const char* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getUTF8Encoding(), data, byteSize, charCount, mode)
{
}

CUTF16String::CUTF16String(const char16_t* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getUTF16Encoding(), data, byteSize, charCount, mode)
{
}

CUTF32String::CUTF32String(const char32_t* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getUTF32Encoding(), data, byteSize, charCount, mode)
{
}

CWCharString::CWCharString(const wchar_t* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getWCharEncoding(), data, byteSize, charCount, mode)
{
}

CCPString::CCPString(const char* data, std::int32_t byteSize, std::int32_t charCount, StringBufferMode mode)
    : CString(getCPEncoding(), data, byteSize, charCount, mode)
{
}

CStringSlice::CStringSlice(const P<IString>& parent, std::int32_t startByte, std::int32_t endByte,
                           std::int32_t charCount)
    : CString(parent->getEncoding(), parent->getData() + startByte, endByte - startByte,
              parent->isZeroTerminated() && endByte == parent->getByteSize())
{
    const auto* parentSlice = dynamic_cast<const CStringSlice*>(parent.get());
    m_owner = parentSlice != nullptr ? parentSlice->m_owner : parent;
    if (charCount >= 0) setKnownLength(charCount);
}

const P<IString>& getEmptyString(const ICharEncoding& encoding)
{
    // One shared empty text per encoding, never freed, so that Strings held
    // in statics stay valid while the program ends.
    static const P<IString>* empties[] = {
        new P<IString>(new CString(getUTF8Encoding(), "", -1, 0, StringBufferMode::literal), adopt),
        new P<IString>(new CString(getLatin1Encoding(), "", -1, 0, StringBufferMode::literal), adopt),
        new P<IString>(new CString(getUTF16Encoding(), u"", -1, 0, StringBufferMode::literal), adopt),
        new P<IString>(new CString(getUTF32Encoding(), U"", -1, 0, StringBufferMode::literal), adopt),
        new P<IString>(new CString(getCPEncoding(), "", -1, 0, StringBufferMode::literal), adopt),
    };
    for (const P<IString>* empty : empties) {
        if ((*empty)->getEncoding().getID() == encoding.getID()) return *empty;
    }
    return *empties[0];
}

}  // namespace fenn
