#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"
#include "tags/CMusicGenreList.h"
#include "tags/TagTexts.h"
#include "tests/tags/TagTestSupport.h"

using namespace tbx;
using namespace tbtest;

namespace {

std::string text(const fenn::String& value)
{
    return value.toStdString();
}

TEST(MusicGenreList, HoldsEveryID3v1GenreOnceInDisplayOrder)
{
    auto genres = fenn::make<CMusicGenreList>();
    ASSERT_EQ(genres->getCount(), 148);
    EXPECT_EQ(text(genres->getGenre(0)->getName()), "Rock");
    EXPECT_EQ(text(genres->getGenre(1)->getName()), "Hard Rock");
    EXPECT_EQ(text(genres->getGenre(147)->getName()), "Other");
    EXPECT_THROW(genres->getGenre(148), fenn::CInvalidArgError);
    EXPECT_THROW(genres->getGenre(-1), fenn::CInvalidArgError);
    std::set<std::int32_t> numbers;
    for (std::int32_t index = 0; index < genres->getCount(); ++index) {
        const std::int32_t number = genres->getGenre(index)->getNumber();
        EXPECT_TRUE(numbers.insert(number).second) << number;
        EXPECT_EQ(genres->findIndexByNumber(number), index);
    }
    EXPECT_EQ(*numbers.begin(), 0);
    EXPECT_EQ(*numbers.rbegin(), 147);
    for (const std::int32_t outside : {-1, 148, 255}) {
        EXPECT_EQ(genres->findIndexByNumber(outside), -1);
        EXPECT_FALSE(genres->findGenreByNumber(outside));
    }
}

// The numbers against the published table as the id3v2 tool lists it; the
// program spells a few names its own way and knows the published spelling
// as an alias, except where noted.
TEST(MusicGenreList, NumbersAreThoseOfThePublishedTable)
{
    const CommandResult listing = runCommand("id3v2 -L");
    ASSERT_EQ(listing.status, 0) << listing.output;
    const std::map<std::string, std::string> ownSpelling = {
        {"A capella", "Acapella"},       {"Britpop", "BritPop"},         {"JPop", "Jpop"},
        {"Thrash Metal", "Trash Metal"}, {"Psychedelic", "Psychadelic"}, {"Folk-Rock", "Folk Rock"},
        {"Pop/Funk", "Funk Pop"},        {"Euro-Techno", "Euro Techno"}, {"Eurodance", "Euro Dance"},
        {"Euro-House", "Euro House"},    {"Pop-Folk", "Pop Folk"},       {"AlternRock", "Alternative Rock"}};
    auto genres = fenn::make<CMusicGenreList>();
    std::istringstream lines(listing.output);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (!std::regex_match(line, match, std::regex(R"(\s*(\d+): (.*?)\s*)"))) continue;
        ++count;
        std::string name = match[2];
        if (const auto own = ownSpelling.find(name); own != ownSpelling.end()) name = own->second;
        const fenn::P<IMusicGenre> genre = genres->findGenreByNumber(std::stoi(match[1]));
        ASSERT_TRUE(genre) << line;
        EXPECT_EQ(text(genre->getName()), name) << line;
    }
    EXPECT_EQ(count, 148);
}

TEST(MusicGenreList, FindsGenresByNameAndAliasInAnyCase)
{
    auto genres = fenn::make<CMusicGenreList>();
    const struct
    {
        const char* text;
        std::int32_t number;  // -1: no genre
    } cases[] = {
        {"funkpop", 62},    {"FUNK-POP", 62}, {"Pop Funk", 62},    {"pop/funk", 62},
        {"rock", 17},       {"R and B", 14},  {"Rock'n'Roll", 78}, {"Drum 'n' Bass", 127},
        {"AlternRock", 40}, {"Hip Hop", 7},   {"Other", 12},       {"Polka Dots", -1},
        {"", -1},           {" Rock", -1},
    };
    for (const auto& testCase : cases) {
        const fenn::P<IMusicGenre> genre = genres->findGenre(testCase.text);
        EXPECT_EQ(genre ? genre->getNumber() : -1, testCase.number) << testCase.text;
        EXPECT_EQ(genres->findIndex(testCase.text) >= 0, testCase.number >= 0) << testCase.text;
    }
}

TEST(MusicGenreList, AliasTextsAreSplitAtCommasAndTrimmed)
{
    const struct
    {
        const char* aliases;
        std::vector<std::string> expected;
    } cases[] = {
        {"a, b ,c", {"a", "b", "c"}},
        {" a , ,b,", {"a", "b"}},
        {"", {""}},
        {",", {}},
    };
    for (const auto& testCase : cases) {
        const auto genre = fenn::make<CMusicGenre>("Name", testCase.aliases, 1);
        std::vector<std::string> aliases;
        for (const fenn::String& alias : genre->getAliases()) aliases.push_back(text(alias));
        EXPECT_EQ(aliases, testCase.expected) << testCase.aliases;
    }
    const auto genre = fenn::make<CMusicGenre>("Name", "First, Second", 1);
    EXPECT_TRUE(genre->matches("NAME"));
    EXPECT_TRUE(genre->matches("second"));
    EXPECT_FALSE(genre->matches("First, Second"));
}

class GermanGenres : public fenn::CObject, public virtual fenn::IStringLocalizer
{
public:
    fenn::String localize(const fenn::String& key, const fenn::String& defaultText) const override
    {
        if (key == "tbx.MusicGenre.Classical") return "Klassik";
        return defaultText;
    }
};

TEST(MusicGenreList, DisplayNamesAreTranslatedAndAliasesAreNot)
{
    fenn::setStringLocalizer(fenn::make<GermanGenres>());
    auto genres = fenn::make<CMusicGenreList>();
    fenn::setStringLocalizer(nullptr);
    const fenn::P<IMusicGenre> classical = genres->findGenreByNumber(32);
    ASSERT_TRUE(classical);
    EXPECT_EQ(text(classical->getName()), "Klassik");
    EXPECT_EQ(genres->findGenre("klassik"), classical);
    EXPECT_EQ(genres->findGenre("Classical"), classical);
}

TEST(TagTexts, EveryTextHasAKeyAndADefault)
{
    std::set<std::string> keys;
    for (const fenn::TextKey& entry : tags::texts::all) {
        ASSERT_TRUE(entry.key != nullptr && entry.defaultText != nullptr);
        EXPECT_STRNE(entry.defaultText, "") << entry.key;
        EXPECT_TRUE(keys.insert(entry.key).second) << "duplicate key " << entry.key;
    }
    EXPECT_EQ(keys.size(), 151u);
    for (const fenn::TextKey& genre : tags::texts::musicGenres)
        EXPECT_EQ(std::string(genre.key).rfind("tbx.MusicGenre.", 0), 0u) << genre.key;
    EXPECT_EQ(keys.count("tbx.MusicGenre.Unspecified"), 1u);
    EXPECT_EQ(keys.count("tbx.MusicGenre.Drum'n'Bass"), 1u);
    EXPECT_EQ(keys.count("tbx.MusicGenre.Top40"), 1u);
}

}  // namespace
