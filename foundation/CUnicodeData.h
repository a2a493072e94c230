#pragma once

#include <cstdint>

namespace fenn {

// The character properties the framework's strings need: the simple lower-case
// folding behind the no-case comparisons and searches, and the general
// category of a code point. The tables are generated at build time from the
// Unicode character database (tools/unicode) and are constant data, so any
// thread may call at any time.
class CUnicodeData
{
public:
    // A general category is one byte: the high nibble is the class, the low
    // nibble the member, numbered from 1 in the order of the Unicode standard.
    static constexpr std::uint8_t kClassMask = 0xF0;
    static constexpr std::uint8_t kLetterClass = 0x10;
    static constexpr std::uint8_t kMarkClass = 0x20;
    static constexpr std::uint8_t kNumberClass = 0x30;
    static constexpr std::uint8_t kPunctuationClass = 0x40;
    static constexpr std::uint8_t kSymbolClass = 0x50;
    static constexpr std::uint8_t kSeparatorClass = 0x60;
    static constexpr std::uint8_t kOtherClass = 0x70;

    static constexpr std::uint8_t kUnassigned = 0x00;
    static constexpr std::uint8_t kUppercaseLetter = 0x11;
    static constexpr std::uint8_t kLowercaseLetter = 0x12;
    static constexpr std::uint8_t kTitlecaseLetter = 0x13;
    static constexpr std::uint8_t kModifierLetter = 0x14;
    static constexpr std::uint8_t kOtherLetter = 0x15;
    static constexpr std::uint8_t kNonspacingMark = 0x21;
    static constexpr std::uint8_t kSpacingMark = 0x22;
    static constexpr std::uint8_t kEnclosingMark = 0x23;
    static constexpr std::uint8_t kDecimalNumber = 0x31;
    static constexpr std::uint8_t kLetterNumber = 0x32;
    static constexpr std::uint8_t kOtherNumber = 0x33;
    static constexpr std::uint8_t kConnectorPunctuation = 0x41;
    static constexpr std::uint8_t kDashPunctuation = 0x42;
    static constexpr std::uint8_t kOpenPunctuation = 0x43;
    static constexpr std::uint8_t kClosePunctuation = 0x44;
    static constexpr std::uint8_t kInitialPunctuation = 0x45;
    static constexpr std::uint8_t kFinalPunctuation = 0x46;
    static constexpr std::uint8_t kOtherPunctuation = 0x47;
    static constexpr std::uint8_t kMathSymbol = 0x51;
    static constexpr std::uint8_t kCurrencySymbol = 0x52;
    static constexpr std::uint8_t kModifierSymbol = 0x53;
    static constexpr std::uint8_t kOtherSymbol = 0x54;
    static constexpr std::uint8_t kSpaceSeparator = 0x61;
    static constexpr std::uint8_t kLineSeparator = 0x62;
    static constexpr std::uint8_t kParagraphSeparator = 0x63;
    static constexpr std::uint8_t kControl = 0x71;
    static constexpr std::uint8_t kFormat = 0x72;
    static constexpr std::uint8_t kSurrogate = 0x73;
    static constexpr std::uint8_t kPrivateUse = 0x74;

    // Fold pages hold 512 code points, category pages 128.
    static constexpr int kFoldPageShift = 9;
    static constexpr int kCategoryPageShift = 7;
    // The category table ends at or before this code point; above it only
    // fixed ranges are assigned (tags, variation selectors, private use).
    static constexpr std::int32_t kCategoryTableLimit = 0xE0000;

    // The simple lower-case form; a code point without one, or outside the
    // table (negative included), folds to itself.
    static std::int32_t fold(std::int32_t codePoint);

    // One of the category values above; kUnassigned outside the code space.
    static std::uint8_t getCategory(std::int32_t codePoint);

    static bool isLetter(std::int32_t codePoint) { return (getCategory(codePoint) & kClassMask) == kLetterClass; }
    static bool isNumber(std::int32_t codePoint) { return (getCategory(codePoint) & kClassMask) == kNumberClass; }

private:
    // Defined in the generated CUnicodeDataTables.cpp. A page index gives the
    // number of the page that holds a code point's entry; identical pages (all
    // the empty ones, above all) are stored once.
    static const std::int32_t kFoldTableSize;
    static const std::uint16_t kFoldPageIndex[];
    static const std::int16_t kFoldDeltas[];
    static const std::int32_t kCategoryTableSize;
    static const std::uint16_t kCategoryPageIndex[];
    static const std::uint8_t kCategories[];
};

}  // namespace fenn
