#pragma once

#include <concepts>
#include <cstdint>

#include "foundation/String.h"

namespace fenn {

// A byte count for people: "1.5 MB". With a negative unit the value is
// divided by 1024 while its magnitude is at least 950, at most five times;
// otherwise it is divided exactly unit times. Units above TB are shown as TB
// without undoing the division, so 1024^5 bytes read "1.0 TB". The number is
// printed with precision decimals and the locale's decimal point, followed by
// a blank and the localised unit name. Any thread.
String formatDataSize(double value, int unit = -1, int precision = 1);

// Integer counts go through double; above 2^53 bytes the last digits of a
// count shown in bytes are rounded.
template <std::integral T> String formatDataSize(T value, int unit = -1, int precision = 1)
{
    return formatDataSize(static_cast<double>(value), unit, precision);
}

}  // namespace fenn
