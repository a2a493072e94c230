#include "formats/mp3/CMP3InputFileType.h"

#include "formats/FormatTexts.h"
#include "formats/mp3/CMP3FileAudioSource.h"

namespace tbx {

CMP3InputFileType::CMP3InputFileType() : CInputFileTypeBase(formatTexts::fileFilterMP3, "*.mp3", {".mp3"}) {}

fenn::P<IAudioSource> CMP3InputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CMP3FileAudioSource>(uri);
}

}  // namespace tbx
