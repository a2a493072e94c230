#include "foundation/FormatDataSize.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

namespace {

constexpr TextKey kUnitNames[] = {texts::dataSizeBytes, texts::dataSizeKB, texts::dataSizeMB, texts::dataSizeGB,
                                  texts::dataSizeTB};
constexpr int kLargestUnit = 4;
constexpr int kMostAutomaticScalings = 5;
// Switching to the next unit from 950 on keeps the number below four digits
// ("0.9 KB" rather than "1000.0 Bytes").
constexpr double kNextUnitThreshold = 950.0;

}  // namespace

String formatDataSize(double value, int unit, int precision)
{
    if (unit < 0) {
        unit = 0;
        while (std::fabs(value) >= kNextUnitThreshold && unit < kMostAutomaticScalings) {
            value /= 1024.0;
            ++unit;
        }
    } else {
        for (int i = 0; i < unit; ++i) value /= 1024.0;
    }
    if (unit > kLargestUnit) unit = kLargestUnit;

    const int size = std::snprintf(nullptr, 0, "%.*f ", precision, value);
    std::string text(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
    std::snprintf(text.data(), text.size() + 1, "%.*f ", precision, value);
    return String::copyOf(text) + localize(kUnitNames[unit]);
}

}  // namespace fenn
