#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/CCharEncodings.h"
#include "foundation/CObjectError.h"

namespace {

using fenn::ICharEncoding;

const std::uint8_t* bytes(const std::string& text)
{
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::int32_t size(const std::string& text)
{
    return static_cast<std::int32_t>(text.size());
}

TEST(CharEncodings, UTF8StrictDecodingFollowsTheLeadByteRules)
{
    struct Case
    {
        std::string input;
        std::int32_t next;  // -1: invalid
        std::uint32_t codePoint;
    };
    const Case cases[] = {
        {"A", 1, 0x41},
        {"\xC3\xA9", 2, 0xE9},
        {"\xE2\x82\xAC", 3, 0x20AC},
        {"\xF0\x9F\x8E\xB5", 4, 0x1F3B5},
        {"\xC0\x80", -1, 0},          // zero payload in the lead byte
        {"\xE0\x80\x80", -1, 0},      // likewise
        {"\xE0\xA4\x85", 3, 0x905},   // but E0 also leads real text (Devanagari)
        {"\xF0\x80\x80\x80", -1, 0},  // likewise
        {"\xC1\x81", 2, 0x41},        // other overlong forms are taken as they stand
        {"\xED\xA0\x80", 3, 0xD800},  // surrogate values are not refused
        {"\xF4\x90\x80\x80", -1, 0},  // 0x110000
        {"\xF8\x88\x80\x80\x80", -1, 0},
        {"\x80", -1, 0},          // bare continuation
        {"\xC3", -1, 0},          // cut short
        {"\xE2\x28\xA1", -1, 0},  // bad continuation
    };
    const ICharEncoding& utf8 = fenn::getUTF8Encoding();
    for (const Case& c : cases) {
        std::uint32_t codePoint = 0;
        EXPECT_EQ(utf8.decodeChar(codePoint, bytes(c.input), size(c.input), 0), c.next) << c.input;
        if (c.next > 0) {
            EXPECT_EQ(codePoint, c.codePoint) << c.input;
        }
    }
}

TEST(CharEncodings, LenientWalksStepOverInvalidUnits)
{
    const ICharEncoding& utf8 = fenn::getUTF8Encoding();
    const std::string bad = "\xC0\x80";
    EXPECT_EQ(utf8.countChars(bytes(bad), size(bad), 0), 0);
    const std::string mixed = "a\xC0\x80"
                              "b\x80\xC3\xA9";
    EXPECT_EQ(utf8.countChars(bytes(mixed), size(mixed), 0), 3);
    EXPECT_EQ(utf8.getCharPos(bytes(mixed), size(mixed), 1), 3);
    EXPECT_EQ(utf8.getCharPos(bytes(mixed), size(mixed), 2), 5);
    EXPECT_EQ(utf8.findValidPos(bytes(mixed), size(mixed), 1), 3);
    std::uint32_t codePoint = 0;
    EXPECT_EQ(utf8.decodeCharBackwardLenient(codePoint, bytes(mixed), size(mixed), 5), 3);
    EXPECT_EQ(codePoint, 'b');
    EXPECT_EQ(utf8.decodeCharBackward(codePoint, bytes(mixed), size(mixed), 5), -1);  // strict: stray 0x80

    // A lone low surrogate in UTF-16 is passed over; a pair is one code point.
    const std::u16string units = {u'x', 0xDC00, 0xD83C, 0xDFB5, 0xD800};
    const auto* data = reinterpret_cast<const std::uint8_t*>(units.data());
    const ICharEncoding& utf16 = fenn::getUTF16Encoding();
    EXPECT_EQ(utf16.countChars(data, 10, 0), 2);
    EXPECT_EQ(utf16.decodeChar(codePoint, data, 10, 2), -1);
    EXPECT_EQ(utf16.decodeCharLenient(codePoint, data, 10, 2), 8);
    EXPECT_EQ(codePoint, 0x1F3B5u);
    EXPECT_EQ(utf16.decodeCharBackward(codePoint, data, 10, 8), 4);
    EXPECT_EQ(codePoint, 0x1F3B5u);
}

TEST(CharEncodings, EncodingRefusesWhatTheFormCannotHold)
{
    struct Case
    {
        const ICharEncoding& encoding;
        std::uint32_t codePoint;
        std::vector<std::uint8_t> expected;  // empty: not written
    };
    const Case cases[] = {
        {fenn::getUTF8Encoding(), 0x7F, {0x7F}},
        {fenn::getUTF8Encoding(), 0x7FF, {0xDF, 0xBF}},
        {fenn::getUTF8Encoding(), 0xFFFF, {0xEF, 0xBF, 0xBF}},
        {fenn::getUTF8Encoding(), 0x10FFFF, {0xF4, 0x8F, 0xBF, 0xBF}},
        {fenn::getUTF8Encoding(), 0x110000, {}},
        {fenn::getUTF16Encoding(), 0xD800, {}},
        {fenn::getUTF16Encoding(), 0x110000, {}},
        {fenn::getUTF16Encoding(), 0x1F3B5, {0x3C, 0xD8, 0xB5, 0xDF}},
        {fenn::getLatin1Encoding(), 0xFF, {0xFF}},
        {fenn::getLatin1Encoding(), 0x100, {'?'}},
        {fenn::getUTF32Encoding(), 0x1F3B5, {0xB5, 0xF3, 0x01, 0x00}},
    };
    for (const Case& c : cases) {
        std::uint8_t buffer[8] = {};
        const std::int32_t end = c.encoding.encodeChar(c.codePoint, buffer, 8, 0);
        EXPECT_EQ(std::vector<std::uint8_t>(buffer, buffer + end), c.expected)
            << c.encoding.getName() << " " << std::hex << c.codePoint;
        EXPECT_EQ(c.encoding.getEncodedSize(c.codePoint), static_cast<std::int32_t>(c.expected.size()));
    }
    // No room: the position stays.
    std::uint8_t small[1];
    EXPECT_EQ(fenn::getUTF8Encoding().encodeChar(0xE9, small, 1, 0), 0);
}

TEST(CharEncodings, IdentifiersAndTheCodePageWalksForwardOnly)
{
    EXPECT_EQ(fenn::getUTF8Encoding().getID(), fenn::makeEncodingID("UTF8"));
    EXPECT_EQ(fenn::makeEncodingID("UTF8"), 0x38465455u);
    EXPECT_STREQ(fenn::getUTF16Encoding().getName(), "UTF-16");
    EXPECT_STREQ(fenn::getCPEncoding().getName(), "CodePage");
    const ICharEncoding& cp = fenn::getCPEncoding();
    EXPECT_FALSE(cp.isReversible());
    std::uint32_t codePoint = 0;
    const std::string text = "ab";
    EXPECT_EQ(cp.decodeChar(codePoint, bytes(text), 2, 0), 1);
    EXPECT_THROW(cp.decodeCharBackward(codePoint, bytes(text), 2, 2), fenn::CMethodNotImplementedError);
    EXPECT_THROW(cp.getPrevCharPos(bytes(text), 2, 2), fenn::CMethodNotImplementedError);
}

}  // namespace
