#pragma once

#include "formats/CInputFileTypeBase.h"

namespace tbx {

// The reading side of the audio formats beyond the program's own five that
// FFmpeg decodes: ".m4a", ".aac", ".mp4", ".opus", ".aif", ".aiff", ".wv",
// ".ape", ".mpc" and ".ac3", read by CFFmpegFileAudioSource (type name
// "DirectShow"). Owned by the application's file type table, after the five;
// any thread.
class CFFmpegInputFileType : public CInputFileTypeBase
{
public:
    CFFmpegInputFileType();

protected:
    fenn::P<IAudioSource> openSource(const fenn::CURI& uri) override;
};

}  // namespace tbx
