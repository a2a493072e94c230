#include "foundation/StringBuilder.h"

#include <cstring>

#include "foundation/CCharEncodings.h"
#include "foundation/CString.h"
#include "foundation/CUnicodeData.h"

namespace fenn {

void CStringBuilder::appendCodePoint(std::uint32_t codePoint)
{
    std::uint8_t encoded[16];
    const std::int32_t size = m_encoding.encodeChar(codePoint, encoded, sizeof encoded, 0);
    if (size == 0) return;
    m_bytes.append(reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(size));
    ++m_length;
}

void CStringBuilder::append(const String& text, CStringPos from, CStringPos to)
{
    if (from.isEnd()) return;
    if (to.isEnd()) to = {text.getLength(), text.getByteSize()};
    if (text.getEncoding().getID() == m_encoding.getID()) {
        m_bytes.append(text.getData() + from.byteOffset, static_cast<std::size_t>(to.byteOffset - from.byteOffset));
        m_length += to.index - from.index;
        return;
    }
    CCharReader reader(*text.getText(), from);
    std::uint32_t codePoint = 0;
    while (reader.getPos().index < to.index && reader.read(codePoint)) appendCodePoint(codePoint);
}

String CStringBuilder::finish()
{
    if (m_bytes.empty()) return String(getEmptyString(m_encoding));
    const auto size = static_cast<std::int32_t>(m_bytes.size());
    const std::int32_t terminator = m_encoding.getEncodedSize(0);
    auto* buffer = new char[static_cast<std::size_t>(size + terminator)];
    std::memcpy(buffer, m_bytes.data(), m_bytes.size());
    m_encoding.encodeChar(0, reinterpret_cast<std::uint8_t*>(buffer), size + terminator, size);
    const String result(P<IString>(new CString(m_encoding, buffer, size, m_length, StringBufferMode::adopt), adopt));
    m_bytes.clear();
    m_length = 0;
    return result;
}

std::uint32_t foldCodePoint(std::uint32_t codePoint, CaseSensitivity caseSensitivity)
{
    return caseSensitivity == CaseSensitivity::sensitive
               ? codePoint
               : static_cast<std::uint32_t>(CUnicodeData::fold(static_cast<std::int32_t>(codePoint)));
}

const ICharEncoding& commonEncoding(const ICharEncoding& a, const ICharEncoding& b)
{
    if (a.getID() == b.getID()) return a;
    auto universal = [](const ICharEncoding& e) {
        const std::uint32_t id = e.getID();
        return id == makeEncodingID("UTF8") || id == makeEncodingID("UF16") || id == makeEncodingID("UF32");
    };
    if (universal(a)) return a;
    if (universal(b)) return b;
    return getUTF8Encoding();
}

}  // namespace fenn
