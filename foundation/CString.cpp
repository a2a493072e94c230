#include "foundation/CString.h"

#include <cstring>

#include "foundation/String.h"
#include "foundation/UTF8.h"

namespace fenn {

CString::CString(const char* data, std::int32_t byteSize, StringBufferMode mode)
    : m_data(data), m_byteSize(byteSize), m_zeroTerminated(false), m_ownsBuffer(mode == StringBufferMode::adopt)
{
    if (data == nullptr) {
        m_data = "";
        m_byteSize = 0;
        m_zeroTerminated = true;
        m_ownsBuffer = false;
        return;
    }
    if (byteSize < 0) {
        m_byteSize = static_cast<std::int32_t>(std::strlen(data));
        m_zeroTerminated = true;
    }
    if (mode == StringBufferMode::copy) {
        auto* buffer = new char[static_cast<std::size_t>(m_byteSize) + 1];
        std::memcpy(buffer, data, static_cast<std::size_t>(m_byteSize));
        buffer[m_byteSize] = '\0';
        m_data = buffer;
        m_zeroTerminated = true;
        m_ownsBuffer = true;
    }
}

CString::~CString()
{
    if (m_ownsBuffer) delete[] m_data;
}

std::int32_t CString::getLength() const
{
    std::int32_t count = m_charCount.load(std::memory_order_relaxed);
    if (count < 0) {
        count = 0;
        std::uint32_t codePoint = 0;
        for (std::int32_t pos = 0; (pos = utf8::decodeLenient(m_data, m_byteSize, pos, codePoint)) >= 0;) ++count;
        m_charCount.store(count, std::memory_order_relaxed);
    }
    return count;
}

int CString::compareTo(const IBase& other) const
{
    const auto* text = dynamic_cast<const IString*>(&other);
    if (text == nullptr) return 1;
    return String(P<IString>(const_cast<CString*>(this))).compare(String(P<IString>(const_cast<IString*>(text))));
}

String CString::toString() const
{
    return String(P<IString>(const_cast<CString*>(this)));
}

}  // namespace fenn
