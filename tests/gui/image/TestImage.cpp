#include <gtest/gtest.h>

#include <cstring>

#include "foundation/CObjectError.h"
#include "gui/CImageConversionError.h"
#include "gui/image/CAnimation.h"
#include "gui/image/CImage.h"
#include "gui/image/CStillAnimation.h"
#include "gui/image/RGBAPixels.h"
#include "tests/gui/image/ImageTestSupport.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::gui::CImage;
using fenn::gui::CImageConversionError;
using fenn::gui::CSize;
using fenn::gui::IImage;
using namespace imagetest;

TEST(Image, PremultipliesStraightRGBAIntoCairosLayout)
{
    // One row of four pixels, then padding: rowBytes is 20.
    const Bytes rgba = {
        255, 0, 0, 255, /**/ 0, 255, 0, 128, /**/ 10, 20, 30, 0,   /**/ 200, 100, 50, 51,  /**/ 9, 9, 9, 9,
        1,   2, 3, 255, /**/ 4, 5,   6, 255, /**/ 7,  8,  9,  255, /**/ 10,  11,  12, 255, /**/ 9, 9, 9, 9,
    };
    const auto image = make<CImage>(CSize{4, 2}, rgba, 20);
    ASSERT_EQ(image->getStride(), 16);
    const std::uint32_t expected[] = {0xFFFF0000, 0x80008000, 0x00000000, 0x3328140A,
                                      0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C};
    for (int index = 0; index < 8; ++index) {
        EXPECT_EQ(image->getPixel(index % 4, index / 4), expected[index]) << "pixel " << index;
        std::uint32_t word = 0;
        std::memcpy(&word, image->getPixels() + (index / 4) * image->getStride() + (index % 4) * 4, 4);
        EXPECT_EQ(word, expected[index]) << "raw pixel " << index;
    }
    EXPECT_TRUE(image->hasAlpha());

    const Bytes opaque = {1, 2, 3, 255, 4, 5, 6, 255};
    EXPECT_FALSE(make<CImage>(CSize{2, 1}, opaque)->hasAlpha());
}

TEST(Image, SurfaceSharesThePixels)
{
    const auto image = make<CImage>(CSize{3, 2});
    EXPECT_TRUE(image->hasAlpha());
    EXPECT_EQ(image->getPixel(2, 1), 0u);
    ASSERT_EQ(cairo_image_surface_get_data(image->getSurface()), image->getPixels());
    ASSERT_EQ(cairo_image_surface_get_format(image->getSurface()), CAIRO_FORMAT_ARGB32);

    cairo_t* context = cairo_create(image->getSurface());
    cairo_set_source_rgba(context, 0, 0, 1, 1);
    cairo_rectangle(context, 1, 0, 1, 2);
    cairo_fill(context);
    cairo_destroy(context);
    cairo_surface_flush(image->getSurface());
    EXPECT_EQ(image->getPixel(1, 1), 0xFF0000FFu);
    EXPECT_EQ(image->getPixel(0, 1), 0u);

    // Pixels written by hand.
    std::uint8_t* pixels = image->getMutablePixels();
    const std::uint32_t green = 0xFF00FF00;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x) std::memcpy(pixels + y * image->getStride() + x * 4, &green, 4);
    }
    image->markDirty();
    EXPECT_FALSE(image->hasAlpha());
    EXPECT_EQ(image->getPixel(1, 1), green);
}

TEST(Image, RefusesBadSizesAndArguments)
{
    EXPECT_THROW(make<CImage>(CSize{0, 5}), CImageConversionError);
    EXPECT_THROW(make<CImage>(CSize{5, -1}), CImageConversionError);
    EXPECT_THROW(make<CImage>(CSize{fenn::gui::kMaxImageSide + 1, 1}), CImageConversionError);
    // Each side allowed, but together above the byte limit.
    EXPECT_THROW(make<CImage>(CSize{fenn::gui::kMaxImageSide, fenn::gui::kMaxImageSide}), CImageConversionError);
    const Bytes tooShort(4 * 3 * 2 - 1);
    EXPECT_THROW(make<CImage>(CSize{3, 2}, tooShort), fenn::CInvalidArgError);
    const Bytes enough(4 * 3 * 2);
    EXPECT_THROW(make<CImage>(CSize{3, 2}, enough, 11), fenn::CInvalidArgError);
    const auto image = make<CImage>(CSize{3, 2}, enough);
    EXPECT_THROW(image->getPixel(3, 0), fenn::CInvalidArgError);
    EXPECT_THROW(image->getPixel(0, -1), fenn::CInvalidArgError);
}

TEST(Animation, FramesDelaysAndLoops)
{
    const P<IImage> first = make<CImage>(CSize{1, 1});
    const P<IImage> second = make<CImage>(CSize{2, 2});
    const auto animation = make<fenn::gui::CAnimation>(first, 100, 3);
    animation->addFrame(second, 40);
    EXPECT_EQ(animation->getFrameCount(), 2);
    EXPECT_EQ(animation->getFrame(1), second);
    EXPECT_EQ(animation->getDelay(0), 100);
    EXPECT_EQ(animation->getDelay(1), 40);
    EXPECT_EQ(animation->getLoopCount(), 3);
    EXPECT_THROW(animation->getFrame(2), fenn::CInvalidArgError);
    EXPECT_THROW(animation->getDelay(-1), fenn::CInvalidArgError);
    EXPECT_THROW(animation->addFrame(nullptr, 10), fenn::CInvalidArgError);
    EXPECT_THROW(animation->addFrame(first, -1), fenn::CInvalidArgError);
    EXPECT_THROW(animation->setLoopCount(-1), fenn::CInvalidArgError);

    const auto still = make<fenn::gui::CStillAnimation>(first);
    EXPECT_EQ(still->getFrameCount(), 1);
    EXPECT_EQ(still->getFrame(0), first);
    EXPECT_EQ(still->getDelay(0), 0);
    EXPECT_EQ(still->getLoopCount(), 1);
    EXPECT_THROW(still->getFrame(1), fenn::CInvalidArgError);
    EXPECT_THROW(make<fenn::gui::CStillAnimation>(nullptr), fenn::CInvalidArgError);
}

}  // namespace
