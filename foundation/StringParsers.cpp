#include "foundation/StringParsers.h"

#include <charconv>
#include <climits>
#include <clocale>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

#include "foundation/CError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

namespace {

// The value of an ASCII digit or letter; 99 for anything else (the bytes of
// non-ASCII characters included), which no radix accepts.
int digitValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    return 99;
}

// Reads a sign and digits from the start of text into the unsigned type U,
// letting the arithmetic wrap. Returns the bits of the value; consumed is the
// count of characters read. All of them are ASCII, so bytes and characters
// are the same count.
template <class U> U parseUnsigned(std::string_view text, int radix, std::int32_t& consumed)
{
    static_assert(std::is_unsigned_v<U>);
    std::size_t pos = 0;
    bool negative = false;
    if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) negative = text[pos++] == '-';
    const std::size_t firstDigit = pos;
    U value = 0;
    for (; pos < text.size(); ++pos) {
        const int digit = digitValue(text[pos]);
        if (digit >= radix) break;
        value = static_cast<U>(value * static_cast<U>(radix) + static_cast<U>(digit));
    }
    if (pos == firstDigit) throw CParseError("Error parsing integer.");
    consumed = static_cast<std::int32_t>(pos);
    return negative ? static_cast<U>(U(0) - value) : value;
}

template <class U> U parseWhole(const String& text, int radix)
{
    const std::string bytes = text.toStdString();
    std::int32_t consumed = 0;
    const U value = parseUnsigned<U>(bytes, radix, consumed);
    if (static_cast<std::size_t>(consumed) != bytes.size()) throw CParseError("Error parsing integer.");
    return value;
}

template <class U> U parseTolerant(const String& text, int radix, std::int32_t& consumed)
{
    const std::string bytes = text.toStdString();
    std::int32_t read = 0;
    const U value = parseUnsigned<U>(bytes, radix, read);
    consumed = read;
    return value;
}

[[noreturn]] void throwDoubleError()
{
    throw CParseError(localize(texts::doubleParseError));
}

// What the current locale says about writing numbers. Read at each call, as
// the program may switch the locale while it runs.
struct NumericConventions
{
    std::string decimalPoint;
    std::string groupSeparator;
    // Sizes of the digit groups from the right; the last one repeats. Empty
    // when the locale does not group.
    std::vector<int> groupSizes;
};

NumericConventions currentConventions()
{
    const std::lconv* conventions = std::localeconv();
    NumericConventions result;
    result.decimalPoint =
        conventions->decimal_point != nullptr && *conventions->decimal_point != '\0' ? conventions->decimal_point : ".";
    if (conventions->thousands_sep != nullptr && *conventions->thousands_sep != '\0' &&
        conventions->grouping != nullptr) {
        result.groupSeparator = conventions->thousands_sep;
        // CHAR_MAX, or a size of zero or less, ends the grouping.
        for (const char* size = conventions->grouping; *size > 0 && *size != CHAR_MAX; ++size)
            result.groupSizes.push_back(*size);
    }
    // A separator that looks like the decimal point cannot be told apart from it.
    if (result.groupSeparator == result.decimalPoint) result.groupSizes.clear();
    if (result.groupSizes.empty()) result.groupSeparator.clear();
    return result;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Checks the lengths of the groups of an integer part, given left to right,
// against the locale's sizes, which count from the right. The leftmost group
// may be shorter than its size, but not empty.
bool groupsMatch(const std::vector<std::size_t>& groups, const std::vector<int>& sizes)
{
    if (groups.size() < 2) return true;
    std::size_t sizeIndex = 0;
    for (std::size_t i = groups.size() - 1; i > 0; --i) {
        if (groups[i] != static_cast<std::size_t>(sizes[sizeIndex])) return false;
        if (sizeIndex + 1 < sizes.size()) ++sizeIndex;
    }
    return groups[0] >= 1 && groups[0] <= static_cast<std::size_t>(sizes[sizeIndex]);
}

// Rewrites the text of a double into the locale-free form that from_chars
// reads: no sign (returned apart), "." as the decimal point, no group
// separators. Throws at anything that is not part of a number.
std::string normaliseDouble(std::string_view text, const NumericConventions& conventions, bool& negative)
{
    std::size_t pos = 0;
    while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
    negative = false;
    if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) negative = text[pos++] == '-';
    // "inf" and "nan": from_chars judges the rest, and would also take a
    // second sign, which the letter test keeps out.
    if (pos < text.size() && digitValue(text[pos]) >= 10 && digitValue(text[pos]) <= 35)
        return std::string(text.substr(pos));

    std::string result;
    std::size_t mantissaDigits = 0;
    std::vector<std::size_t> groups{0};
    for (; pos < text.size(); ++pos) {
        if (isDigit(text[pos])) {
            result += text[pos];
            ++groups.back();
        } else if (!conventions.groupSeparator.empty() && groups.back() > 0 &&
                   text.substr(pos).starts_with(conventions.groupSeparator)) {
            pos += conventions.groupSeparator.size() - 1;
            groups.push_back(0);
        } else {
            break;
        }
    }
    if (groups.back() == 0 && groups.size() > 1) throwDoubleError();  // a separator after the last digit
    if (!groupsMatch(groups, conventions.groupSizes)) throwDoubleError();
    mantissaDigits += result.size();

    if (text.substr(pos).starts_with(conventions.decimalPoint)) {
        pos += conventions.decimalPoint.size();
        result += '.';
        for (; pos < text.size() && isDigit(text[pos]); ++pos, ++mantissaDigits) result += text[pos];
    }
    if (mantissaDigits == 0) throwDoubleError();

    if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E')) {
        result += text[pos++];
        if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) result += text[pos++];
        const std::size_t exponentStart = pos;
        for (; pos < text.size() && isDigit(text[pos]); ++pos) result += text[pos];
        if (pos == exponentStart) throwDoubleError();
    }
    if (pos != text.size()) throwDoubleError();
    return result;
}

}  // namespace

std::int32_t toInt(const String& text, int radix)
{
    return static_cast<std::int32_t>(parseWhole<std::uint32_t>(text, radix));
}

std::int64_t toInt64(const String& text, int radix)
{
    return static_cast<std::int64_t>(parseWhole<std::uint64_t>(text, radix));
}

std::uint32_t toUInt(const String& text, int radix)
{
    return parseWhole<std::uint32_t>(text, radix);
}

std::int32_t toIntTolerant(const String& text, int radix, std::int32_t& consumed)
{
    return static_cast<std::int32_t>(parseTolerant<std::uint32_t>(text, radix, consumed));
}

std::int64_t toInt64Tolerant(const String& text, int radix, std::int32_t& consumed)
{
    return static_cast<std::int64_t>(parseTolerant<std::uint64_t>(text, radix, consumed));
}

std::uint32_t toUIntTolerant(const String& text, int radix, std::int32_t& consumed)
{
    return parseTolerant<std::uint32_t>(text, radix, consumed);
}

double toDouble(const String& text)
{
    const std::string bytes = text.toStdString();
    bool negative = false;
    const std::string plain = normaliseDouble(bytes, currentConventions(), negative);
    double value = 0;
    const char* end = plain.data() + plain.size();
    const auto [stop, error] = std::from_chars(plain.data(), end, value);
    if (error != std::errc() || stop != end) throwDoubleError();
    return negative ? -value : value;
}

String fromDouble(double value)
{
    // The longest shortest form is "-2.2250738585072014e-308": 24 characters.
    char buffer[32];
    char* end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    std::string text(buffer, end);
    const std::string decimalPoint = currentConventions().decimalPoint;
    if (decimalPoint != ".") {
        if (const std::size_t dot = text.find('.'); dot != std::string::npos) text.replace(dot, 1, decimalPoint);
    }
    return String::copyOf(text);
}

}  // namespace fenn
