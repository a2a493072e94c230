#include "gui/CColor.h"

#include <cmath>

#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/GuiTexts.h"

namespace fenn::gui {

namespace {

int hexDigit(char32_t c)
{
    if (c >= U'0' && c <= U'9') return static_cast<int>(c - U'0');
    if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a' + 10);
    if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A' + 10);
    return -1;
}

}  // namespace

CColor CColor::parse(const String& text)
{
    const std::u32string characters = text.toUTF32();
    if (characters.size() != 7 || characters[0] != U'#') throw CParseError(localize(texts::colorParseError));
    std::uint32_t rgb = 0;
    for (std::size_t i = 1; i < 7; ++i) {
        const int digit = hexDigit(characters[i]);
        if (digit < 0) throw CParseError(localize(texts::colorParseError));
        rgb = (rgb << 4) | static_cast<std::uint32_t>(digit);
    }
    return CColor(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                  static_cast<std::uint8_t>(rgb));
}

CColor CColor::mixedWith(CColor other, double amount) const
{
    const auto mix = [amount](int a, int b) {
        return static_cast<std::uint8_t>(std::lround(a + (b - a) * amount));
    };
    return {mix(red(), other.red()), mix(green(), other.green()), mix(blue(), other.blue()),
            mix(alpha(), other.alpha())};
}

}  // namespace fenn::gui
