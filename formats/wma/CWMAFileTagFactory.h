#pragma once

#include "foundation/CObject.h"
#include "tags/IMediaFileTag.h"

namespace tbx {

// Makes a CWMAFileTag for files with the extension ".wma" in any case; gives
// null for every other file. Holds no state.
class CWMAFileTagFactory : public fenn::CObject, public virtual IMediaFileTagFactory
{
public:
    fenn::P<IMediaFileTag> createTag(const fenn::CURI& uri) override;
};

}  // namespace tbx
