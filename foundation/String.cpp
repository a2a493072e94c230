#include "foundation/String.h"

#include <cstring>
#include <string>

#include "foundation/CCharEncodings.h"
#include "foundation/CString.h"
#include "foundation/CUnicodeData.h"
#include "foundation/StringBuilder.h"

namespace fenn {

namespace {

// Fixed-width encodings find a position without walking.
std::int32_t fixedCharSize(const ICharEncoding& encoding)
{
    const std::uint32_t id = encoding.getID();
    if (id == makeEncodingID("LAT1")) return 1;
    if (id == makeEncodingID("UF32")) return 4;
    return 0;
}

}  // namespace

// ---- construction and conversion ----

String::String() : m_text(getEmptyString(getUTF8Encoding())) {}

String::String(const char* literal)
    : m_text(literal == nullptr || *literal == '\0'
                 ? getEmptyString(getUTF8Encoding())
                 : P<IString>(new CUTF8String(literal, -1, -1, StringBufferMode::literal), adopt))
{
}

String::String(const wchar_t* literal)
    : m_text(literal == nullptr || *literal == L'\0'
                 ? getEmptyString(getWCharEncoding())
                 : P<IString>(new CWCharString(literal, -1, -1, StringBufferMode::literal), adopt))
{
}

String::String(P<IString> text) : m_text(text ? std::move(text) : getEmptyString(getUTF8Encoding())) {}

namespace {

String copyBytes(const ICharEncoding& encoding, const void* data, std::size_t byteSize)
{
    if (byteSize == 0) return String(getEmptyString(encoding));
    return String(P<IString>(
        new CString(encoding, data, static_cast<std::int32_t>(byteSize), -1, StringBufferMode::copy), adopt));
}

}  // namespace

String String::copyOf(std::string_view utf8)
{
    return copyBytes(getUTF8Encoding(), utf8.data(), utf8.size());
}

String String::copyOfLatin1(std::string_view latin1)
{
    return copyBytes(getLatin1Encoding(), latin1.data(), latin1.size());
}

String String::copyOfUTF16(std::u16string_view utf16)
{
    return copyBytes(getUTF16Encoding(), utf16.data(), utf16.size() * 2);
}

String String::copyOfUTF32(std::u32string_view utf32)
{
    return copyBytes(getUTF32Encoding(), utf32.data(), utf32.size() * 4);
}

String String::copyOfCP(std::string_view multibyte)
{
    return copyBytes(getCPEncoding(), multibyte.data(), multibyte.size());
}

String String::fromCodePoint(std::uint32_t codePoint)
{
    CStringBuilder builder(getUTF8Encoding());
    builder.appendCodePoint(codePoint);
    return builder.finish();
}

String String::asEncoding(const ICharEncoding& encoding) const
{
    if (isEmpty()) return String(getEmptyString(encoding));
    if (getEncoding().getID() == encoding.getID()) {
        if (isZeroTerminated()) return *this;
        return String(P<IString>(
            new CString(encoding, getData(), getByteSize(), m_text->getKnownLength(), StringBufferMode::copy), adopt));
    }
    CStringBuilder builder(encoding);
    builder.append(*this);
    return builder.finish();
}

String String::asLatin1() const
{
    return asEncoding(getLatin1Encoding());
}
String String::asUTF8() const
{
    return asEncoding(getUTF8Encoding());
}
String String::asUTF16() const
{
    return asEncoding(getUTF16Encoding());
}
String String::asUTF32() const
{
    return asEncoding(getUTF32Encoding());
}
String String::asWChar() const
{
    return asEncoding(getWCharEncoding());
}
String String::asCP() const
{
    return asEncoding(getCPEncoding());
}

std::string String::toStdString() const
{
    const String utf8 = asUTF8();
    return std::string(utf8.getData(), static_cast<std::size_t>(utf8.getByteSize()));
}

std::u32string String::toUTF32() const
{
    std::u32string result;
    CCharReader reader(*m_text);
    for (std::uint32_t codePoint = 0; reader.read(codePoint);) result += static_cast<char32_t>(codePoint);
    return result;
}

const char* String::c_str() const
{
    if (!hasEncoding(makeEncodingID("UTF8")) || !isZeroTerminated())
        const_cast<String*>(this)->m_text = asUTF8().m_text;
    return getData();
}

std::string_view String::view() const
{
    const char* data = c_str();
    return {data, static_cast<std::size_t>(getByteSize())};
}

// ---- positions ----

CStringPos String::getPos(std::int32_t index) const
{
    if (index < 0) return CStringPos::end();
    if (const std::int32_t size = fixedCharSize(getEncoding())) {
        const std::int32_t length = getByteSize() / size;
        return index <= length ? CStringPos{index, index * size} : CStringPos::end();
    }
    return advance({}, index);
}

CStringPos String::advance(CStringPos pos, std::int32_t count) const
{
    if (pos.isEnd()) return pos;
    CCharReader reader(*m_text, pos);
    std::uint32_t codePoint = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!reader.read(codePoint)) return CStringPos::end();
    }
    return reader.getPos();
}

CStringPos String::retreat(CStringPos pos, std::int32_t count) const
{
    if (pos.isEnd()) pos = {getLength(), getByteSize()};
    if (count > pos.index) return CStringPos::end();
    if (!getEncoding().isReversible()) return getPos(pos.index - count);
    CCharReader reader(*m_text, pos);
    std::uint32_t codePoint = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!reader.readBackward(codePoint)) return CStringPos::end();
    }
    return reader.getPos();
}

std::uint32_t String::charAt(CStringPos pos) const
{
    if (pos.isEnd()) return 0;
    CCharReader reader(*m_text, pos);
    std::uint32_t codePoint = 0;
    return reader.read(codePoint) ? codePoint : 0;
}

std::uint32_t String::charAtChecked(std::int32_t index) const
{
    return charAt(getPos(index));
}

// ---- comparison ----

int String::compare(const String& other, std::int32_t maxLength, CaseSensitivity caseSensitivity) const
{
    CCharReader a(*m_text);
    CCharReader b(*other.m_text);
    for (std::int32_t i = 0; maxLength < 0 || i < maxLength; ++i) {
        std::uint32_t codeA = 0;
        std::uint32_t codeB = 0;
        const bool hasA = a.read(codeA);
        const bool hasB = b.read(codeB);
        if (!hasA) return hasB ? -1 : 0;
        if (!hasB) return 1;
        codeA = foldCodePoint(codeA, caseSensitivity);
        codeB = foldCodePoint(codeB, caseSensitivity);
        if (codeA != codeB) return codeA < codeB ? -1 : 1;
    }
    return 0;
}

bool String::equals(const String& other, CaseSensitivity caseSensitivity) const
{
    if (m_text.get() == other.m_text.get()) return true;
    const std::int32_t lengthA = m_text->getKnownLength();
    const std::int32_t lengthB = other.m_text->getKnownLength();
    if (lengthA >= 0 && lengthB >= 0 && lengthA != lengthB) return false;
    if (caseSensitivity == CaseSensitivity::sensitive && getEncoding().getID() == other.getEncoding().getID() &&
        getByteSize() == other.getByteSize() &&
        std::memcmp(getData(), other.getData(), static_cast<std::size_t>(getByteSize())) == 0)
        return true;
    return compare(other, -1, caseSensitivity) == 0;
}

bool String::matchesAt(CCharReader& text, const String& needle, CaseSensitivity caseSensitivity)
{
    CCharReader reader(*needle.m_text);
    std::uint32_t wanted = 0;
    while (reader.read(wanted)) {
        std::uint32_t found = 0;
        if (!text.read(found) || foldCodePoint(found, caseSensitivity) != foldCodePoint(wanted, caseSensitivity))
            return false;
    }
    return true;
}

bool String::startsWith(const String& prefix, CaseSensitivity caseSensitivity) const
{
    CCharReader reader(*m_text);
    return matchesAt(reader, prefix, caseSensitivity);
}

bool String::endsWith(const String& suffix, CaseSensitivity caseSensitivity) const
{
    const std::int32_t length = getLength();
    const std::int32_t suffixLength = suffix.getLength();
    if (suffixLength > length) return false;
    CCharReader reader(*m_text, retreat(CStringPos::end(), suffixLength));
    return matchesAt(reader, suffix, caseSensitivity);
}

std::uint32_t hashCodePoints(const IString& text)
{
    std::uint32_t h = 0;
    CCharReader reader(text);
    for (std::uint32_t c = 0; reader.read(c);) {
        const auto shifted = static_cast<std::uint32_t>(static_cast<std::int32_t>(h) >> 2);
        h = ((h & 0x0FFFFFFFu) * 8u) ^ ((shifted ^ c) & 0x7FFFFFFFu);
    }
    return h;
}

std::uint32_t String::hash() const
{
    return hashCodePoints(*m_text);
}

String fromInt(std::int64_t value)
{
    return String::copyOf(std::to_string(value));
}

}  // namespace fenn
