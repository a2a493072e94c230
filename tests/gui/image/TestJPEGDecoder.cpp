#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>

#include <jpeglib.h>

#include "gui/CImageConversionError.h"
#include "gui/image/CImage.h"
#include "gui/image/CJPEGDecoder.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::gui::CImageConversionError;
using fenn::gui::CJPEGDecoder;
using namespace imagetest;

constexpr int kSize = 16;
// What a quality 98 JPEG with full-resolution chroma may change in a
// smooth gradient or flat colour.
constexpr int kTolerance = 6;

Bytes samplesOf(int components, const std::function<int(int, int, int)>& sample)
{
    Bytes samples;
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            for (int channel = 0; channel < components; ++channel) {
                samples.push_back(static_cast<std::uint8_t>(sample(x, y, channel)));
            }
        }
    }
    return samples;
}

// Stored CMYK of the left and right half; what they show.
int cmykSample(bool inverted, int x, int channel)
{
    // Left: full magenta ink. Right: half black.
    const int ink[2][4] = {{0, 255, 0, 0}, {0, 0, 0, 127}};
    const int value = ink[x < kSize / 2 ? 0 : 1][channel];
    return inverted ? 255 - value : value;
}
RGBA cmykShown(int x, int)
{
    return x < kSize / 2 ? RGBA{255, 0, 255, 255} : RGBA{128, 128, 128, 255};
}

struct JPEGCase
{
    const char* name;
    JPEGParameters params;
    std::function<RGBA(int, int)> expected;
};

TEST(JPEGDecoder, ColourSpacesComeOutAsOpaqueRGBA)
{
    auto gradient = [](int x, int y) {
        return RGBA{gradientSample(x, y, 0), gradientSample(x, y, 1), gradientSample(x, y, 2), 255};
    };
    const Bytes rgb = samplesOf(3, gradientSample);
    std::vector<JPEGCase> cases = {
        {"RGB as YCbCr", {kSize, kSize, 3, JCS_RGB, JCS_UNKNOWN, rgb}, gradient},
        {"RGB stored as RGB", {kSize, kSize, 3, JCS_RGB, JCS_RGB, rgb}, gradient},
        {"progressive", {kSize, kSize, 3, JCS_RGB, JCS_UNKNOWN, rgb, 98, true, true}, gradient},
        {"greyscale",
         {kSize, kSize, 1, JCS_GRAYSCALE, JCS_UNKNOWN, samplesOf(1, [](int x, int y, int) { return x * 8 + y * 4; })},
         [](int x, int y) {
             return RGBA{x * 8 + y * 4, x * 8 + y * 4, x * 8 + y * 4, 255};
         }},
        {"CMYK with Adobe marker (inverted)",
         {kSize, kSize, 4, JCS_CMYK, JCS_CMYK, samplesOf(4, [](int x, int, int c) { return cmykSample(true, x, c); })},
         cmykShown},
        {"YCCK",
         {kSize, kSize, 4, JCS_CMYK, JCS_YCCK, samplesOf(4, [](int x, int, int c) { return cmykSample(true, x, c); })},
         cmykShown},
        {"CMYK without Adobe marker",
         {kSize, kSize, 4, JCS_CMYK, JCS_CMYK, samplesOf(4, [](int x, int, int c) { return cmykSample(false, x, c); }),
          98, false},
         cmykShown},
    };
    const auto decoder = make<CJPEGDecoder>();
    for (const JPEGCase& test : cases) {
        SCOPED_TRACE(test.name);
        const Bytes file = encodeJPEG(test.params);
        ASSERT_TRUE(decoder->recognizes(file));
        const auto image = decoder->decode(file);
        ASSERT_EQ(image->getWidth(), kSize);
        ASSERT_EQ(image->getHeight(), kSize);
        EXPECT_FALSE(image->hasAlpha());
        EXPECT_TRUE(pixelsMatch(*image, test.expected, kTolerance));
    }
}

// The offset of the first marker of one of the given kinds.
std::size_t findMarker(const Bytes& file, std::initializer_list<std::uint8_t> kinds)
{
    for (std::size_t index = 2; index + 1 < file.size(); ++index) {
        if (file[index] == 0xFF && std::find(kinds.begin(), kinds.end(), file[index + 1]) != kinds.end()) return index;
    }
    ADD_FAILURE() << "no such marker";
    return 0;
}

TEST(JPEGDecoder, HostileFilesThrowConversionErrors)
{
    const auto decoder = make<CJPEGDecoder>();
    const Bytes good = encodeJPEG({kSize, kSize, 3, JCS_RGB, JCS_UNKNOWN, samplesOf(3, gradientSample)});
    const std::size_t frame = findMarker(good, {0xC0, 0xC2});
    const std::size_t scan = findMarker(good, {0xDA});
    // After the marker: length (2), precision (1), height (2), width (2).
    auto withFrameBytes = [&good, frame](std::size_t offset, std::initializer_list<std::uint8_t> values) {
        Bytes file = good;
        std::copy(values.begin(), values.end(), file.begin() + static_cast<std::ptrdiff_t>(frame + offset));
        return file;
    };

    std::vector<std::pair<const char*, Bytes>> cases = {
        {"empty", {}},
        {"start marker only", {0xFF, 0xD8}},
        {"header only", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(frame + 8))},
        {"cut in the scan", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>((scan + good.size()) / 2))},
        {"above the byte limit", withFrameBytes(5, {0x40, 0x00, 0x40, 0x00})},
        {"above the side limit", withFrameBytes(5, {0x40, 0x01, 0x00, 0x10})},
        {"no width", withFrameBytes(7, {0x00, 0x00})},
        {"12-bit precision", withFrameBytes(4, {12})},
    };
    // A progressive file whose last scan is repeated many times: libjpeg
    // only warns about the pointless scans, and each one costs a pass.
    const Bytes progressive =
        encodeJPEG({kSize, kSize, 1, JCS_GRAYSCALE, JCS_UNKNOWN, samplesOf(1, gradientSample), 98, true, true});
    std::size_t lastScan = 0;
    for (std::size_t index = 0; index + 1 < progressive.size(); ++index) {
        if (progressive[index] == 0xFF && progressive[index + 1] == 0xDA) lastScan = index;
    }
    Bytes manyScans(progressive.begin(), progressive.end() - 2);
    for (int copy = 0; copy < 1100; ++copy) {
        manyScans.insert(manyScans.end(), progressive.begin() + static_cast<std::ptrdiff_t>(lastScan),
                         progressive.end() - 2);
    }
    manyScans.insert(manyScans.end(), {0xFF, 0xD9});
    cases.emplace_back("too many scans", manyScans);
    std::mt19937 random(11);
    Bytes noise = {0xFF, 0xD8, 0xFF};
    for (int index = 0; index < 400; ++index) noise.push_back(static_cast<std::uint8_t>(random()));
    cases.emplace_back("random bytes after the start marker", noise);
    for (const auto& [name, file] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THROW(decoder->decode(file), CImageConversionError);
    }
}

}  // namespace
