#include "formats/vorbis/CVorbisError.h"

#include <vorbis/codec.h>

#include "formats/vorbis/VorbisTexts.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

const fenn::TextKey& CVorbisError::textFor(int code)
{
    switch (code) {
    case OV_ENOTVORBIS:
        return vorbisTexts::notVorbis;
    case OV_EVERSION:
        return vorbisTexts::unknownVersion;
    case OV_EBADHEADER:
    case OV_EBADPACKET:
    case OV_EBADLINK:
        return vorbisTexts::corruptedStream;
    default:
        return vorbisTexts::genericDecodeError;
    }
}

CVorbisError::CVorbisError(int code) : CError(fenn::String(), fenn::localize(textFor(code))), m_code(code) {}

}  // namespace tbx
