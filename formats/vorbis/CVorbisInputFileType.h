#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of Ogg Vorbis files (".ogg"). Owned by the application's file type
// table; any thread.
class CVorbisInputFileType : public CInputFileTypeBase
{
public:
    CVorbisInputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
