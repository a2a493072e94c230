#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of Windows Media audio files (".wma"). Owned by the application's file type
// table; any thread.
class CWMAInputFileType : public CInputFileTypeBase
{
public:
    CWMAInputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
