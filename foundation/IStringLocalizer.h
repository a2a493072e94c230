#pragma once

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "foundation/TextKey.h"

namespace fenn {

// Turns a text key into the user's language. The language manager installs
// the real one; until then the default text is the answer.
class IStringLocalizer : public virtual IBase
{
public:
    virtual String localize(const String& key, const String& defaultText) const = 0;
};

// Answers every key with its default text.
class CDefaultStringLocalizer : public CObject, public virtual IStringLocalizer
{
public:
    String localize(const String& key, const String& defaultText) const override;
};

// The process-wide localizer; never null. Set it on the GUI thread before
// other threads start asking.
P<IStringLocalizer> getStringLocalizer();
void setStringLocalizer(P<IStringLocalizer> localizer);

// The localised text of a key.
String localize(const TextKey& text);

}  // namespace fenn
