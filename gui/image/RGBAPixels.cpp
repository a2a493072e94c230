#include "gui/image/RGBAPixels.h"

#include <string>

namespace fenn::gui {

CImageConversionError imageError(const char* format, const char* details)
{
    return CImageConversionError(String::copyOf(std::string(format) + ": " + details));
}

void checkImageSize(std::int64_t width, std::int64_t height, const char* format)
{
    if (width < 1 || height < 1) throw imageError(format, "the image has no pixels");
    if (width > kMaxImageSide || height > kMaxImageSide || width * height * 4 > kMaxImageBytes) {
        throw imageError(format, "the image is too large");
    }
}

RGBAPixels RGBAPixels::allocate(std::int64_t width, std::int64_t height, const char* format)
{
    checkImageSize(width, height, format);
    RGBAPixels pixels;
    pixels.width = static_cast<int>(width);
    pixels.height = static_cast<int>(height);
    pixels.bytes.assign(static_cast<std::size_t>(width * height * 4), 0);
    return pixels;
}

}  // namespace fenn::gui
