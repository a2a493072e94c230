#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

#include "foundation/CCharEncodings.h"
#include "foundation/CString.h"
#include "foundation/String.h"
#include "tests/foundation/CountingAllocator.h"

namespace {

using fenn::CStringPos;
using fenn::String;

// "Grüße, 🎵 Ωmega" in each of the five encodings.
std::vector<String> sameTextInAllEncodings()
{
    const std::u32string text = U"Gr\u00FC\u00DFe, \U0001F3B5 \u03A9mega";
    const String utf32 = String::copyOfUTF32(text);
    return {utf32.asUTF8(), utf32.asUTF16(), utf32, utf32.asCP(), utf32.asWChar()};
}

TEST(String, TheSameTextInEveryEncodingComparesHashesAndSearchesAlike)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    const std::vector<String> texts = sameTextInAllEncodings();
    const String needle = String::copyOfUTF16(u"\U0001F3B5 \u03C9MEGA");
    for (const String& a : texts) {
        ASSERT_EQ(a.getLength(), 14) << a.getEncoding().getName();
        EXPECT_EQ(a.find(needle, {}, fenn::CaseSensitivity::insensitive).index, 7) << a.getEncoding().getName();
        EXPECT_EQ(a.find(needle).index, -1) << a.getEncoding().getName();
        EXPECT_EQ(a.find(0x3A9).index, 9);
        EXPECT_EQ(a.charAtChecked(7), 0x1F3B5u);
        for (const String& b : texts) {
            EXPECT_TRUE(a.equals(b)) << a.getEncoding().getName() << " vs " << b.getEncoding().getName();
            EXPECT_EQ(a.compare(b), 0);
            EXPECT_EQ(a.hash(), b.hash());
        }
    }
    // Latin-1 holds the first part as one byte per code point.
    const String latin1 = texts[0].left(6).asLatin1();
    EXPECT_EQ(latin1.getByteSize(), 6);
    EXPECT_TRUE(latin1.equals(texts[1].left(6)));
    EXPECT_EQ(latin1.hash(), texts[2].left(6).hash());
}

TEST(String, ConversionsFollowTheTargetEncoding)
{
    const String yDiaeresis = String::copyOf("\xC3\xBF");
    EXPECT_EQ(yDiaeresis.asLatin1().getByteSize(), 1);
    EXPECT_EQ(static_cast<unsigned char>(yDiaeresis.asLatin1().getData()[0]), 0xFF);
    EXPECT_EQ(String::fromCodePoint(0x100).asLatin1().toStdString(), "?");

    // An empty string converts to each encoding's shared empty instance.
    const String empty;
    const fenn::ICharEncoding* encodings[] = {&fenn::getUTF8Encoding(), &fenn::getUTF16Encoding(),
                                              &fenn::getUTF32Encoding(), &fenn::getLatin1Encoding(),
                                              &fenn::getCPEncoding()};
    for (const fenn::ICharEncoding* encoding : encodings)
        EXPECT_EQ(empty.asEncoding(*encoding).getText().get(), fenn::getEmptyString(*encoding).get());

    // A literal is wrapped, not copied; a terminated text converts to itself.
    const char* literal = "wrapped";
    const String wrapped(literal);
    EXPECT_EQ(wrapped.getData(), literal);
    EXPECT_EQ(wrapped.asUTF8().getData(), literal);
    // An unterminated slice gets a terminated copy.
    const String slice = wrapped.left(4);
    EXPECT_FALSE(slice.isZeroTerminated());
    EXPECT_TRUE(slice.asUTF8().isZeroTerminated());
    EXPECT_STREQ(slice.c_str(), "wrap");

    // Invalid UTF-8 is readable: the lenient walk passes the bad bytes over.
    const String bad = String::copyOf("a\xC0\x80z");
    EXPECT_EQ(bad.getLength(), 2);
    EXPECT_EQ(bad.toStdString(), "a\xC0\x80z");
    EXPECT_EQ(bad.asUTF16().toStdString(), "az");
}

TEST(String, ComparisonsOrderByCodePoints)
{
    struct Case
    {
        String a, b;
        int sensitive, insensitive;
    };
    const Case cases[] = {
        {"abc", "abd", -1, -1},
        {"abc", "ab", 1, 1},
        {"ab", "abc", -1, -1},
        {"", "", 0, 0},
        {"ABC", "abc", -1, 0},
        {String::copyOf("\xC3\x84rger"), String::copyOfUTF16(u"\u00E4RGER"), -1, 0},
        {"z", String::copyOf("\xC3\xA4"), -1, -1},  // 0x7A before 0xE4: code points, not locale order
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.a.compare(c.b), c.sensitive) << c.a.toStdString() << " / " << c.b.toStdString();
        EXPECT_EQ(c.a.compareNoCase(c.b), c.insensitive) << c.a.toStdString() << " / " << c.b.toStdString();
    }
    EXPECT_EQ(String("abcX").compare("abcY", 3), 0);
    EXPECT_TRUE(String("Hello").startsWith("He"));
    EXPECT_FALSE(String("He").startsWith("Hello"));
    EXPECT_TRUE(String("Hello").endsWith("LLO", fenn::CaseSensitivity::insensitive));
    EXPECT_FALSE(String("Hello").endsWith("xHello"));
}

TEST(String, SearchesGivePositionsInCodePointsAndBytes)
{
    const String text = String::copyOf("\xC3\xA4-b-\xC3\xA4-b");  // "ä-b-ä-b"
    EXPECT_EQ(text.find("b"), (CStringPos{2, 3}));
    EXPECT_EQ(text.find("b", {3, 4}), (CStringPos{6, 8}));
    EXPECT_EQ(text.find("x"), CStringPos::end());
    EXPECT_EQ(text.findLast("b"), (CStringPos{6, 8}));
    EXPECT_EQ(text.findLast("b", {6, 8}), (CStringPos{2, 3}));
    EXPECT_EQ(text.findLastNoCase(String::copyOf("\xC3\x84")), (CStringPos{4, 5}));
    EXPECT_EQ(text.findAnyOf("b-"), (CStringPos{1, 2}));
    EXPECT_EQ(text.findNotOf(String::copyOf("\xC3\xA4-")), (CStringPos{2, 3}));
    EXPECT_EQ(text.countOf("-"), 3);
    EXPECT_EQ(String("aaaa").countOf("aa"), 2);
    EXPECT_EQ(text.countOfNoCase(String::copyOf("\xC3\x84")), 2);
    EXPECT_EQ(text.getPos(4), (CStringPos{4, 5}));
    EXPECT_EQ(text.getPos(8), CStringPos::end());
    EXPECT_EQ(text.retreat(CStringPos::end(), 3), (CStringPos{4, 5}));
    EXPECT_EQ(text.advance({1, 2}, 2), (CStringPos{3, 4}));
    // The code page cannot be read backward, so its searches walk forward.
    // (The program's code page is UTF-8; the plain C locale would drop the ä.)
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    const String cp = text.asCP();
    EXPECT_EQ(cp.findLast("b").index, 6);
    EXPECT_EQ(cp.retreat(CStringPos::end(), 3).index, 4);
}

TEST(String, DerivedTextsAndSlices)
{
    EXPECT_EQ(String("aa").replace("a", "aa"), String("aaaa"));
    EXPECT_EQ(String("%FILE% and %FILE%").replace("%FILE%", "x.wav"), String("x.wav and x.wav"));
    EXPECT_EQ(String("abcabc").replaceFirst("b", "BB"), String("aBBcabc"));
    EXPECT_EQ(String("ABC").replace("b", "-", fenn::CaseSensitivity::insensitive), String("A-C"));
    EXPECT_EQ(String("hello").insert(2, "XY"), String("heXYllo"));
    EXPECT_EQ(String("hello").remove(1, 3), String("ho"));
    EXPECT_EQ(String("hello").right(3), String("llo"));
    EXPECT_EQ(String(" \t hi there \n").trim(), String("hi there"));
    EXPECT_EQ(String("   ").trim(), String(""));
    EXPECT_EQ(String::copyOf("\xC3\x84pfel \xCE\xA3").toLowerCase(), String::copyOf("\xC3\xA4pfel \xCF\x83"));
    EXPECT_EQ(String::copyOf("stra\xC3\x9F"
                             "e")
                  .toUpperCase(),
              String::copyOf("STRA\xC3\x9F"
                             "E"));
    const std::vector<String> pieces = String("a,,b,").split(",");
    ASSERT_EQ(pieces.size(), 4u);
    EXPECT_EQ(pieces[0], String("a"));
    EXPECT_TRUE(pieces[1].isEmpty());
    EXPECT_EQ(pieces[2], String("b"));
    EXPECT_TRUE(pieces[3].isEmpty());
    // Mixing encodings keeps every code point.
    EXPECT_EQ(String("x").asLatin1() + String::copyOfUTF16(u"\u03A9"), String::copyOf("x\xCE\xA9"));

    // A slice of a slice outlives the strings it came from.
    String inner;
    {
        const String whole = String::copyOfUTF16(u"0123456789");
        const String middle = whole.substring(2, 6);
        inner = middle.substring(1, 3);
        EXPECT_EQ(inner.getData(), whole.getData() + 6);
    }
    EXPECT_EQ(inner, String("345"));
    EXPECT_EQ(inner.getLength(), 3);
}

TEST(String, ComparingHashingAndSearchingLargeTextsAllocateNothing)
{
    std::string big(10 * 1024 * 1024, 'a');
    big.replace(big.size() - 8, 8, "\xC3\xA4needle");
    const String text = String::copyOf(big);
    const String same = String::copyOf(big);
    const String needle("\xC3\x84NEEDLE");
    const String literal("needle");
    const long before = tbtest::allocationCount();
    EXPECT_EQ(text.compare(same), 0);
    EXPECT_EQ(text.compareNoCase(same), 0);
    EXPECT_EQ(text.hash(), same.hash());
    EXPECT_EQ(text.findNoCase(needle).index, static_cast<std::int32_t>(big.size()) - 8);
    EXPECT_EQ(text.find(literal).index, static_cast<std::int32_t>(big.size()) - 7);
    EXPECT_EQ(tbtest::allocationCount(), before);
}

}  // namespace
