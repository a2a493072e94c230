#pragma once

#include "gui/image/CImageDecoderBase.h"

namespace fenn::gui {

// JNG (the JPEG image of the MNG family), read by own code: the signature,
// then chunks with checked CRCs: JHDR, the JPEG stream in JDAT chunks
// (decoded by CJPEGDecoder), an optional alpha channel either as
// zlib-compressed, PNG-filtered grey rows of 1 to 16 bits in IDAT chunks or
// as a greyscale JPEG in JDAA chunks, and IEND. Of a file that holds an 8-bit
// and a 12-bit JPEG (sample depth 20) the 8-bit one is shown; a 12-bit-only
// file is refused. Broken chunk structure throws
// fenn::gui::format::mng::CMNGError; broken or unsupported image data throws
// CImageConversionError. Stateless; any thread.
class CJNGDecoder : public CImageDecoderBase
{
public:
    String getFormatName() const override { return "JNG"; }
    ImageRecognition getRecognition() const override { return ImageRecognition::signature; }
    bool recognizes(std::span<const std::uint8_t> head) const override;
    P<IImage> decode(std::span<const std::uint8_t> bytes) const override;
};

}  // namespace fenn::gui
