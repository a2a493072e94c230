#include "formats/ffmpeg/CFFmpegInputFileType.h"

#include "formats/ffmpeg/CFFmpegFileAudioSource.h"
#include "formats/ffmpeg/FFmpegTexts.h"

namespace tbx {

CFFmpegInputFileType::CFFmpegInputFileType()
    : CInputFileTypeBase(ffmpegTexts::fileFilterOther, "*.m4a;*.aac;*.mp4;*.opus;*.aif;*.aiff;*.wv;*.ape;*.mpc;*.ac3",
                         {".m4a", ".aac", ".mp4", ".opus", ".aif", ".aiff", ".wv", ".ape", ".mpc", ".ac3"})
{
}

fenn::P<IAudioSource> CFFmpegInputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CFFmpegFileAudioSource>(uri);
}

}  // namespace tbx
