#include <gtest/gtest.h>

#include "foundation/CObjectError.h"
#include "gui/image/CImage.h"
#include "gui/image/CImageCache.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::gui::CImage;
using fenn::gui::CImageCache;
using fenn::gui::CSize;
using fenn::gui::IImage;

// A 16 x 16 image: 1024 bytes of pixels.
P<IImage> kilobyteImage()
{
    return make<CImage>(CSize{16, 16});
}

TEST(ImageCache, EvictsTheLeastRecentlyUsedUnheldEntries)
{
    const auto cache = make<CImageCache>(3 * 1024);
    cache->put("a", kilobyteImage());
    cache->put("b", kilobyteImage());
    cache->put("c", kilobyteImage());
    EXPECT_EQ(cache->getUsedBytes(), 3 * 1024);
    // "a" becomes the most recently used, so "b" goes first.
    EXPECT_NE(cache->get("a"), nullptr);
    cache->put("d", kilobyteImage());
    EXPECT_FALSE(cache->contains("b"));
    EXPECT_TRUE(cache->contains("a"));
    EXPECT_EQ(cache->getCount(), 3);
    EXPECT_EQ(cache->getUsedBytes(), 3 * 1024);

    // An entry held elsewhere stays, even when it is the oldest.
    const P<IImage> held = cache->get("c");
    cache->get("a");
    cache->get("d");
    cache->put("e", kilobyteImage());
    EXPECT_TRUE(cache->contains("c"));
    EXPECT_FALSE(cache->contains("a"));

    // With nothing else to drop, the cache stays above its budget until
    // the holder lets go and the cache is trimmed.
    cache->setBudget(1024);
    EXPECT_EQ(cache->getCount(), 1);
    EXPECT_EQ(cache->get("c"), held);
    cache->put("f", kilobyteImage());
    EXPECT_EQ(cache->getUsedBytes(), 1024);
    EXPECT_TRUE(cache->contains("c"));
    EXPECT_FALSE(cache->contains("f"));
    const P<IImage> newest = kilobyteImage();
    cache->put("g", newest);
    EXPECT_EQ(cache->getUsedBytes(), 2048);
    EXPECT_EQ(cache->get("missing"), nullptr);
}

TEST(ImageCache, ReplacesRemovesAndClears)
{
    const auto cache = make<CImageCache>();
    EXPECT_EQ(cache->getBudget(), CImageCache::kDefaultBudget);
    const P<IImage> small = make<CImage>(CSize{2, 2});
    const P<IImage> large = make<CImage>(CSize{8, 8});
    cache->put("x", small);
    cache->put("x", large);
    EXPECT_EQ(cache->getCount(), 1);
    EXPECT_EQ(cache->getUsedBytes(), 8 * 8 * 4);
    EXPECT_EQ(cache->get("x"), large);
    cache->put("y", small);
    EXPECT_TRUE(cache->remove("x"));
    EXPECT_FALSE(cache->remove("x"));
    EXPECT_EQ(cache->getUsedBytes(), 2 * 2 * 4);
    cache->clear();
    EXPECT_EQ(cache->getCount(), 0);
    EXPECT_EQ(cache->getUsedBytes(), 0);
    EXPECT_THROW(cache->put("z", nullptr), fenn::CInvalidArgError);
    EXPECT_THROW(cache->setBudget(-1), fenn::CInvalidArgError);
}

}  // namespace
