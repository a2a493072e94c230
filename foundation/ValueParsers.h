#pragma once

#include <cstdint>

#include "foundation/String.h"

// The text forms of the boxed values (CBoxedValues.h): what toString of a box
// writes, these read back. Free functions, callable from any thread. Each
// throws CParseError for a text that is not a value of its type.
namespace fenn {

// Exactly "true" or "false": no other case, no blanks around.
bool parseBool(const String& text);

// As toInt and toInt64 in base 10.
std::int32_t parseInt(const String& text);
std::int64_t parseInt64(const String& text);

// As toDouble. parseFloat also refuses a finite value beyond the range of
// float rather than turning it into an infinity.
double parseDouble(const String& text);
float parseFloat(const String& text);

}  // namespace fenn
