#include <gtest/gtest.h>

#include "foundation/CObjectError.h"
#include "gui/image/CImage.h"
#include "gui/image/CNinePatch.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::gui::CImage;
using fenn::gui::CNinePatch;
using fenn::gui::CRect;
using fenn::gui::CSize;
using namespace imagetest;

// Each patch of a 6 x 6 source with margins of 2 has its own colour family;
// corner pixels differ from each other so that scaling would show.
constexpr int kPatchSize = 6;
constexpr int kMargin = 2;

// The patch (0 to 2 across and down) that a source pixel belongs to.
int partOf(int position)
{
    return position < kMargin ? 0 : position < kPatchSize - kMargin ? 1 : 2;
}

RGBA sourcePixel(int x, int y, int variant, bool patternedCorners)
{
    const int column = partOf(x);
    const int row = partOf(y);
    const int patch = row * 3 + column;
    const bool corner = column != 1 && row != 1;
    const int detail = corner && patternedCorners ? (y % 2) * 2 + x % 2 : 0;
    return {patch * 25 + detail * 5, variant * 100 + detail * 20, 255 - patch * 20, 255};
}

P<CImage> makeSource(int states, bool patternedCorners)
{
    Bytes rgba;
    for (int y = 0; y < kPatchSize; ++y) {
        for (int x = 0; x < kPatchSize * states; ++x) {
            const RGBA pixel = sourcePixel(x % kPatchSize, y, x / kPatchSize, patternedCorners);
            rgba.insert(rgba.end(),
                        {std::uint8_t(pixel.red), std::uint8_t(pixel.green), std::uint8_t(pixel.blue), 255});
        }
    }
    return make<CImage>(CSize{kPatchSize * states, kPatchSize}, rgba);
}

// Draws onto a transparent 40 x 30 canvas.
P<CImage> drawOnCanvas(const std::function<void(cairo_t*)>& paint)
{
    auto canvas = make<CImage>(CSize{40, 30});
    cairo_t* context = cairo_create(canvas->getSurface());
    paint(context);
    cairo_destroy(context);
    cairo_surface_flush(canvas->getSurface());
    return canvas;
}

// Where destination pixel (x, y) of a patch-drawn rectangle takes its colour
// from, when the margins fit: corners one to one, the rest from the middle
// patch of its row or column.
int sourcePositionOf(int offset, int length)
{
    if (offset < kMargin) return offset;
    if (offset >= length - kMargin) return kPatchSize - (length - offset);
    return kMargin;
}

TEST(NinePatch, CornersStayEdgesAndCentreStretchWithoutBleeding)
{
    const CRect destination{5, 4, 28, 20};
    for (int states : {1, 2}) {
        SCOPED_TRACE(states == 1 ? "whole image" : "second state of a strip");
        const auto source = makeSource(states, true);
        const CRect part{(states - 1) * kPatchSize, 0, kPatchSize, kPatchSize};
        const auto patch = make<CNinePatch>(source, part, CNinePatch::Margins{kMargin, kMargin, kMargin, kMargin});
        const auto canvas = drawOnCanvas([&](cairo_t* context) { patch->draw(context, destination); });
        EXPECT_TRUE(pixelsMatch(*canvas, [&](int x, int y) {
            if (!destination.contains({x, y})) return RGBA{};
            const int sourceX = sourcePositionOf(x - destination.x, destination.width);
            const int sourceY = sourcePositionOf(y - destination.y, destination.height);
            return sourcePixel(sourceX, sourceY, states - 1, true);
        }));
    }
}

TEST(NinePatch, MarginsThatDoNotFitShrinkInProportion)
{
    const auto source = makeSource(1, false);
    // Across, margins of 2 and 1 just fill 3 pixels; down, 2 and 2 share 2
    // pixels as 1 and 1. The middle patches vanish.
    const auto patch = make<CNinePatch>(source, CNinePatch::Margins{kMargin, kMargin, 1, kMargin});
    EXPECT_EQ(patch->getMargins(), (CNinePatch::Margins{2, 2, 1, 2}));
    const CRect destination{1, 1, 3, 2};
    const auto canvas = drawOnCanvas([&](cairo_t* context) { patch->draw(context, destination); });
    EXPECT_TRUE(pixelsMatch(*canvas, [&](int x, int y) {
        if (!destination.contains({x, y})) return RGBA{};
        return sourcePixel(x - 1 < 2 ? 0 : 5, y - 1 == 0 ? 0 : 5, 0, false);
    }));

    // Margins larger than the source itself shrink the same way.
    EXPECT_EQ(make<CNinePatch>(source, CNinePatch::Margins{10, 0, 30, 6})->getMargins(),
              (CNinePatch::Margins{2, 0, 4, 6}));
}

TEST(NinePatch, ScaledDrawingPadsTheEdges)
{
    const Bytes rgba = {255, 0, 0, 255, 0, 0, 255, 255};
    const auto image = make<CImage>(CSize{2, 1}, rgba);
    const auto nearest = drawOnCanvas([&](cairo_t* context) {
        CNinePatch::drawScaled(context, *image, {0, 0, 8, 2}, CAIRO_FILTER_NEAREST);
    });
    EXPECT_TRUE(pixelsMatch(*nearest, [](int x, int y) {
        if (x >= 8 || y >= 2) return RGBA{};
        return x < 4 ? RGBA{255, 0, 0, 255} : RGBA{0, 0, 255, 255};
    }));

    // Smooth scaling blends in the middle but never fades the outer pixels.
    const auto smooth = drawOnCanvas([&](cairo_t* context) { CNinePatch::drawScaled(context, *image, {2, 2, 16, 4}); });
    for (int y = 2; y < 6; ++y) {
        EXPECT_EQ(smooth->getPixel(2, y), 0xFFFF0000u);
        EXPECT_EQ(smooth->getPixel(17, y), 0xFF0000FFu);
        for (int x = 2; x < 18; ++x) EXPECT_EQ(smooth->getPixel(x, y) >> 24, 0xFFu) << x << ", " << y;
    }
    EXPECT_EQ(smooth->getPixel(1, 2), 0u);
    EXPECT_EQ(smooth->getPixel(18, 2), 0u);

    // A part of the image: only the blue pixel.
    const auto part = drawOnCanvas([&](cairo_t* context) {
        CNinePatch::drawScaled(context, *image, {1, 0, 1, 1}, {0, 0, 3, 3});
    });
    EXPECT_EQ(part->getPixel(0, 0), 0xFF0000FFu);
    EXPECT_EQ(part->getPixel(2, 2), 0xFF0000FFu);
    EXPECT_EQ(part->getPixel(3, 3), 0u);
}

TEST(NinePatch, RefusesBadArguments)
{
    const auto source = makeSource(1, false);
    using Margins = CNinePatch::Margins;
    EXPECT_THROW(make<CNinePatch>(nullptr, Margins{}), fenn::CInvalidArgError);
    EXPECT_THROW(make<CNinePatch>(source, Margins{-1, 0, 0, 0}), fenn::CInvalidArgError);
    EXPECT_THROW(make<CNinePatch>(source, CRect{2, 0, 6, 6}, Margins{}), fenn::CInvalidArgError);
    EXPECT_THROW(make<CNinePatch>(source, CRect{0, 0, 0, 6}, Margins{}), fenn::CInvalidArgError);
    const auto canvas = drawOnCanvas([&](cairo_t* context) {
        EXPECT_THROW(CNinePatch::drawScaled(context, *source, {5, 5, 2, 1}, {0, 0, 4, 4}), fenn::CInvalidArgError);
        make<CNinePatch>(source, Margins{1, 1, 1, 1})->draw(context, {3, 3, 0, 5});
    });
    EXPECT_TRUE(pixelsMatch(*canvas, [](int, int) { return RGBA{}; }));
}

}  // namespace
