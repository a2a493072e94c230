#include "formats/wma/CWMAInputFileType.h"

#include "formats/FormatTexts.h"
#include "formats/wma/CWMAFileAudioSource.h"

namespace tbx {

CWMAInputFileType::CWMAInputFileType() : CInputFileTypeBase(formatTexts::fileFilterWMA, "*.wma", {".wma"}) {}

fenn::P<IAudioSource> CWMAInputFileType::openSource(const fenn::CURI& uri)
{
    return fenn::make<CWMAFileAudioSource>(uri);
}

}  // namespace tbx
