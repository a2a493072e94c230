#include "foundation/ValueParsers.h"

#include <cmath>
#include <limits>

#include "foundation/CError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/StringParsers.h"

namespace fenn {

bool parseBool(const String& text)
{
    if (text.equals("true")) return true;
    if (text.equals("false")) return false;
    throw CParseError(localize(texts::boolParseError));
}

std::int32_t parseInt(const String& text)
{
    return toInt(text);
}

std::int64_t parseInt64(const String& text)
{
    return toInt64(text);
}

double parseDouble(const String& text)
{
    return toDouble(text);
}

float parseFloat(const String& text)
{
    const double value = toDouble(text);
    // Converting a finite double beyond the float range is undefined; such a
    // text is no float.
    if (std::isfinite(value) && std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        throw CParseError(localize(texts::doubleParseError));
    }
    return static_cast<float>(value);
}

}  // namespace fenn
