#include "gui/sdl/SDLImage.h"

#include <cstdint>
#include <cstring>

#include "foundation/CError.h"

namespace fenn::gui::sdl {

namespace {

// A premultiplied colour sample back to its straight value, rounded.
std::uint32_t unpremultiply(std::uint32_t sample, std::uint32_t alpha)
{
    const std::uint32_t straight = (sample * 255 + alpha / 2) / alpha;
    return straight > 255 ? 255 : straight;
}

}  // namespace

SDLSurfacePointer toSDLSurface(const IImage& image)
{
    const int width = image.getWidth();
    const int height = image.getHeight();
    SDLSurfacePointer surface(SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888));
    if (!surface) throw CError("Platform error", String("No surface: ") + String::copyOf(SDL_GetError()));
    // cairo may still hold drawing for the pixels.
    cairo_surface_flush(image.getSurface());
    const std::uint8_t* source = image.getPixels();
    auto* target = static_cast<std::uint8_t*>(surface->pixels);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* sourceRow = source + static_cast<std::ptrdiff_t>(y) * image.getStride();
        std::uint8_t* targetRow = target + static_cast<std::ptrdiff_t>(y) * surface->pitch;
        for (int x = 0; x < width; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word, sourceRow + static_cast<std::ptrdiff_t>(x) * 4, 4);
            const std::uint32_t alpha = word >> 24;
            if (alpha == 0) {
                word = 0;
            } else if (alpha < 255) {
                word = alpha << 24 | unpremultiply(word >> 16 & 0xFF, alpha) << 16 |
                       unpremultiply(word >> 8 & 0xFF, alpha) << 8 | unpremultiply(word & 0xFF, alpha);
            }
            std::memcpy(targetRow + static_cast<std::ptrdiff_t>(x) * 4, &word, 4);
        }
    }
    return surface;
}

}  // namespace fenn::gui::sdl
