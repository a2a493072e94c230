#include <gtest/gtest.h>

#include <png.h>
#include <zlib.h>

#include <cstring>
#include <random>

#include "gui/CImageConversionError.h"
#include "gui/image/CImage.h"
#include "gui/image/CPNGDecoder.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::gui::CImageConversionError;
using fenn::gui::CPNGDecoder;
using namespace imagetest;

constexpr int kWidth = 5;
constexpr int kHeight = 3;

// Packs samples of bits each into a row, the first at the top of the byte.
Bytes packRow(const std::vector<int>& samples, int bits)
{
    Bytes row((samples.size() * bits + 7) / 8);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const std::size_t bit = index * bits;
        if (bits == 16) {
            row[index * 2] = static_cast<std::uint8_t>(samples[index] >> 8);
            row[index * 2 + 1] = static_cast<std::uint8_t>(samples[index]);
        } else {
            row[bit / 8] |= static_cast<std::uint8_t>(samples[index] << (8 - bits - bit % 8));
        }
    }
    return row;
}

// A PNG of kWidth x kHeight whose row samples come from sample(x, y, c)
// for each of the colour type's channels.
PNGParameters makeSpec(int colourType, int bitDepth, int channels, const std::function<int(int, int, int)>& sample)
{
    PNGParameters params{kWidth, kHeight, colourType, bitDepth};
    for (int y = 0; y < kHeight; ++y) {
        std::vector<int> samples;
        for (int x = 0; x < kWidth; ++x) {
            for (int channel = 0; channel < channels; ++channel) samples.push_back(sample(x, y, channel));
        }
        params.rows.push_back(packRow(samples, bitDepth));
    }
    return params;
}

struct PNGCase
{
    const char* name;
    PNGParameters params;
    std::function<RGBA(int, int)> expected;
};

std::vector<PNGCase> pngCases()
{
    std::vector<PNGCase> cases;
    auto gradient = [](int x, int y) {
        return RGBA{gradientSample(x, y, 0), gradientSample(x, y, 1), gradientSample(x, y, 2), 255};
    };
    cases.push_back({"RGB 8", makeSpec(PNG_COLOR_TYPE_RGB, 8, 3, gradientSample), gradient});

    PNGParameters interlaced = makeSpec(PNG_COLOR_TYPE_RGB, 8, 3, gradientSample);
    interlaced.interlaced = true;
    cases.push_back({"RGB 8 interlaced", interlaced, gradient});

    cases.push_back(
        {"RGBA 8",
         makeSpec(PNG_COLOR_TYPE_RGBA, 8, 4,
                  [](int x, int y, int c) { return c == 3 ? 255 - x * 60 : gradientSample(x, y, c); }),
         [](int x, int y) {
             return RGBA{gradientSample(x, y, 0), gradientSample(x, y, 1), gradientSample(x, y, 2), 255 - x * 60};
         }});

    // 16-bit samples go to the nearest 8-bit value: 0xFF00 is 254.0, which
    // dropping the low byte would make 255.
    cases.push_back({"RGBA 16",
                     makeSpec(PNG_COLOR_TYPE_RGBA, 16, 4,
                              [](int x, int, int c) { return c == 3   ? 0xFFFF
                                                             : c == 0 ? 0xFF00
                                                                      : x * 0x1111; }),
                     [](int x, int) {
                         return RGBA{254, x * 0x11, x * 0x11, 255};
                     }});

    // Palette of four colours at 2 bits, the second half-transparent by tRNS.
    PNGParameters palette = makeSpec(PNG_COLOR_TYPE_PALETTE, 2, 1, [](int x, int y, int) { return (x + y) % 4; });
    palette.palette = {255, 0, 0, 0, 255, 0, 0, 0, 255, 10, 20, 30};
    palette.paletteAlpha = {255, 128};
    const RGBA paletteColours[] = {{255, 0, 0, 255}, {0, 255, 0, 128}, {0, 0, 255, 255}, {10, 20, 30, 255}};
    cases.push_back(
        {"palette 2 with tRNS", palette, [paletteColours](int x, int y) { return paletteColours[(x + y) % 4]; }});

    PNGParameters palette8 = makeSpec(PNG_COLOR_TYPE_PALETTE, 8, 1, [](int x, int, int) { return x; });
    for (int index = 0; index < kWidth; ++index)
        palette8.palette.insert(palette8.palette.end(), {std::uint8_t(index * 50), 7, 9});
    cases.push_back({"palette 8", palette8, [](int x, int) { return RGBA{x * 50, 7, 9, 255}; }});

    cases.push_back({"grey 1", makeSpec(PNG_COLOR_TYPE_GRAY, 1, 1, [](int x, int y, int) { return (x + y) % 2; }),
                     [](int x, int y) {
                         const int grey = (x + y) % 2 * 255;
                         return RGBA{grey, grey, grey, 255};
                     }});
    cases.push_back(
        {"grey 4", makeSpec(PNG_COLOR_TYPE_GRAY, 4, 1, [](int x, int y, int) { return x * 3 + y; }), [](int x, int y) {
             const int grey = (x * 3 + y) * 17;
             return RGBA{grey, grey, grey, 255};
         }});

    PNGParameters greyKey = makeSpec(PNG_COLOR_TYPE_GRAY, 8, 1, [](int x, int, int) { return x * 10; });
    greyKey.transparentGrey = 20;
    cases.push_back({"grey 8 with tRNS", greyKey, [](int x, int) {
                         return RGBA{x * 10, x * 10, x * 10, x == 2 ? 0 : 255};
                     }});

    cases.push_back({"grey 16",
                     makeSpec(PNG_COLOR_TYPE_GRAY, 16, 1, [](int x, int y, int) { return (x + y) * 0x1010; }),
                     [](int x, int y) {
                         const int grey = (x + y) * 0x10;
                         return RGBA{grey, grey, grey, 255};
                     }});

    cases.push_back(
        {"grey and alpha 8",
         makeSpec(PNG_COLOR_TYPE_GRAY_ALPHA, 8, 2, [](int x, int y, int c) { return c == 0 ? y * 100 : x * 60; }),
         [](int x, int y) {
             return RGBA{y * 100, y * 100, y * 100, x * 60};
         }});
    return cases;
}

TEST(PNGDecoder, EveryColourTypeComesOutAsRGBA)
{
    const auto decoder = make<CPNGDecoder>();
    for (const PNGCase& test : pngCases()) {
        SCOPED_TRACE(test.name);
        const Bytes file = encodePNG(test.params);
        ASSERT_TRUE(decoder->recognizes(file));
        const auto image = decoder->decode(file);
        ASSERT_EQ(image->getWidth(), kWidth);
        ASSERT_EQ(image->getHeight(), kHeight);
        EXPECT_TRUE(pixelsMatch(*image, test.expected));
    }
}

// Sets a big-endian 32-bit number and renews the CRC of the chunk that
// starts at chunkStart.
void patchChunk(Bytes& file, std::size_t chunkStart, std::size_t offset, std::uint32_t value)
{
    Bytes number;
    appendBE32(number, value);
    std::copy(number.begin(), number.end(), file.begin() + static_cast<std::ptrdiff_t>(offset));
    const std::uint32_t length = static_cast<std::uint32_t>(file[chunkStart] << 24 | file[chunkStart + 1] << 16 |
                                                            file[chunkStart + 2] << 8 | file[chunkStart + 3]);
    const std::uint32_t crc = static_cast<std::uint32_t>(::crc32(0, file.data() + chunkStart + 4, length + 4));
    number.clear();
    appendBE32(number, crc);
    std::copy(number.begin(), number.end(), file.begin() + static_cast<std::ptrdiff_t>(chunkStart + 8 + length));
}

TEST(PNGDecoder, HostileFilesThrowConversionErrors)
{
    const auto decoder = make<CPNGDecoder>();
    const Bytes good = encodePNG(makeSpec(PNG_COLOR_TYPE_RGB, 8, 3, gradientSample));
    constexpr std::size_t kHeaderChunk = 8;  // IHDR follows the signature

    std::vector<std::pair<const char*, Bytes>> cases;
    for (std::size_t size : {std::size_t{8}, std::size_t{20}, std::size_t{33}, good.size() / 2, good.size() - 20}) {
        cases.emplace_back("truncated", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)));
    }
    Bytes badCRC = good;
    badCRC[kHeaderChunk + 8] ^= 1;
    cases.emplace_back("bad IHDR CRC", badCRC);
    Bytes huge = good;
    patchChunk(huge, kHeaderChunk, kHeaderChunk + 8, 100000);
    cases.emplace_back("huge width", huge);
    Bytes tooManyBytes = good;
    patchChunk(tooManyBytes, kHeaderChunk, kHeaderChunk + 8, 16384);
    patchChunk(tooManyBytes, kHeaderChunk, kHeaderChunk + 12, 16384);
    cases.emplace_back("too many pixels", tooManyBytes);
    Bytes zero = good;
    patchChunk(zero, kHeaderChunk, kHeaderChunk + 12, 0);
    cases.emplace_back("no rows", zero);
    Bytes longChunk = good;
    longChunk[kHeaderChunk] = 0x40;  // IHDR length far past the end
    cases.emplace_back("chunk past the end", longChunk);
    std::mt19937 random(7);
    Bytes noise(good.begin(), good.begin() + 8);
    for (int index = 0; index < 300; ++index) noise.push_back(static_cast<std::uint8_t>(random()));
    cases.emplace_back("random bytes after the signature", noise);
    cases.emplace_back("not a PNG", Bytes{1, 2, 3});

    for (const auto& [name, file] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THROW(decoder->decode(file), CImageConversionError);
    }
}

}  // namespace
