#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of FLAC files (".flac"). Owned by the application's file type
// table; any thread.
class CFlacInputFileType : public CInputFileTypeBase
{
public:
    CFlacInputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
