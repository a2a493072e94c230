#pragma once

#include <cstdint>
#include <span>

#include "foundation/IBase.h"
#include "foundation/IStream.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// How a decoder knows its files.
enum class ImageRecognition {
    signature,   // by magic bytes at the start
    headerGuess  // by a plausible header only (TGA has no magic); asked last
};

// Turns the bytes of one image file format into an image. Decoders hold no
// state: the registry owns them and any thread may call them at once.
class IImageDecoder : public virtual IBase
{
public:
    // The format's short name ("PNG"), used in error texts.
    virtual String getFormatName() const = 0;
    virtual ImageRecognition getRecognition() const = 0;
    // Whether the first bytes of a file (all of them if the file is short)
    // look like this format.
    virtual bool recognizes(std::span<const std::uint8_t> head) const = 0;
    // The whole file. Damaged or unsupported data throws
    // CImageConversionError (CMNGError for the chunk structure of a JNG);
    // the decoder never reads outside bytes.
    virtual P<IImage> decode(std::span<const std::uint8_t> bytes) const = 0;
    // The file read from the stream's current place to its end; a file
    // above kMaxEncodedImageBytes throws CImageConversionError, stream
    // failures their CStreamError.
    virtual P<IImage> decodeStream(IInStream& stream) const = 0;
};

}  // namespace fenn::gui
