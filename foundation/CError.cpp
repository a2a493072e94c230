#include "foundation/CError.h"

#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

CError::CError(String title, String description)
    : CException(title.isEmpty() ? String("Error") : std::move(title),
                 description.isEmpty() ? String("Unspecified error") : std::move(description))
{
}

CParseError::CParseError(String description) : CError(String(), std::move(description)) {}

CInvalidVolumeIDError::CInvalidVolumeIDError(const String& volumeId)
    : CError("Invalid Volume ID Error", String("Invalid volume id: ") + volumeId)
{
}

CNoSuchObjectError::CNoSuchObjectError() : CError(String(), localize(texts::noSuchObject)) {}

CReadOnlyError::CReadOnlyError(const String& objectDescription)
    : CError(String(), localize(texts::readOnly).replace("%DESC%", objectDescription))
{
}

}  // namespace fenn
