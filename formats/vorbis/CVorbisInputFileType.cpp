#include "formats/vorbis/CVorbisInputFileType.h"

#include "formats/vorbis/CVorbisFileAudioSource.h"
#include "formats/FormatTexts.h"

namespace tbx {

CVorbisInputFileType::CVorbisInputFileType() : CInputFileTypeBase(formatTexts::fileFilterOggVorbis, "*.ogg", {".ogg"})
{
}

fenn::P<IAudioSource> CVorbisInputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CVorbisFileAudioSource>(uri);
}

}  // namespace tbx
