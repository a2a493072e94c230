#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/CObjectError.h"
#include "foundation/CStringFormat.h"
#include "foundation/FormatDataSize.h"
#include "foundation/IStringLocalizer.h"

using namespace fenn;

namespace {

// The argument types a caller pushes; each keeps its own width.
using Argument = std::variant<int, unsigned, short, std::int64_t, std::uint64_t, double, String, char32_t, char>;

std::string format(const char* text, const std::vector<Argument>& arguments)
{
    CStringFormat builder(text);
    for (const Argument& argument : arguments) std::visit([&](const auto& value) { builder.push(value); }, argument);
    return builder.getResult().toStdString();
}

// Prefixes each key to its text, so a test can see that a text was looked up.
class CKeyShowingLocalizer : public CObject, public virtual IStringLocalizer
{
public:
    String localize(const String& key, const String&) const override { return String("[") + key + "]"; }
};

}  // namespace

constexpr const char* kMismatch = "CStringFormat: argument does not match the field's format specification.";

TEST(StringFormat, FillsFieldsFromPushedArguments)
{
    const std::tuple<const char*, std::vector<Argument>, const char*> cases[] = {
        {"plain text", {}, "plain text"},
        {"100%% of %d%%", {3}, "100% of 3%"},
        {"[%5d|%-5d|%05d]", {42, -42, -7}, "[   42|-42  |-0007]"},
        {"%+d % d %.3d", {7, 7, 5}, "+7  7 005"},
        {"%x %X %#o %u %i", {255, 255, 8, 3000000000u, -1}, "ff FF 010 3000000000 -1"},
        // Integers are read with the width of their pushed type; h and hh narrow further.
        {"%x|%x|%d|%d", {-1, std::int64_t{-1}, 4294967295u, UINT64_MAX}, "ffffffff|ffffffffffffffff|-1|-1"},
        {"%hd %hhx %hu", {70000, 0x1ff, short{-1}}, "4464 ff 65535"},
        {"%ld %lld %I64d %zu %jd %td %Lx", {1, 2, INT64_MIN, 4u, 5, 6, 255}, "1 2 -9223372036854775808 4 5 6 ff"},
        {"%*d|%-*d|%*d|", {4, 1, 3, 2, -3, 9}, "   1|2  |9  |"},
        {"%.2f %e %G %g %5.1f",
         {3.14159, 1234.5, 0.000012345, 100000.0, 2.25},
         "3.14 1.234500e+03 1.2345E-05 100000   2.2"},
        {"%.*f|%.*f|%*.*e", {2, 3.14159, -1, 1.5, 10, 1, 2.0}, "3.14|1.500000|   2.0e+00"},
        {"%s and %S", {String("cats"), String("dogs")}, "cats and dogs"},
        {"%5s|%-5s|%.2s|%.s|", {String("ab"), String("ab"), String("abc"), String("x")}, "   ab|ab   |ab||"},
        // Width and precision of text count code points, not bytes.
        {"%-4s|%3s|%.1s", {String("äö"), String("€"), String("äö")}, "äö  |  €|ä"},
        {"%c%C%3c%-2c|%c%c", {U'é', U'€', U'🎵', U'x', 65, 'y'}, "é€  🎵x |Ay"},
        {"naïve %s ✓", {String("text")}, "naïve text ✓"},
    };
    for (const auto& [text, arguments, expected] : cases) EXPECT_EQ(format(text, arguments), expected) << text;
    EXPECT_EQ(CStringFormat::format("%d of %d in %s", 3, 7, "set").toStdString(), "3 of 7 in set");
}

TEST(StringFormat, ReportsFaultsOfFormatAndArguments)
{
    // Format, pushed arguments, and the text of the CInvalidArgError that follows.
    const std::tuple<const char*, std::vector<Argument>, const char*> cases[] = {
        {"%-+0# -+d", {}, "CStringFormat: too many field flags specified."},
        {"%q", {}, "CStringFormat: invalid format string."},
        {"ends in %", {}, "CStringFormat: invalid format string."},
        {"%n", {}, "CStringFormat: invalid format string."},
        {"%5%", {}, "CStringFormat: invalid format string."},
        {"%d then %y", {1}, "CStringFormat: invalid format string."},
        {"%d", {1.5}, kMismatch},
        {"%f", {1}, kMismatch},
        {"%s", {1}, kMismatch},
        {"%d", {String("1")}, kMismatch},
        {"%d", {U'1'}, kMismatch},
        {"%c", {1.0}, kMismatch},
        {"%*d", {1.5}, "CStringFormat: expected integer value (field width)."},
        {"%.*f", {String("2")}, "CStringFormat: expected integer value (field precision)."},
        {"%*.*f", {1, 2.0}, "CStringFormat: expected integer value (field precision)."},
        {"%d", {1, 2}, "CStringFormat: more arguments pushed than the format has fields."},
    };
    const auto check = [](const char* text, const std::vector<Argument>& arguments, const char* expected,
                          const std::type_info& type) {
        try {
            format(text, arguments);
            ADD_FAILURE() << "no error for " << text;
        } catch (const CObjectError& error) {
            const std::string description = error.getDescription().toStdString();
            EXPECT_EQ(typeid(error), type) << text << ": " << description;
            EXPECT_NE(description.find(expected), std::string::npos) << text << ": " << description;
            EXPECT_NE(description.find("CStringFormat object"), std::string::npos) << text;
        }
    };
    for (const auto& [text, arguments, expected] : cases) check(text, arguments, expected, typeid(CInvalidArgError));
    for (const auto& [text, arguments] :
         {std::pair<const char*, std::vector<Argument>>{"%d", {}}, {"%*d", {3}}, {"%.*f", {3}}})
        check(text, arguments, "CStringFormat: not all parameters have been pushed in yet.",
              typeid(CInvalidObjectStateError));
    // Six flags are allowed, and a rejected argument leaves its field open.
    EXPECT_EQ(format("%-+0# -4d|", {5}), "+5  |");
    CStringFormat builder("<%d>");
    EXPECT_THROW(builder.push(2.5), CInvalidArgError);
    EXPECT_FALSE(builder.isComplete());
    EXPECT_EQ(builder.push(25).getResult().toStdString(), "<25>");
}

TEST(FormatDataSize, ScalesToTheUnitThatKeepsTheNumberShort)
{
    constexpr double KB = 1024.0;
    // Value, unit, precision, text.
    const std::tuple<double, int, int, const char*> cases[] = {
        {0, -1, 1, "0.0 Bytes"},
        {949, -1, 1, "949.0 Bytes"},
        {950, -1, 1, "0.9 KB"},
        {-950, -1, 1, "-0.9 KB"},
        {1536, -1, 2, "1.50 KB"},
        {949 * KB, -1, 1, "949.0 KB"},
        {5 * KB * KB, -1, 0, "5 MB"},
        {1.5e9, -1, 1, "1.4 GB"},
        {KB * KB * KB * KB, -1, 1, "1.0 TB"},
        // Past TB the scaling goes on once more and stops; the name stays TB.
        {KB * KB * KB * KB * KB, -1, 1, "1.0 TB"},
        {KB * KB * KB * KB * KB * KB, -1, 1, "1024.0 TB"},
        {1536, 1, 1, "1.5 KB"},
        {100, 1, 2, "0.10 KB"},
        {2000, 0, 1, "2000.0 Bytes"},
        {3 * KB * KB, 1, 0, "3072 KB"},
        {KB * KB * KB * KB * KB * KB * KB, 7, 1, "1.0 TB"},
    };
    for (const auto& [value, unit, precision, expected] : cases)
        EXPECT_EQ(formatDataSize(value, unit, precision).toStdString(), expected) << expected;
    EXPECT_EQ(formatDataSize(949).toStdString(), "949.0 Bytes");
    EXPECT_EQ(formatDataSize(std::int64_t{950}).toStdString(), "0.9 KB");
    EXPECT_EQ(formatDataSize(std::uint64_t{1} << 40, 2).toStdString(), "1048576.0 MB");

    const P<IStringLocalizer> previous = getStringLocalizer();
    setStringLocalizer(make<CKeyShowingLocalizer>());
    EXPECT_EQ(formatDataSize(1).toStdString(), "1.0 [fenn.dataSize.Bytes]");
    EXPECT_EQ(formatDataSize(3 * KB * KB * KB, 3).toStdString(), "3.0 [fenn.dataSize.GB]");
    setStringLocalizer(previous);
}
