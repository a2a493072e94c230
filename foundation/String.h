#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CCharReader.h"
#include "foundation/ICharEncoding.h"
#include "foundation/IString.h"
#include "foundation/P.h"

namespace fenn {

enum class CaseSensitivity { sensitive, insensitive };

// The text value type. It holds one counted reference to an immutable
// IString and is never null: an unset String is the shared empty text.
// Copies share the text; operations that change text build a new one.
//
// The text keeps the encoding it arrived in; operations work on code points,
// so the same text in Latin-1, UTF-8, UTF-16, UTF-32 or the locale's
// multibyte form compares, hashes and searches alike. A String made from a
// character pointer wraps the bytes without copying them (meant for
// literals); narrow literals are UTF-8, the compiler's form on this
// platform. Use copyOf for text in temporary buffers.
//
// Lengths and indexes count code points; maxLength -1 means "to the end".
class String
{
public:
    String();
    String(const char* literal);
    String(const wchar_t* literal);
    explicit String(P<IString> text);

    // Copies: UTF-8, Latin-1, UTF-16, UTF-32, and the locale's multibyte text.
    static String copyOf(std::string_view utf8);
    static String copyOfLatin1(std::string_view latin1);
    static String copyOfUTF16(std::u16string_view utf16);
    static String copyOfUTF32(std::u32string_view utf32);
    static String copyOfCP(std::string_view multibyte);
    // A String of one code point.
    static String fromCodePoint(std::uint32_t codePoint);

    // ---- facts and conversion ----
    const P<IString>& getText() const { return m_text; }
    const ICharEncoding& getEncoding() const { return m_text->getEncoding(); }
    bool hasEncoding(std::uint32_t encodingID) const { return getEncoding().getID() == encodingID; }
    bool isEmpty() const { return m_text->getByteSize() == 0; }
    std::int32_t getLength() const { return m_text->getLength(); }
    std::int32_t getByteSize() const { return m_text->getByteSize(); }
    const char* getData() const { return m_text->getData(); }
    bool isZeroTerminated() const { return m_text->isZeroTerminated(); }

    // The same text in an encoding, zero-terminated: this string when it is
    // already so, the encoding's shared empty string when empty, otherwise a
    // converted copy (code points the target cannot hold are written as its
    // encodeChar writes them).
    String asEncoding(const ICharEncoding& encoding) const;
    String asLatin1() const;
    String asUTF8() const;
    String asUTF16() const;
    String asUTF32() const;
    String asWChar() const;
    String asCP() const;

    // UTF-8 copy for the standard library.
    std::string toStdString() const;
    std::u32string toUTF32() const;
    // Zero-terminated UTF-8 bytes, valid while this String lives. A String
    // of another encoding turns into its UTF-8 form (the same text), so do
    // not call these on a String object that another thread reads meanwhile.
    const char* c_str() const;
    std::string_view view() const;

    // ---- positions ----
    CStringPos getPos(std::int32_t index) const;
    CStringPos advance(CStringPos pos, std::int32_t count) const;
    CStringPos retreat(CStringPos pos, std::int32_t count) const;
    CStringPos next(CStringPos pos) const { return advance(pos, 1); }
    // The code point at pos; 0 at or past the end.
    std::uint32_t charAt(CStringPos pos) const;
    std::uint32_t charAtChecked(std::int32_t index) const;

    // ---- comparison ----
    // -1, 0 or 1 by code point values; a proper prefix orders first.
    int compare(const String& other, std::int32_t maxLength = -1,
                CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    int compareNoCase(const String& other, std::int32_t maxLength = -1) const
    {
        return compare(other, maxLength, CaseSensitivity::insensitive);
    }
    bool equals(const String& other, CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    bool equalsNoCase(const String& other) const { return equals(other, CaseSensitivity::insensitive); }
    bool startsWith(const String& prefix, CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    bool endsWith(const String& suffix, CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    std::uint32_t hash() const;

    // ---- search: positions of hits, CStringPos::end() when there is none ----
    CStringPos find(const String& needle, CStringPos from = {},
                    CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    CStringPos find(std::uint32_t codePoint, CStringPos from = {}) const;
    CStringPos findNoCase(const String& needle, CStringPos from = {}) const
    {
        return find(needle, from, CaseSensitivity::insensitive);
    }
    // The last hit that starts before limit (the whole text by default).
    CStringPos findLast(const String& needle, CStringPos limit = CStringPos::end(),
                        CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    CStringPos findLastNoCase(const String& needle, CStringPos limit = CStringPos::end()) const
    {
        return findLast(needle, limit, CaseSensitivity::insensitive);
    }
    CStringPos findAnyOf(const String& codePoints, CStringPos from = {}) const;
    CStringPos findNotOf(const String& codePoints, CStringPos from = {}) const;
    std::int32_t countOf(const String& needle, CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    std::int32_t countOfNoCase(const String& needle) const { return countOf(needle, CaseSensitivity::insensitive); }
    bool contains(const String& needle) const { return !find(needle).isEnd(); }

    // ---- derived text ----
    // A slice that shares this text's bytes.
    String substring(std::int32_t start, std::int32_t length = -1) const;
    String substring(CStringPos start, CStringPos end) const;
    String left(std::int32_t length) const { return substring(0, length); }
    String right(std::int32_t length) const;
    String concat(const String& other) const;
    String& operator+=(const String& other);
    // Every hit of from replaced by to; the inserted text is not searched again.
    String replace(const String& from, const String& to,
                   CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    String replaceFirst(const String& from, const String& to,
                        CaseSensitivity caseSensitivity = CaseSensitivity::sensitive) const;
    String insert(std::int32_t index, const String& text) const;
    String remove(std::int32_t start, std::int32_t length = -1) const;
    // Without leading and trailing blanks, tabs, line ends and other white space.
    String trim() const;
    String trimLeft() const;
    String trimRight() const;
    String toLowerCase() const;
    String toUpperCase() const;
    // The pieces between the separators (all of them, also empty ones).
    std::vector<String> split(const String& separator) const;

    friend String operator+(const String& a, const String& b) { return a.concat(b); }
    friend bool operator==(const String& a, const String& b) { return a.equals(b); }
    friend bool operator!=(const String& a, const String& b) { return !a.equals(b); }
    friend bool operator<(const String& a, const String& b) { return a.compare(b) < 0; }

private:
    // Whether the needle matches at the reader's position; the reader is
    // left after the match on success.
    static bool matchesAt(CCharReader& text, const String& needle, CaseSensitivity caseSensitivity);
    // Builds a string from pieces of code points in this string's encoding
    // family (UTF-8 for all but UTF-16 and UTF-32).
    String build(const std::u32string& codePoints) const;

    P<IString> m_text;
};

// The code-point hash shared by strings and the hash table: for each code
// point c, h = ((h & 0x0FFFFFFF) * 8) ^ ((((signed)h >> 2) ^ c) & 0x7FFFFFFF).
std::uint32_t hashCodePoints(const IString& text);

String fromInt(std::int64_t value);

}  // namespace fenn
