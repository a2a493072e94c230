#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of MPEG audio files (".mp3"). Owned by the application's file type
// table; any thread.
class CMP3InputFileType : public CInputFileTypeBase
{
public:
    CMP3InputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
