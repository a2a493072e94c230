#pragma once

#include "gui/image/CImageDecoderBase.h"

namespace fenn::gui {

// Truevision TGA, read by own code: colour-mapped (types 1 and 9), true
// colour (2 and 10) and greyscale (3 and 11) images, plain or run-length
// encoded; pixels of 8, 15, 16, 24 or 32 bits; colour maps of 15, 16, 24 or
// 32-bit entries; every origin corner. Rows and runs are checked against
// both the file and the image, so no packet reads or writes past either.
// TGA has no magic bytes: recognizes accepts a header whose fields are all
// plausible, and the registry asks this decoder last. Stateless; any thread.
class CTGADecoder : public CImageDecoderBase
{
public:
    String getFormatName() const override { return "TGA"; }
    ImageRecognition getRecognition() const override { return ImageRecognition::headerGuess; }
    bool recognizes(std::span<const std::uint8_t> head) const override;
    P<IImage> decode(std::span<const std::uint8_t> bytes) const override;
};

}  // namespace fenn::gui
