#pragma once

#include <cstdint>

#include "foundation/String.h"

// Numbers read from and written to text. Free functions, callable from any
// thread; the double forms read the C library's current locale at each call.
namespace fenn {

// Integers: an optional "+" or "-", then digits 0-9 and letters A-Z or a-z
// (either case) for the values 10 to 35. The first character that is not a
// digit below the radix ends the number; a non-ASCII character always does.
// No digits, or anything left after them, throws CParseError. Overflow is not
// detected: the digits are accumulated in the unsigned type of the result's
// width, negated there for "-", and the bits are taken as the result (so
// toInt("4294967297") is 1 and toInt("2147483648") is INT32_MIN).
// toUInt takes the sign too; toUInt("-1") is 0xFFFFFFFF, as with strtoul.
std::int32_t toInt(const String& text, int radix = 10);
std::int64_t toInt64(const String& text, int radix = 10);
std::uint32_t toUInt(const String& text, int radix = 10);

// The same, but a tail after the digits is allowed: consumed is set to the
// number of characters read (the sign included). No digits still throws.
std::int32_t toIntTolerant(const String& text, int radix, std::int32_t& consumed);
std::int64_t toInt64Tolerant(const String& text, int radix, std::int32_t& consumed);
std::uint32_t toUIntTolerant(const String& text, int radix, std::int32_t& consumed);

// A floating point value written with the current locale's decimal point and,
// where the locale groups digits, its group separator between the digits of
// the integer part in the locale's group sizes ("1.234.567,5" in a German
// locale). Leading blanks and tabs are skipped; the rest of the text must be
// the number. "inf", "infinity" and "nan" are accepted in any case. Failure,
// and a value outside the range of double, throws CParseError.
double toDouble(const String& text);

// The shortest text that toDouble reads back as the same value, with the
// current locale's decimal point and no grouping: "0.1", "1e+20", "-0".
String fromDouble(double value);

}  // namespace fenn
