#include <gtest/gtest.h>

#include "gui/CImageConversionError.h"
#include "gui/image/CImage.h"
#include "gui/image/CTGADecoder.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::gui::CImageConversionError;
using fenn::gui::CTGADecoder;
using namespace imagetest;

struct Header
{
    std::uint8_t idLength = 0;
    std::uint8_t mapType = 0;
    std::uint8_t imageType = 2;
    std::uint16_t mapFirst = 0;
    std::uint16_t mapLength = 0;
    std::uint8_t mapBits = 0;
    std::uint16_t width = 1;
    std::uint16_t height = 1;
    std::uint8_t pixelBits = 24;
    std::uint8_t descriptor = 0;
};

// The 18 header bytes, then the rest of the file.
Bytes tga(const Header& header, const Bytes& rest)
{
    Bytes file = {header.idLength, header.mapType, header.imageType};
    auto appendLE16 = [&file](std::uint16_t value) {
        file.push_back(static_cast<std::uint8_t>(value));
        file.push_back(static_cast<std::uint8_t>(value >> 8));
    };
    appendLE16(header.mapFirst);
    appendLE16(header.mapLength);
    file.push_back(header.mapBits);
    file.insert(file.end(), {0, 0, 0, 0});  // screen origin
    appendLE16(header.width);
    appendLE16(header.height);
    file.push_back(header.pixelBits);
    file.push_back(header.descriptor);
    file.insert(file.end(), rest.begin(), rest.end());
    return file;
}

// Descriptor bits.
constexpr std::uint8_t kTop = 0x20;
constexpr std::uint8_t kRight = 0x10;

// A colour-mapped image of one row (type 1, or 9 for run-length data).
Header mapped(std::uint8_t imageType, std::uint16_t mapFirst, std::uint16_t mapLength, std::uint8_t mapBits,
              std::uint16_t width, std::uint8_t pixelBits, std::uint8_t descriptor)
{
    return {0, 1, imageType, mapFirst, mapLength, mapBits, width, 1, pixelBits, descriptor};
}

const RGBA kRed{255, 0, 0, 255};
const RGBA kGreen{0, 255, 0, 255};
const RGBA kBlue{0, 0, 255, 255};
const RGBA kWhite{255, 255, 255, 255};
RGBA grey(int value, int alpha = 255)
{
    return {value, value, value, alpha};
}

struct TGACase
{
    const char* name;
    Bytes file;
    std::vector<RGBA> expected;  // rows from the top, left to right
};

TEST(TGADecoder, ReadsEveryTypeDepthAndOrigin)
{
    const std::vector<TGACase> cases = {
        {"true colour 24, rows from the bottom",
         tga({.width = 2, .height = 2}, {255, 0, 0, 255, 255, 255, /**/ 0, 0, 255, 0, 255, 0}),
         {kRed, kGreen, kBlue, kWhite}},
        {"true colour 32 with alpha, from the top",
         tga({.width = 2, .pixelBits = 32, .descriptor = kTop | 8}, {30, 20, 10, 255, 0, 0, 200, 128}),
         {{10, 20, 30, 255}, {200, 0, 0, 128}}},
        {"true colour 16 with alpha bit, from the top right",
         tga({.width = 2, .pixelBits = 16, .descriptor = kTop | kRight | 1}, {0x00, 0xFC, 0xE0, 0x03}),
         {{0, 255, 0, 0}, kRed}},
        {"true colour 16 without alpha bits",
         tga({.width = 2, .pixelBits = 16, .descriptor = kTop}, {0x00, 0x7C, 0xE0, 0x03}),
         {kRed, kGreen}},
        {"true colour 15 ignores the top bit",
         tga({.width = 2, .pixelBits = 15, .descriptor = kTop | 1}, {0x1F, 0x80, 0x00, 0x40}),
         {kBlue, {132, 0, 0, 255}}},
        {"32 bits without alpha bits keep real alpha",
         tga({.width = 2, .pixelBits = 32, .descriptor = kTop}, {0, 0, 255, 0, 0, 0, 255, 255}),
         {{255, 0, 0, 0}, kRed}},
        {"32 bits whose alpha is all zero are opaque",
         tga({.width = 2, .pixelBits = 32, .descriptor = kTop}, {0, 0, 255, 0, 255, 0, 0, 0}),
         {kRed, kBlue}},
        {"image ID and an unused colour map are skipped",
         tga({.idLength = 3, .mapType = 1, .mapLength = 2, .mapBits = 24, .descriptor = kTop},
             {'a', 'b', 'c', 1, 2, 3, 4, 5, 6, /**/ 0, 255, 0}),
         {kGreen}},
        {"colour-mapped, 24-bit entries",
         tga(mapped(1, 0, 3, 24, 3, 8, kTop), {0, 0, 255, 0, 255, 0, 255, 0, 0, /**/ 2, 0, 1}),
         {kBlue, kRed, kGreen}},
        {"colour-mapped, map starting at entry 2",
         tga(mapped(1, 2, 2, 24, 2, 8, kTop), {0, 0, 255, 255, 255, 255, /**/ 3, 2}),
         {kWhite, kRed}},
        {"colour-mapped, 32-bit entries with alpha",
         tga(mapped(1, 0, 2, 32, 2, 8, kTop | 8), {255, 0, 0, 64, 0, 255, 0, 255, /**/ 0, 1}),
         {{0, 0, 255, 64}, kGreen}},
        {"colour-mapped, 16-bit entries and 16-bit indexes",
         tga(mapped(1, 0, 2, 16, 2, 16, kTop), {0x00, 0x7C, 0x1F, 0x00, /**/ 1, 0, 0, 0}),
         {kBlue, kRed}},
        {"greyscale 8, rows from the bottom",
         tga({.imageType = 3, .width = 2, .height = 2, .pixelBits = 8}, {10, 20, 30, 40}),
         {grey(30), grey(40), grey(10), grey(20)}},
        {"greyscale 16 with alpha",
         tga({.imageType = 3, .width = 2, .pixelBits = 16, .descriptor = kTop | 8}, {100, 50, 7, 255}),
         {grey(100, 50), grey(7)}},
        {"run-length true colour, a run across rows",
         tga({.imageType = 10, .width = 3, .height = 2, .descriptor = kTop},
             {0x83, 0, 0, 255, /**/ 0x01, 0, 255, 0, 255, 0, 0}),
         {kRed, kRed, kRed, kRed, kGreen, kBlue}},
        {"run-length colour-mapped",
         tga(mapped(9, 0, 2, 24, 4, 8, kTop), {0, 0, 255, 255, 0, 0, /**/ 0x82, 1, 0x00, 0}),
         {kBlue, kBlue, kBlue, kRed}},
        {"run-length greyscale, rows from the bottom, right to left",
         tga({.imageType = 11, .width = 2, .height = 2, .pixelBits = 8, .descriptor = kRight},
             {0x01, 10, 20, 0x81, 99}),
         {grey(99), grey(99), grey(20), grey(10)}},
        {"run-length 32 bits with alpha",
         tga({.imageType = 10, .width = 3, .pixelBits = 32, .descriptor = kTop | 8},
             {0x81, 0, 255, 0, 100, 0x00, 9, 8, 7, 255}),
         {{0, 255, 0, 100}, {0, 255, 0, 100}, {7, 8, 9, 255}}},
    };
    const auto decoder = make<CTGADecoder>();
    for (const TGACase& test : cases) {
        SCOPED_TRACE(test.name);
        ASSERT_TRUE(decoder->recognizes(test.file));
        const auto image = decoder->decode(test.file);
        ASSERT_EQ(static_cast<std::size_t>(image->getWidth() * image->getHeight()), test.expected.size());
        EXPECT_TRUE(pixelsMatch(*image, [&](int x, int y) { return test.expected[y * image->getWidth() + x]; }));
    }
}

TEST(TGADecoder, HostileFilesThrowConversionErrors)
{
    const Header mappedHeader = mapped(1, 1, 3, 24, 2, 8, 0);
    const Bytes map = {0, 0, 255, 0, 255, 0, 255, 0, 0};
    auto withMap = [&map](Bytes pixels) {
        Bytes rest = map;
        rest.insert(rest.end(), pixels.begin(), pixels.end());
        return rest;
    };
    const Bytes plain = tga({}, {1, 2, 3});
    const std::vector<std::pair<const char*, Bytes>> cases = {
        {"header cut short", Bytes(plain.begin(), plain.begin() + 10)},
        {"pixels cut short", tga({.width = 2, .height = 2}, Bytes(11, 0))},
        {"image ID past the end", tga({.idLength = 200}, {1, 2, 3})},
        {"colour map cut short", tga(mappedHeader, Bytes(map.begin(), map.end() - 1))},
        {"index past the map", tga(mappedHeader, withMap({1, 4}))},
        {"index below the map's first entry", tga(mappedHeader, withMap({0, 1}))},
        {"run past the last pixel", tga({.imageType = 10, .width = 2, .height = 2}, {0x84, 1, 2, 3})},
        {"raw packet cut short", tga({.imageType = 10, .width = 4}, {0x03, 1, 2, 3, 4, 5, 6, 7, 8})},
        {"no packets", tga({.imageType = 10, .width = 4}, {})},
        {"unknown image type", tga({.imageType = 32}, {1, 2, 3})},
        {"colour-mapped without a map", tga({.imageType = 1, .pixelBits = 8}, {0})},
        {"true colour of 8 bits", tga({.pixelBits = 8}, {0})},
        {"map entries of 8 bits", tga(mapped(1, 0, 1, 8, 1, 8, 0), {0, 0})},
        {"interleaved rows", tga({.descriptor = 0x40}, {1, 2, 3})},
        {"no width", tga({.width = 0}, {})},
        {"too large", tga({.width = 65535, .height = 65535}, {1, 2, 3})},
    };
    const auto decoder = make<CTGADecoder>();
    for (const auto& [name, file] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THROW(decoder->decode(file), CImageConversionError);
    }
}

}  // namespace
