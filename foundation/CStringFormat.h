#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "foundation/CObject.h"
#include "foundation/String.h"

namespace fenn {

namespace detail {

template <class T>
concept FormatInteger =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

}  // namespace detail

// Builds a text from a printf format whose arguments are pushed one at a
// time. Each push fills the next field (or its "*" width or precision) and
// is formatted at once; getResult gives the text once every field is filled.
//
// A field is "%", up to six flags among "-+0# ", a width (digits or "*"), a
// precision ("." with digits or "*"), a length modifier (l ll L h hh z j t
// I64) and one of the conversions d i o x X u, e E f g G, c C, s S. "%%" is a
// per cent sign. Integer fields take pushed integers, read as printf would
// read an argument of the pushed type (so an int of -1 under "%x" gives
// "ffffffff"); "h" and "hh" narrow the value further, the other modifiers
// change nothing. Floating point fields take doubles and follow the C
// locale's decimal point. "%c" and "%C" take a code point (or an integer
// used as one), "%s" and "%S" a String; both are written as UTF-8, and their
// width and precision count code points. An error in the format is thrown
// when the parse reaches it: by the constructor for the first field, by the
// push that fills the field before it otherwise.
//
// One object belongs to one thread; it is usually a local.
class CStringFormat : public CObject
{
public:
    explicit CStringFormat(const String& format);

    template <detail::FormatInteger T> CStringFormat& push(T value)
    {
        return pushInteger(static_cast<std::uint64_t>(value), std::is_signed_v<T>, sizeof(T));
    }
    CStringFormat& push(double value);
    CStringFormat& push(const String& value);
    CStringFormat& push(const char* value) { return push(String(value)); }
    CStringFormat& push(char32_t codePoint);
    // A narrow character is taken as a Latin-1 code point.
    CStringFormat& push(char value) { return push(static_cast<char32_t>(static_cast<unsigned char>(value))); }

    // True when every field has its argument.
    bool isComplete() const { return !m_inField; }
    // Throws CInvalidObjectStateError while a field still waits for arguments.
    String getResult() const;

    // The whole job in one call: format("%d of %d", 3, 7).
    template <class... Arguments> static String format(const String& format, const Arguments&... arguments)
    {
        CStringFormat builder(format);
        (builder.push(arguments), ...);
        return builder.getResult();
    }

private:
    enum class ArgumentKind { integer, floating, character, string };

    struct Field
    {
        std::string flags;
        bool hasWidth = false;
        bool widthPending = false;
        int width = 0;
        bool hasPrecision = false;
        bool precisionPending = false;
        int precision = 0;
        // Bytes that "h" (2) or "hh" (1) leave of an integer; 8 otherwise.
        int integerSize = 8;
        char conversion = 'd';
        ArgumentKind kind = ArgumentKind::integer;
        // The description could not be read; every push repeats the error.
        bool invalid = false;
    };

    CStringFormat& pushInteger(std::uint64_t bits, bool isSigned, int byteSize);
    // Gives a pending "*" its value; false when no "*" is pending.
    bool takeStarArgument(std::uint64_t bits, bool isSigned, const char* method);
    // Throws unless a field waits for an argument of the given kind.
    void requireField(ArgumentKind kind, const char* method);
    // Copies plain text to the result up to the next field and reads that
    // field's description into m_field.
    void advance(const char* method);
    void parseField(const char* method);
    int parseNumber(const char* method);
    void appendPadded(std::string_view text, std::int32_t codePoints);
    [[noreturn]] void throwInvalidArgument(const char* method, const char* text) const;

    std::string m_format;
    std::size_t m_pos = 0;
    std::string m_result;
    Field m_field;
    bool m_inField = false;
};

}  // namespace fenn
