#pragma once

#include <cstdint>

#include "foundation/String.h"

namespace fenn::gui {

// A colour as one 32-bit value with red in the low byte, then green, blue
// and alpha (0 is opaque here, so a value read from "#RRGGBB" needs no
// alpha). Plain value, any thread.
class CColor
{
public:
    constexpr CColor() = default;
    constexpr CColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha = 255)
        : m_value(red | (green << 8) | (blue << 16) | (static_cast<std::uint32_t>(255 - alpha) << 24))
    {
    }
    static constexpr CColor fromValue(std::uint32_t value)
    {
        CColor color;
        color.m_value = value;
        return color;
    }
    // "#" and six hex digits, RRGGBB; anything else throws CParseError with
    // "Error parsing color value.".
    static CColor parse(const String& text);

    constexpr std::uint32_t getValue() const { return m_value; }
    constexpr std::uint8_t red() const { return m_value & 0xff; }
    constexpr std::uint8_t green() const { return (m_value >> 8) & 0xff; }
    constexpr std::uint8_t blue() const { return (m_value >> 16) & 0xff; }
    constexpr std::uint8_t alpha() const { return 255 - ((m_value >> 24) & 0xff); }
    constexpr CColor withAlpha(std::uint8_t alpha) const { return {red(), green(), blue(), alpha}; }
    // The colour moved toward other by amount (0.0 keeps this one, 1.0 gives other).
    CColor mixedWith(CColor other, double amount) const;

    friend constexpr bool operator==(CColor, CColor) = default;

private:
    std::uint32_t m_value = 0;
};

}  // namespace fenn::gui
