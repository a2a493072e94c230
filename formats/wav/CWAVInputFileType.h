#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of RIFF WAVE files (".wav"). Owned by the application's file type
// table; any thread.
class CWAVInputFileType : public CInputFileTypeBase
{
public:
    CWAVInputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
