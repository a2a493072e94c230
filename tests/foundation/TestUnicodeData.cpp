#include <gtest/gtest.h>

#include <cstdint>

#include "foundation/CUnicodeData.h"

using fenn::CUnicodeData;

TEST(UnicodeData, FoldsToTheSimpleLowercaseForm)
{
    struct Case
    {
        std::int32_t codePoint;
        std::int32_t folded;
    };
    const Case cases[] = {
        {'A', 'a'},
        {'Z', 'z'},
        {'a', 'a'},
        {'0', '0'},
        {'@', '@'},
        {'[', '['},
        {0x00C0, 0x00E0},
        {0x00DE, 0x00FE},
        {0x00D7, 0x00D7},
        {0x00DF, 0x00DF},
        {0x00FF, 0x00FF},
        {0x0178, 0x00FF},
        {0x0130, 0x0069},
        {0x01C5, 0x01C6},
        {0x03A3, 0x03C3},
        {0x03C2, 0x03C2},
        {0x0391, 0x03B1},
        {0x0410, 0x0430},
        {0x042F, 0x044F},
        {0x0401, 0x0451},
        {0x1E9E, 0x00DF},
        {0x2126, 0x03C9},
        {0xFF21, 0xFF41},
        {0x10400, 0x10428},
        {0x10427, 0x1044F},
        {0x1E900, 0x1E922},
        {0x1E921, 0x1E943},
        {0x1E943, 0x1E943},
        {0x13A0, 0xAB70},  // Cherokee: 38864 apart, beyond a plain 16-bit delta
        {0x13EF, 0xABBF},
        {0xA7C5, 0x0282},
        {-1, -1},
        {-0x10000, -0x10000},
        {0x10FFFF, 0x10FFFF},
        {0x110000, 0x110000},
        {0x7FFFFFFF, 0x7FFFFFFF},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CUnicodeData::fold(c.codePoint), c.folded) << std::hex << "U+" << c.codePoint;
    }
}

TEST(UnicodeData, GivesTheGeneralCategory)
{
    struct Case
    {
        std::int32_t codePoint;
        std::uint8_t category;
    };
    const Case cases[] = {
        {'A', CUnicodeData::kUppercaseLetter},
        {'z', CUnicodeData::kLowercaseLetter},
        {0x01C5, CUnicodeData::kTitlecaseLetter},
        {0x02B0, CUnicodeData::kModifierLetter},
        {'7', CUnicodeData::kDecimalNumber},
        {0x0663, CUnicodeData::kDecimalNumber},
        {0x2160, CUnicodeData::kLetterNumber},
        {0x00BD, CUnicodeData::kOtherNumber},
        {0x0301, CUnicodeData::kNonspacingMark},
        {'_', CUnicodeData::kConnectorPunctuation},
        {'(', CUnicodeData::kOpenPunctuation},
        {'+', CUnicodeData::kMathSymbol},
        {0x20AC, CUnicodeData::kCurrencySymbol},
        {' ', CUnicodeData::kSpaceSeparator},
        {0x00A0, CUnicodeData::kSpaceSeparator},
        {0x2029, CUnicodeData::kParagraphSeparator},
        {0x0000, CUnicodeData::kControl},
        {0x00AD, CUnicodeData::kFormat},
        // Inside blocks that UnicodeData.txt gives as First/Last ranges.
        {0x4E00, CUnicodeData::kOtherLetter},
        {0x6C34, CUnicodeData::kOtherLetter},
        {0x9FFF, CUnicodeData::kOtherLetter},
        {0xAC01, CUnicodeData::kOtherLetter},
        {0xD800, CUnicodeData::kSurrogate},
        {0xDFFF, CUnicodeData::kSurrogate},
        {0xE000, CUnicodeData::kPrivateUse},
        {0xF8FF, CUnicodeData::kPrivateUse},
        {0x20000, CUnicodeData::kOtherLetter},
        {0x1F600, CUnicodeData::kOtherSymbol},
        // Unassigned, inside the table and between its end and the fixed ranges.
        {0x0378, CUnicodeData::kUnassigned},
        {0xFFFF, CUnicodeData::kUnassigned},
        {0x40000, CUnicodeData::kUnassigned},
        {0xDFFFF, CUnicodeData::kUnassigned},
        // The fixed ranges above the table, with the code points around them.
        {0xE0000, CUnicodeData::kFormat},
        {0xE007F, CUnicodeData::kFormat},
        {0xE0080, CUnicodeData::kUnassigned},
        {0xE00FF, CUnicodeData::kUnassigned},
        {0xE0100, CUnicodeData::kNonspacingMark},
        {0xE01EF, CUnicodeData::kNonspacingMark},
        {0xE01F0, CUnicodeData::kUnassigned},
        {0xEFFFF, CUnicodeData::kUnassigned},
        {0xF0000, CUnicodeData::kPrivateUse},
        {0xFFFFD, CUnicodeData::kPrivateUse},
        {0xFFFFE, CUnicodeData::kUnassigned},
        {0x100000, CUnicodeData::kPrivateUse},
        {0x10FFFD, CUnicodeData::kPrivateUse},
        {0x10FFFE, CUnicodeData::kUnassigned},
        {0x110000, CUnicodeData::kUnassigned},
        {-1, CUnicodeData::kUnassigned},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << "U+" << c.codePoint);
        EXPECT_EQ(CUnicodeData::getCategory(c.codePoint), c.category);
        EXPECT_EQ(CUnicodeData::isLetter(c.codePoint), (c.category & 0xF0) == 0x10);
        EXPECT_EQ(CUnicodeData::isNumber(c.codePoint), (c.category & 0xF0) == 0x30);
    }
}

// A sweep of the whole code space: a wrong page index or a table that ends too
// early shows up as a fold that is not stable, a fold from or to an unassigned
// code point, or a byte that is no category at all.
TEST(UnicodeData, EveryCodePointHasAStableFoldAndAValidCategory)
{
    const std::uint8_t memberCounts[8] = {0, 5, 3, 3, 7, 4, 3, 4};
    int foldedCount = 0;
    for (std::int32_t codePoint = -2; codePoint <= 0x110001; ++codePoint) {
        const std::int32_t folded = CUnicodeData::fold(codePoint);
        const std::uint8_t category = CUnicodeData::getCategory(codePoint);
        const int categoryClass = category >> 4;
        const int member = category & 0x0F;
        const bool valid = category == 0 || (categoryClass >= 1 && categoryClass <= 7 && member >= 1 &&
                                             member <= memberCounts[categoryClass]);
        ASSERT_TRUE(valid) << std::hex << "U+" << codePoint << " category 0x" << int(category);
        if (folded == codePoint) continue;
        ++foldedCount;
        ASSERT_EQ(CUnicodeData::fold(folded), folded) << std::hex << "U+" << codePoint;
        ASSERT_NE(category, CUnicodeData::kUnassigned) << std::hex << "U+" << codePoint;
        ASSERT_NE(CUnicodeData::getCategory(folded), CUnicodeData::kUnassigned) << std::hex << "U+" << codePoint;
    }
    // Unicode 15 gives well over a thousand simple lowercase mappings.
    EXPECT_GT(foldedCount, 1000);
}
