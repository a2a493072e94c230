#pragma once

#include "gui/image/CImageDecoderBase.h"
#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

// JPEG through libjpeg: greyscale, YCbCr and RGB, and CMYK or YCCK (with the
// inverted values that an Adobe APP14 marker announces) come out as opaque
// RGBA 8. libjpeg's errors come back by longjmp into a frame that holds
// nothing with a destructor and leave as CImageConversionError; a file that
// ends before its image data does too, where libjpeg would only warn and pad
// with grey. Stateless; any thread.
class CJPEGDecoder : public CImageDecoderBase
{
public:
    String getFormatName() const override { return "JPEG"; }
    ImageRecognition getRecognition() const override { return ImageRecognition::signature; }
    bool recognizes(std::span<const std::uint8_t> head) const override;
    P<IImage> decode(std::span<const std::uint8_t> bytes) const override;

    // The decoded pixels themselves, for formats that carry JPEG streams
    // (JNG); formatName heads the error texts.
    static RGBAPixels decodePixels(std::span<const std::uint8_t> bytes, const char* formatName);
};

}  // namespace fenn::gui
