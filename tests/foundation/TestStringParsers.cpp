#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "foundation/CError.h"
#include "foundation/StringParsers.h"

using namespace fenn;

namespace {

// Switches LC_NUMERIC for one test and puts the previous setting back.
class NumericLocale
{
public:
    NumericLocale() : m_previous(std::setlocale(LC_NUMERIC, nullptr)) {}
    ~NumericLocale() { std::setlocale(LC_NUMERIC, m_previous.c_str()); }
    bool set(const char* name) { return std::setlocale(LC_NUMERIC, name) != nullptr; }

    // Any German locale that is installed: "," as decimal point, "." between groups of three.
    bool setGerman()
    {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "de_DE@euro", "de_DE.ISO-8859-1"})
            if (set(name)) return true;
        return false;
    }

private:
    std::string m_previous;
};

template <class Parse> void expectParseError(Parse parse, const char* text, const char* description)
{
    try {
        parse();
        ADD_FAILURE() << "no CParseError for \"" << text << "\"";
    } catch (const CParseError& error) {
        EXPECT_EQ(error.getDescription().toStdString(), description) << text;
    }
}

}  // namespace

TEST(StringParsers, IntegersReadSignsAndDigitsOfAnyRadix)
{
    const std::tuple<const char*, int, std::int64_t> cases[] = {
        {"0", 10, 0},          {"+17", 10, 17},  {"-17", 10, -17}, {"0010", 10, 10},
        {"101", 2, 5},         {"777", 8, 511},  {"ff", 16, 255},  {"FF", 16, 255},
        {"-7fFf", 16, -32767}, {"zz", 36, 1295}, {"ZZ", 36, 1295}, {"Tonebench", 36, 83743858933937},
    };
    for (const auto& [text, radix, expected] : cases) {
        EXPECT_EQ(toInt64(text, radix), expected) << text;
        EXPECT_EQ(toInt(text, radix), static_cast<std::int32_t>(expected)) << text;
    }
    EXPECT_EQ(toUInt("4294967295"), UINT32_MAX);
    EXPECT_EQ(toInt64("-9223372036854775808"), INT64_MIN);
}

TEST(StringParsers, IntegersRejectEmptyTextAndLeftovers)
{
    const std::pair<const char*, int> cases[] = {{"", 10},    {"-", 10},   {"+", 10},   {"12x", 10},
                                                 {" 12", 10}, {"12 ", 10}, {"9", 8},    {"g", 16},
                                                 {"1.5", 10}, {"--1", 10}, {"12é", 10}, {"\xD9\xA3", 10}};
    for (const auto& [text, radix] : cases) {
        expectParseError([&] { toInt(text, radix); }, text, "Error parsing integer.");
        expectParseError([&] { toInt64(text, radix); }, text, "Error parsing integer.");
        expectParseError([&] { toUInt(text, radix); }, text, "Error parsing integer.");
    }
}

TEST(StringParsers, TolerantFormsStopAtTheFirstNonDigit)
{
    // Text, radix, value, characters consumed.
    const std::tuple<const char*, int, std::int32_t, std::int32_t> cases[] = {
        {"12x", 10, 12, 2}, {"12", 10, 12, 2},    {"-7ff;", 16, -2047, 4}, {"+0 rest", 10, 0, 2},
        {"12é", 10, 12, 2}, {"zZ!", 36, 1295, 2}, {"129", 2, 1, 1}};
    for (const auto& [text, radix, expected, expectedConsumed] : cases) {
        std::int32_t consumed = -1;
        std::int32_t consumed64 = -1;
        EXPECT_EQ(toIntTolerant(text, radix, consumed), expected) << text;
        EXPECT_EQ(toInt64Tolerant(text, radix, consumed64), expected) << text;
        EXPECT_EQ(consumed, expectedConsumed) << text;
        EXPECT_EQ(consumed64, expectedConsumed) << text;
    }
    std::int32_t consumed = 0;
    for (const char* text : {"", "-", "x12", "-x"})
        expectParseError([&] { toIntTolerant(text, 10, consumed); }, text, "Error parsing integer.");
}

// Overflow goes unnoticed: the digits accumulate in the unsigned type of the
// result's width, are negated there for "-", and the bits are the result.
TEST(StringParsers, OverflowWrapsLikeUnsignedArithmetic)
{
    EXPECT_EQ(toInt("4294967297"), 1);
    EXPECT_EQ(toInt("2147483648"), INT32_MIN);
    EXPECT_EQ(toInt("99999999999"), static_cast<std::int32_t>(static_cast<std::uint32_t>(99999999999ull)));
    EXPECT_EQ(toInt("-99999999999"), static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(99999999999ull)));
    EXPECT_EQ(toInt("ffffffff", 16), -1);
    EXPECT_EQ(toUInt("-1"), UINT32_MAX);
    EXPECT_EQ(toInt64("18446744073709551617"), 1);
    EXPECT_EQ(toInt64("123456789012345678901"), static_cast<std::int64_t>(12345678901234567890ull * 10u + 1u));
}

TEST(StringParsers, DoublesInTheCLocale)
{
    NumericLocale locale;
    ASSERT_TRUE(locale.set("C"));
    const std::pair<const char*, double> valid[] = {
        {"0", 0.0},      {"1.5", 1.5},      {" \t-2.25", -2.25}, {"+.5", 0.5},      {"5.", 5.0},
        {"1e3", 1000.0}, {"1.5E-2", 0.015}, {"007", 7.0},        {"inf", INFINITY}, {"-Infinity", -INFINITY}};
    for (const auto& [text, expected] : valid) EXPECT_EQ(toDouble(text), expected) << text;
    EXPECT_TRUE(std::isnan(toDouble("nan")));

    for (const char* text : {"", " ", "1,5", "1,000", "1.5 ", "1e", "1e+", "1.2.3", "--1", "+-1", ".", "e5", "\n1",
                             "0x10", "1e999", "abc", "infx", "1\xC2\xA0"})
        expectParseError([&] { toDouble(text); }, text, "Error parsing floating point value.");
}

TEST(StringParsers, DoublesFollowTheCurrentLocale)
{
    NumericLocale locale;
    if (!locale.setGerman()) GTEST_SKIP() << "no German locale installed";

    const std::pair<const char*, double> valid[] = {
        {"1,5", 1.5}, {"1.234.567,25", 1234567.25}, {"-12.345", -12345.0}, {"1234,5", 1234.5}};
    for (const auto& [text, expected] : valid) EXPECT_EQ(toDouble(text), expected) << text;
    // A dot is a group separator here, so it must stand between groups of three.
    for (const char* text : {"1.5", "12.34", "1,234.5", "1..000", ".5", "1.000.", "1.0000"})
        expectParseError([&] { toDouble(text); }, text, "Error parsing floating point value.");

    EXPECT_EQ(fromDouble(0.5).toStdString(), "0,5");
    EXPECT_EQ(toDouble(fromDouble(1.0 / 3)), 1.0 / 3);
}

TEST(StringParsers, FromDoubleGivesTheShortestTextThatReadsBack)
{
    NumericLocale locale;
    ASSERT_TRUE(locale.set("C"));
    const std::pair<double, const char*> cases[] = {{0.1, "0.1"},       {1.0, "1"},         {-0.0, "-0"},
                                                    {1e20, "1e+20"},    {0.3, "0.3"},       {123456.789, "123456.789"},
                                                    {5e-324, "5e-324"}, {-INFINITY, "-inf"}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(fromDouble(value).toStdString(), expected) << expected;

    for (double value : {1.0 / 3, 0.1 + 0.2, std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                         std::numeric_limits<double>::denorm_min(), -1e-300, 0.0, -0.0})
        EXPECT_EQ(std::bit_cast<std::uint64_t>(toDouble(fromDouble(value))), std::bit_cast<std::uint64_t>(value))
            << fromDouble(value).toStdString();
}
