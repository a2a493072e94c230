#include "foundation/CUnicodeData.h"

namespace fenn {

namespace {

constexpr std::int32_t kFoldPageMask = (1 << CUnicodeData::kFoldPageShift) - 1;
constexpr std::int32_t kCategoryPageMask = (1 << CUnicodeData::kCategoryPageShift) - 1;

// Above the category table only tags, variation selectors and the two private
// use planes are assigned; they are given as fixed ranges rather than as pages
// of mostly empty entries. Between the end of the table and the first range
// nothing is assigned.
struct CategoryRange
{
    std::int32_t first;
    std::int32_t last;
    std::uint8_t category;
};

constexpr CategoryRange kRangesAboveTable[] = {
    {0xE0000, 0xE007F, CUnicodeData::kFormat},
    {0xE0100, 0xE01EF, CUnicodeData::kNonspacingMark},
    {0xF0000, 0xFFFFD, CUnicodeData::kPrivateUse},
    {0x100000, 0x10FFFD, CUnicodeData::kPrivateUse},
};

static_assert(kRangesAboveTable[0].first >= CUnicodeData::kCategoryTableLimit);

}  // namespace

std::int32_t CUnicodeData::fold(std::int32_t codePoint)
{
    // The unsigned comparison turns negative code points away as well.
    if (static_cast<std::uint32_t>(codePoint) >= static_cast<std::uint32_t>(kFoldTableSize)) return codePoint;
    const std::int32_t page = kFoldPageIndex[codePoint >> kFoldPageShift];
    // The delta is stored modulo 65536 and applied within the plane.
    const auto delta = static_cast<std::uint16_t>(kFoldDeltas[(page << kFoldPageShift) | (codePoint & kFoldPageMask)]);
    return (codePoint & ~0xFFFF) | ((codePoint + delta) & 0xFFFF);
}

std::uint8_t CUnicodeData::getCategory(std::int32_t codePoint)
{
    if (static_cast<std::uint32_t>(codePoint) < static_cast<std::uint32_t>(kCategoryTableSize)) {
        const std::int32_t page = kCategoryPageIndex[codePoint >> kCategoryPageShift];
        return kCategories[(page << kCategoryPageShift) | (codePoint & kCategoryPageMask)];
    }
    for (const CategoryRange& range : kRangesAboveTable) {
        if (codePoint >= range.first && codePoint <= range.last) return range.category;
    }
    return kUnassigned;
}

}  // namespace fenn
