#include <gtest/gtest.h>

#include <cstdio>

#include <jpeglib.h>

#include "gui/CImageConversionError.h"
#include "gui/image/CImage.h"
#include "gui/image/CJNGDecoder.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::gui::CImageConversionError;
using fenn::gui::CJNGDecoder;
using fenn::gui::format::mng::CMNGError;
using namespace imagetest;

constexpr int kWidth = 16;
constexpr int kHeight = 5;
constexpr int kTolerance = 6;
constexpr std::uint8_t kSignature[] = {0x8B, 'J', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

enum Colour : std::uint8_t { kGrey = 8, kColour = 10, kGreyAlpha = 12, kColourAlpha = 14 };

Bytes header(Colour colour, std::uint8_t alphaDepth = 0, std::uint8_t alphaCompression = 0,
             std::uint8_t sampleDepth = 8, std::uint32_t width = kWidth, std::uint32_t height = kHeight)
{
    Bytes data;
    appendBE32(data, width);
    appendBE32(data, height);
    data.insert(data.end(), {colour, sampleDepth, 8, 0, alphaDepth, alphaCompression, 0, 0});
    return data;
}

using Chunks = std::vector<std::pair<std::string, Bytes>>;

Bytes jng(const Chunks& chunks)
{
    Bytes file(std::begin(kSignature), std::end(kSignature));
    for (const auto& [type, data] : chunks) appendChunk(file, type, data);
    return file;
}

Bytes colourJPEG(int width = kWidth, int height = kHeight)
{
    JPEGParameters params{width, height, 3, JCS_RGB, JCS_UNKNOWN};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int channel = 0; channel < 3; ++channel) params.samples.push_back(gradientSample(x, y, channel));
        }
    }
    return encodeJPEG(params);
}

RGBA colourAt(int x, int y, int alpha)
{
    return {gradientSample(x, y, 0), gradientSample(x, y, 1), gradientSample(x, y, 2), alpha};
}

int alphaSample(int x, int y, int depth)
{
    return (x * 7 + y * 5) * 4099 % (1 << depth);
}
int alphaShown(int x, int y, int depth)
{
    const int value = alphaSample(x, y, depth);
    return depth == 16 ? (value * 255 + 32767) / 65535 : value * 255 / ((1 << depth) - 1);
}

std::uint8_t paeth(int left, int up, int upLeft)
{
    const int estimate = left + up - upLeft;
    const int toLeft = std::abs(estimate - left);
    const int toUp = std::abs(estimate - up);
    const int toUpLeft = std::abs(estimate - upLeft);
    if (toLeft <= toUp && toLeft <= toUpLeft) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toUp <= toUpLeft ? up : upLeft);
}

// The alpha channel as PNG-filtered rows, row y with filter type y % 5, so
// every filter is undone at least once.
Bytes filteredAlpha(int depth, int rows = kHeight)
{
    const std::size_t rowBytes = (kWidth * depth + 7) / 8;
    const std::size_t distance = depth == 16 ? 2 : 1;
    Bytes prior(rowBytes, 0);
    Bytes out;
    for (int y = 0; y < rows; ++y) {
        Bytes raw(rowBytes, 0);
        for (int x = 0; x < kWidth; ++x) {
            const int value = alphaSample(x, y, depth);
            if (depth == 16) {
                raw[x * 2] = static_cast<std::uint8_t>(value >> 8);
                raw[x * 2 + 1] = static_cast<std::uint8_t>(value);
            } else {
                const std::size_t bit = static_cast<std::size_t>(x) * depth;
                raw[bit / 8] |= static_cast<std::uint8_t>(value << (8 - depth - bit % 8));
            }
        }
        const int filter = y % 5;
        out.push_back(static_cast<std::uint8_t>(filter));
        for (std::size_t i = 0; i < rowBytes; ++i) {
            const int left = i >= distance ? raw[i - distance] : 0;
            const int upLeft = i >= distance ? prior[i - distance] : 0;
            const int predictor[] = {0, left, prior[i], (left + prior[i]) / 2, paeth(left, prior[i], upLeft)};
            out.push_back(static_cast<std::uint8_t>(raw[i] - predictor[filter]));
        }
        prior = raw;
    }
    return out;
}

TEST(JNGDecoder, JPEGWithEveryKindOfAlpha)
{
    const Bytes jpeg = colourJPEG();
    const auto decoder = make<CJNGDecoder>();
    for (int depth : {1, 2, 4, 8, 16}) {
        SCOPED_TRACE("alpha depth " + std::to_string(depth));
        const Bytes deflated = deflate(filteredAlpha(depth));
        // The streams are split over several chunks, and an ancillary
        // chunk that is not known sits between them.
        const Bytes file = jng({{"JHDR", header(kColourAlpha, static_cast<std::uint8_t>(depth))},
                                {"JDAT", Bytes(jpeg.begin(), jpeg.begin() + 100)},
                                {"tEXt", {'a', 0, 'b'}},
                                {"JDAT", Bytes(jpeg.begin() + 100, jpeg.end())},
                                {"IDAT", Bytes(deflated.begin(), deflated.begin() + 5)},
                                {"IDAT", Bytes(deflated.begin() + 5, deflated.end())},
                                {"IEND", {}}});
        ASSERT_TRUE(decoder->recognizes(file));
        const auto image = decoder->decode(file);
        ASSERT_EQ(image->getSize(), (fenn::gui::CSize{kWidth, kHeight}));
        EXPECT_TRUE(pixelsMatch(
            *image, [depth](int x, int y) { return colourAt(x, y, alphaShown(x, y, depth)); }, kTolerance));
    }
}

TEST(JNGDecoder, JPEGAlphaGreyAndOpaqueImages)
{
    const auto decoder = make<CJNGDecoder>();
    // Flat 8 x 8 blocks come back from JPEG without loss.
    JPEGParameters alphaSpec{kWidth, 8, 1, JCS_GRAYSCALE, JCS_UNKNOWN};
    for (int index = 0; index < kWidth * 8; ++index) alphaSpec.samples.push_back(index % kWidth < 8 ? 255 : 64);
    const Bytes jpeg = colourJPEG(kWidth, 8);
    const Bytes withJPEGAlpha = jng({{"JHDR", header(kColourAlpha, 8, 8, 8, kWidth, 8)},
                                     {"JDAT", jpeg},
                                     {"JDAA", encodeJPEG(alphaSpec)},
                                     {"IEND", {}}});
    EXPECT_TRUE(pixelsMatch(
        *decoder->decode(withJPEGAlpha), [](int x, int y) { return colourAt(x, y, x < 8 ? 255 : 64); }, kTolerance));

    JPEGParameters greySpec{kWidth, kHeight, 1, JCS_GRAYSCALE, JCS_UNKNOWN};
    for (int index = 0; index < kWidth * kHeight; ++index)
        greySpec.samples.push_back(static_cast<std::uint8_t>(index * 3));
    const Bytes greyWithAlpha = jng({{"JHDR", header(kGreyAlpha, 8)},
                                     {"JDAT", encodeJPEG(greySpec)},
                                     {"IDAT", deflate(filteredAlpha(8))},
                                     {"IEND", {}}});
    EXPECT_TRUE(pixelsMatch(
        *decoder->decode(greyWithAlpha),
        [](int x, int y) {
            const int grey = (y * kWidth + x) * 3;
            return RGBA{grey, grey, grey, alphaShown(x, y, 8)};
        },
        kTolerance));

    const Bytes opaque = jng({{"JHDR", header(kColour)}, {"JDAT", colourJPEG()}, {"IEND", {}}});
    const auto image = decoder->decode(opaque);
    EXPECT_FALSE(image->hasAlpha());
    EXPECT_TRUE(pixelsMatch(
        *image, [](int x, int y) { return colourAt(x, y, 255); }, kTolerance));

    // Of an 8-bit and a 12-bit image, the 8-bit one before JSEP is shown.
    const Bytes twoDepths = jng({{"JHDR", header(kColour, 0, 0, 20)},
                                 {"JDAT", colourJPEG()},
                                 {"JSEP", {}},
                                 {"JDAT", {1, 2, 3, 4}},
                                 {"IEND", {}}});
    EXPECT_TRUE(pixelsMatch(
        *decoder->decode(twoDepths), [](int x, int y) { return colourAt(x, y, 255); }, kTolerance));
}

enum class Expect { structureError, conversionError };

TEST(JNGDecoder, HostileFilesThrowTheirErrors)
{
    const Bytes jpeg = colourJPEG();
    const Bytes alpha = deflate(filteredAlpha(8));
    const Bytes good = jng({{"JHDR", header(kColourAlpha, 8)}, {"JDAT", jpeg}, {"IDAT", alpha}, {"IEND", {}}});
    const std::size_t jdatData = sizeof kSignature + 12 + 16 + 8;

    Bytes badCRC = good;
    badCRC[jdatData + 10] ^= 0x40;
    Bytes lengthPastEnd = good;
    lengthPastEnd[jdatData - 6] = 0x7F;
    Bytes badFilter = filteredAlpha(8);
    badFilter[(kWidth + 1) * 2] = 7;
    const Bytes shortAlpha = deflate(filteredAlpha(8, kHeight - 1));
    Bytes damagedDeflate = alpha;
    damagedDeflate[0] = 0x00;

    const std::vector<std::tuple<const char*, Bytes, Expect>> cases = {
        {"signature only", Bytes(std::begin(kSignature), std::end(kSignature)), Expect::structureError},
        {"bad CRC", badCRC, Expect::structureError},
        {"cut in JDAT", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(jdatData + 50)),
         Expect::structureError},
        {"no IEND", Bytes(good.begin(), good.end() - 12), Expect::structureError},
        {"chunk past the end", lengthPastEnd, Expect::structureError},
        {"JDAT first", jng({{"JDAT", jpeg}, {"IEND", {}}}), Expect::structureError},
        {"two JHDR", jng({{"JHDR", header(kColour)}, {"JHDR", header(kColour)}, {"IEND", {}}}), Expect::structureError},
        {"short JHDR", jng({{"JHDR", Bytes(15, 1)}, {"IEND", {}}}), Expect::structureError},
        {"unknown critical chunk", jng({{"JHDR", header(kColour)}, {"JDAT", jpeg}, {"ABCD", {}}, {"IEND", {}}}),
         Expect::structureError},
        {"chunk type not letters", jng({{"JHDR", header(kColour)}, {"JD1T", jpeg}, {"IEND", {}}}),
         Expect::structureError},
        {"no JDAT", jng({{"JHDR", header(kColour)}, {"IEND", {}}}), Expect::structureError},
        {"no alpha data", jng({{"JHDR", header(kColourAlpha, 8)}, {"JDAT", jpeg}, {"IEND", {}}}),
         Expect::structureError},
        {"IDAT without alpha", jng({{"JHDR", header(kColour)}, {"JDAT", jpeg}, {"IDAT", alpha}, {"IEND", {}}}),
         Expect::structureError},
        {"alpha depth 3", jng({{"JHDR", header(kColourAlpha, 3)}, {"IEND", {}}}), Expect::structureError},
        {"unknown colour type", jng({{"JHDR", header(Colour(9))}, {"IEND", {}}}), Expect::structureError},
        {"JPEG of another size",
         jng({{"JHDR", header(kColour, 0, 0, 8, kWidth, kHeight + 1)}, {"JDAT", jpeg}, {"IEND", {}}}),
         Expect::structureError},
        {"12-bit JPEG", jng({{"JHDR", header(kColour, 0, 0, 12)}, {"JDAT", jpeg}, {"IEND", {}}}),
         Expect::conversionError},
        {"huge size", jng({{"JHDR", header(kColour, 0, 0, 8, 100000, 100000)}, {"IEND", {}}}), Expect::conversionError},
        {"JDAT not JPEG", jng({{"JHDR", header(kColour)}, {"JDAT", {1, 2, 3, 4, 5}}, {"IEND", {}}}),
         Expect::conversionError},
        {"alpha rows missing",
         jng({{"JHDR", header(kColourAlpha, 8)}, {"JDAT", jpeg}, {"IDAT", shortAlpha}, {"IEND", {}}}),
         Expect::conversionError},
        {"unknown filter",
         jng({{"JHDR", header(kColourAlpha, 8)}, {"JDAT", jpeg}, {"IDAT", deflate(badFilter)}, {"IEND", {}}}),
         Expect::conversionError},
        {"damaged zlib stream",
         jng({{"JHDR", header(kColourAlpha, 8)}, {"JDAT", jpeg}, {"IDAT", damagedDeflate}, {"IEND", {}}}),
         Expect::conversionError},
    };
    const auto decoder = make<CJNGDecoder>();
    for (const auto& [name, file, expected] : cases) {
        SCOPED_TRACE(name);
        if (expected == Expect::structureError) {
            EXPECT_THROW(decoder->decode(file), CMNGError);
        } else {
            EXPECT_THROW(decoder->decode(file), CImageConversionError);
        }
    }
}

}  // namespace
