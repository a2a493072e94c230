#include <mutex>

#include "foundation/IStringLocalizer.h"

namespace fenn {

namespace {

std::mutex& localizerMutex()
{
    static std::mutex mutex;
    return mutex;
}

P<IStringLocalizer>& currentLocalizer()
{
    static P<IStringLocalizer> localizer;
    return localizer;
}

}  // namespace

String CDefaultStringLocalizer::localize(const String&, const String& defaultText) const
{
    return defaultText;
}

P<IStringLocalizer> getStringLocalizer()
{
    std::lock_guard lock(localizerMutex());
    P<IStringLocalizer>& localizer = currentLocalizer();
    if (!localizer) localizer = make<CDefaultStringLocalizer>();
    return localizer;
}

void setStringLocalizer(P<IStringLocalizer> localizer)
{
    std::lock_guard lock(localizerMutex());
    currentLocalizer() = std::move(localizer);
}

String localize(const TextKey& text)
{
    return getStringLocalizer()->localize(String(text.key), String(text.defaultText));
}

}  // namespace fenn
