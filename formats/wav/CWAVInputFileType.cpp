#include "formats/wav/CWAVInputFileType.h"

#include "formats/FormatTexts.h"
#include "formats/wav/CWAVFileAudioSource.h"

namespace tbx {

CWAVInputFileType::CWAVInputFileType() : CInputFileTypeBase(formatTexts::fileFilterWAV, "*.wav", {".wav"}) {}

fenn::P<IAudioSource> CWAVInputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CWAVFileAudioSource>(uri);
}

}  // namespace tbx
