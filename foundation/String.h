#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/IString.h"
#include "foundation/P.h"

namespace fenn {

// The text value type. It holds one counted reference to an immutable
// IString and is never null: an unset String is the shared empty text.
// Copies share the text. A String made from a character pointer wraps the
// bytes without copying them (meant for literals); String::copyOf copies.
class String
{
public:
    String();
    String(const char* literal);
    explicit String(P<IString> text);

    static String copyOf(std::string_view text);

    bool isEmpty() const { return m_text->getByteSize() == 0; }
    std::int32_t getLength() const { return m_text->getLength(); }
    std::int32_t getByteSize() const { return m_text->getByteSize(); }
    const char* getData() const { return m_text->getData(); }
    bool isZeroTerminated() const { return m_text->isZeroTerminated(); }
    const P<IString>& getText() const { return m_text; }

    // The same text as zero-terminated UTF-8 (this string if it is already so).
    String asUTF8() const;
    // Zero-terminated UTF-8 bytes, valid as long as this String lives.
    const char* c_str() const;
    std::string toStdString() const { return std::string(getData(), static_cast<std::size_t>(getByteSize())); }
    std::string_view view() const { return {getData(), static_cast<std::size_t>(getByteSize())}; }

    // -1, 0 or 1 by code point values; a proper prefix orders first.
    int compare(const String& other) const;
    bool equals(const String& other) const;
    std::uint32_t hash() const;

    String concat(const String& other) const;
    String& operator+=(const String& other);
    // Every occurrence of from replaced by to; the inserted text is not searched again.
    String replace(const String& from, const String& to) const;
    bool startsWith(const String& prefix) const;
    bool contains(const String& needle) const;

    friend String operator+(const String& a, const String& b) { return a.concat(b); }
    friend bool operator==(const String& a, const String& b) { return a.equals(b); }
    friend bool operator!=(const String& a, const String& b) { return !a.equals(b); }
    friend bool operator<(const String& a, const String& b) { return a.compare(b) < 0; }

private:
    P<IString> m_text;
};

// The code-point hash shared by strings and the hash table: for each code
// point c, h = ((h & 0x0FFFFFFF) * 8) ^ ((((signed)h >> 2) ^ c) & 0x7FFFFFFF).
std::uint32_t hashCodePoints(const char* utf8, std::int32_t byteSize);

String fromInt(std::int64_t value);

}  // namespace fenn
