#include "formats/flac/CFlacInputFileType.h"

#include "formats/flac/CFlacFileAudioSource.h"
#include "formats/FormatTexts.h"

namespace tbx {

CFlacInputFileType::CFlacInputFileType() : CInputFileTypeBase(formatTexts::fileFilterFlac, "*.flac", {".flac"}) {}

fenn::P<IAudioSource> CFlacInputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CFlacFileAudioSource>(uri);
}

}  // namespace tbx
