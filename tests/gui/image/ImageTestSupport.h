#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gui/image/IImage.h"

// Encoders that make real image files in memory for the decoder tests
// (libpng and libjpeg write them; JNG chunks are put together here), and
// pixel checks.
namespace imagetest {

using Bytes = std::vector<std::uint8_t>;

// A PNG as libpng writes it. rows holds the packed samples of each row as
// the colour type and bit depth lay them out (16-bit samples big-endian).
struct PNGParameters
{
    int width = 0;
    int height = 0;
    int colourType = 0;
    int bitDepth = 8;
    std::vector<Bytes> rows;
    std::vector<std::uint8_t> palette;       // red, green, blue per entry
    std::vector<std::uint8_t> paletteAlpha;  // tRNS of a palette image
    int transparentGrey = -1;                // tRNS of a grey image
    bool interlaced = false;
};
Bytes encodePNG(const PNGParameters& params);

// A JPEG from samples of components bytes per pixel in colourSpace
// (JCS_GRAYSCALE, JCS_RGB or JCS_CMYK), written at the given quality;
// storedColourSpace is what the file holds (JCS_YCCK, JCS_YCbCr, ...) or
// JCS_UNKNOWN for libjpeg's default.
struct JPEGParameters
{
    int width = 0;
    int height = 0;
    int components = 3;
    int colourSpace = 0;
    int storedColourSpace = 0;
    Bytes samples;
    int quality = 98;
    bool adobeMarker = true;
    bool progressive = false;
};
Bytes encodeJPEG(const JPEGParameters& params);

// Chunk files (JNG): big-endian numbers and chunks with their CRC.
void appendBE32(Bytes& bytes, std::uint32_t value);
void appendChunk(Bytes& file, const std::string& type, const Bytes& data);
Bytes deflate(const Bytes& bytes);

// A test image with a different colour in every pixel: red grows to the
// right, green downwards, blue along the diagonal.
std::uint8_t gradientSample(int x, int y, int channel);

// Straight RGBA of one pixel, taken back out of the premultiplied word.
struct RGBA
{
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    friend bool operator==(const RGBA&, const RGBA&) = default;
};
RGBA pixelAt(const fenn::gui::IImage& image, int x, int y);
std::ostream& operator<<(std::ostream& stream, const RGBA& pixel);

// The premultiplied ARGB32 word of a straight pixel, rounded to nearest.
std::uint32_t premultiplied(const RGBA& pixel);

// Every pixel of the image against expected(x, y), compared as premultiplied
// words: alpha exactly, the colour channels within tolerance (exact when it
// is 0). Names the first pixel that differs.
::testing::AssertionResult pixelsMatch(const fenn::gui::IImage& image, const std::function<RGBA(int, int)>& expected,
                                       int tolerance = 0);

}  // namespace imagetest
