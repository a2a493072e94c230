#pragma once

#include "gui/image/CImageDecoderBase.h"

namespace fenn::gui {

// PNG through libpng: every colour type and bit depth, palettes and tRNS
// transparency, interlaced or not, comes out as RGBA 8. Sizes above the
// limits of RGBAPixels.h are refused before the pixels are read; gamma and
// colour profiles are not applied (skins are drawn as stored). Stateless;
// any thread.
class CPNGDecoder : public CImageDecoderBase
{
public:
    String getFormatName() const override { return "PNG"; }
    ImageRecognition getRecognition() const override { return ImageRecognition::signature; }
    bool recognizes(std::span<const std::uint8_t> head) const override;
    P<IImage> decode(std::span<const std::uint8_t> bytes) const override;
};

}  // namespace fenn::gui
