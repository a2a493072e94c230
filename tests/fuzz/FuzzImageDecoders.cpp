#include <cstdint>
#include <cstdlib>
#include <span>

#include "foundation/P.h"
#include "gui/CImageConversionError.h"
#include "gui/image/CImageDecoderRegistry.h"
#include "gui/image/CTGADecoder.h"
#include "gui/image/RGBAPixels.h"

// Decodes the bytes as the registry picks (PNG, JNG and JPEG by their
// signatures, TGA by a plausible header) and once more as TGA whatever the
// header says, since TGA has no signature to steer the fuzzer. The decoders
// may refuse the bytes with their own errors; any other error, an image
// outside the limits, and any crash, is a finding.
namespace {

void checkImage(const fenn::gui::IImage& image)
{
    if (image.getWidth() < 1 || image.getHeight() < 1 || image.getWidth() > fenn::gui::kMaxImageSide ||
        image.getHeight() > fenn::gui::kMaxImageSide || image.getStride() < image.getWidth() * 4) {
        std::abort();
    }
    // Touches the last pixel, so a short buffer shows under the sanitizers.
    image.getPixel(image.getWidth() - 1, image.getHeight() - 1);
}

template <class Decode> void decodeOrRefuse(Decode decode)
{
    try {
        checkImage(*decode());
    } catch (const fenn::gui::CImageConversionError&) {
    } catch (const fenn::gui::format::mng::CMNGError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> bytes(data, size);
    decodeOrRefuse([bytes] { return fenn::gui::decodeImage(bytes); });
    static const fenn::P<fenn::gui::CTGADecoder> tga = fenn::make<fenn::gui::CTGADecoder>();
    decodeOrRefuse([bytes] { return tga->decode(bytes); });
    return 0;
}
