#pragma once

#include <cstdint>
#include <vector>

#include "gui/CImageConversionError.h"

// The size limits every image decoder enforces, and the straight RGBA buffer
// the decoders fill before CImage turns it into cairo's layout.
namespace fenn::gui {

// No side of a decoded image may be longer than this many pixels...
inline constexpr int kMaxImageSide = 16384;
// ...and its RGBA pixels may not take more than this many bytes (64 million
// pixels). Both are checked before anything of the size is allocated, so a
// header that lies about the size costs nothing.
inline constexpr std::int64_t kMaxImageBytes = 256LL * 1024 * 1024;
// zlib's deflate never packs more than this many bytes into one (258-byte
// matches of two bits each), so compressed data shorter than its claimed
// result divided by this is refused before the result is allocated.
inline constexpr std::int64_t kMaxDeflateRatio = 1032;
// The most bytes read from a stream for one image file.
inline constexpr std::int64_t kMaxEncodedImageBytes = 256LL * 1024 * 1024;

// The error of a decoder: "<format>: <details>" inside the localised text.
CImageConversionError imageError(const char* format, const char* details);

// Throws imageError(format, ...) unless both sides are at least 1 and the
// image stays inside the limits above.
void checkImageSize(std::int64_t width, std::int64_t height, const char* format);

// Straight (not premultiplied) RGBA, 8 bits a sample, rows of width * 4
// bytes without padding, top row first.
struct RGBAPixels
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;

    // A buffer of transparent black pixels; checks the size first.
    static RGBAPixels allocate(std::int64_t width, std::int64_t height, const char* format);

    std::uint8_t* row(int y)
    {
        return bytes.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 4;
    }
    const std::uint8_t* row(int y) const
    {
        return bytes.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width) * 4;
    }
};

}  // namespace fenn::gui
