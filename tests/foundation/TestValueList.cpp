#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>

#include "foundation/CBoxedValues.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"

using namespace fenn;

namespace {

// Name -> how often the enumerator gave it.
std::map<std::string, int> collectNames(const IValueList& list)
{
    std::map<std::string, int> names;
    P<IConstEnum> enumerator = list.getNames();
    while (enumerator->hasMoreElements()) {
        PC<IBase> element;
        enumerator->next(element);
        const IString* text = TCast<IString>(element.get());
        EXPECT_NE(text, nullptr);
        if (text) ++names[std::string(text->getData(), static_cast<std::size_t>(text->getByteSize()))];
    }
    return names;
}

}  // namespace

TEST(ValueList, NamesMeetOnlyWhenTheCaseRuleAllows)
{
    struct Case
    {
        const char* stored;
        const char* asked;
        bool meetInsensitive;
    };
    const Case cases[] = {
        {"Foo", "FOO", true},
        {"Foo", "foo", true},
        {"Foo", "Fo", false},
        {"\xC3\x84rger", "\xC3\xA4RGER", true},  // Ä / ä
        {"\xC3\x9E", "\xC3\xBE", true},          // Þ / þ, the last folded capital
        {"\xC3\x97", "\xC3\xB7", false},         // × / ÷ are not letters
        {"\xC3\x9F", "\xC3\xBF", false},         // ß is no capital of ÿ
        {"a\xFF"
         "B",
         "A\xFF"
         "b",
         true},  // a stray byte does not stop the folding
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.stored) + " / " + c.asked);
        CValueList insensitive(CaseSensitivity::insensitive);
        CValueList sensitive(CaseSensitivity::sensitive);
        insensitive.setInt(c.stored, 1);
        sensitive.setInt(c.stored, 1);

        EXPECT_EQ(insensitive.hasValue(c.asked), c.meetInsensitive);
        EXPECT_EQ(insensitive.getInt(c.asked, -1), c.meetInsensitive ? 1 : -1);
        EXPECT_FALSE(sensitive.hasValue(c.asked));

        // Setting under the other spelling replaces the value but keeps the first spelling.
        EXPECT_EQ(insensitive.setInt(c.asked, 2), !c.meetInsensitive);
        EXPECT_EQ(insensitive.getInt(c.stored, -1), c.meetInsensitive ? 2 : 1);
        EXPECT_EQ(insensitive.getCount(), c.meetInsensitive ? 1 : 2);
        if (c.meetInsensitive) {
            EXPECT_EQ(collectNames(insensitive), (std::map<std::string, int>{{c.stored, 1}}));
        }

        EXPECT_TRUE(sensitive.setInt(c.asked, 2));
        EXPECT_EQ(collectNames(sensitive), (std::map<std::string, int>{{c.stored, 1}, {c.asked, 1}}));
    }
}

TEST(ValueList, TypedGettersGiveTheDefaultForMissingNamesAndOtherTypes)
{
    CValueList list;
    list.setBool("bool", true);
    list.setInt("int", std::numeric_limits<std::int32_t>::min());
    list.setInt64("int64", std::numeric_limits<std::int64_t>::max());
    list.setFloat("float", 0.1f);
    list.setDouble("double", 0.1);
    list.setString("string", String::copyOf("text"));
    const P<IBase> object = make<CInt>(7);
    list.setValue("object", object);

    const char* const names[] = {"bool", "int", "int64", "float", "double", "string", "missing"};
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const std::string n = name;
        EXPECT_EQ(list.getBool(name, false), n == "bool");
        EXPECT_EQ(list.getInt(name, 5), n == "int" ? std::numeric_limits<std::int32_t>::min() : 5);
        EXPECT_EQ(list.getInt64(name, 5), n == "int64" ? std::numeric_limits<std::int64_t>::max() : 5);
        EXPECT_EQ(list.getFloat(name, 5.0f), n == "float" ? 0.1f : 5.0f);
        EXPECT_EQ(list.getDouble(name, 5.0), n == "double" ? 0.1 : 5.0);
        EXPECT_EQ(list.getString(name, "default"), String(n == "string" ? "text" : "default"));
        EXPECT_EQ(list.hasValue(name), n != "missing");
        EXPECT_EQ(list.getValue(name) == nullptr, n == "missing");
    }
    const P<IBase> fallback = make<CBool>();
    EXPECT_EQ(list.getObject("object", fallback), object);
    EXPECT_EQ(list.getObject("missing", fallback), fallback);
    EXPECT_EQ(list.getInt("object", 0), 7);
}

TEST(ValueList, SetRemoveAndCount)
{
    CValueList list;
    EXPECT_TRUE(list.isOpen());
    EXPECT_TRUE(list.setInt("a", 1));
    EXPECT_FALSE(list.setInt("a", 2));
    EXPECT_FALSE(list.setString("a", "now text"));  // a new type under an old name is not a new name
    EXPECT_TRUE(list.setDouble("b", 1.5));
    EXPECT_EQ(list.getCount(), 2);
    EXPECT_EQ(list.getString("a", ""), String("now text"));

    EXPECT_THROW(list.setValue("c", nullptr), CInvalidArgError);
    EXPECT_FALSE(list.hasValue("c"));

    EXPECT_TRUE(list.removeValue("a"));
    EXPECT_FALSE(list.removeValue("a"));
    EXPECT_EQ(list.getCount(), 1);
    EXPECT_TRUE(list.setInt("a", 3));  // new again after removal

    list.removeAll();
    EXPECT_EQ(list.getCount(), 0);
    EXPECT_FALSE(list.hasValue("b"));
    EXPECT_TRUE(collectNames(list).empty());
    EXPECT_TRUE(list.setInt("b", 4));
}

TEST(ValueList, GetValueCheckedThrowsForMissingNames)
{
    CValueList list(CaseSensitivity::insensitive);
    list.setInt("Present", 1);
    EXPECT_EQ(TCast<IInt>(list.getValueChecked("PRESENT"))->getValue(), 1);
    EXPECT_THROW(list.getValueChecked("absent"), CNoSuchObjectError);
}

TEST(ValueList, AssignReplacesValuesAndTakesTheCaseRule)
{
    CValueList source(CaseSensitivity::insensitive);
    source.setInt("Width", 640);
    source.setString("Title", "Mix");
    CValueList target(CaseSensitivity::sensitive);
    target.setInt("old", 1);
    target.setInt("Width", 1);

    target.assign(source);
    EXPECT_EQ(target.getCaseSensitivity(), CaseSensitivity::insensitive);
    EXPECT_EQ(collectNames(target), (std::map<std::string, int>{{"Title", 1}, {"Width", 1}}));
    EXPECT_EQ(target.getInt("WIDTH", 0), 640);
    EXPECT_EQ(target.getString("title", ""), String("Mix"));

    // The lists stay apart: changing one does not change the other's names.
    source.removeValue("Width");
    EXPECT_TRUE(target.hasValue("Width"));
    target.setInt("extra", 1);
    EXPECT_FALSE(source.hasValue("extra"));

    target.assign(target);
    EXPECT_EQ(target.getCount(), 0);
}

TEST(ValueList, ManyNamesSurviveGrowthAndEnumerateOnce)
{
    constexpr int kCount = 1000;
    CValueList list(CaseSensitivity::insensitive);
    for (int i = 0; i < kCount; ++i) ASSERT_TRUE(list.setInt("Name" + fromInt(i), i));
    EXPECT_EQ(list.getCount(), kCount);
    for (int i = 0; i < kCount; ++i) ASSERT_EQ(list.getInt("NAME" + fromInt(i), -1), i);

    P<IConstEnum> names = list.getNames();
    EXPECT_EQ(names->getCount(), kCount);
    const std::map<std::string, int> seen = collectNames(list);
    ASSERT_EQ(seen.size(), static_cast<std::size_t>(kCount));
    for (const auto& [name, times] : seen) EXPECT_EQ(times, 1) << name;

    for (int i = 0; i < kCount; i += 2) ASSERT_TRUE(list.removeValue("name" + fromInt(i)));
    EXPECT_EQ(list.getCount(), kCount / 2);
    for (int i = 1; i < kCount; i += 2) ASSERT_EQ(list.getInt("Name" + fromInt(i), -1), i);

    // An enumerator made earlier keeps its names after the list is emptied.
    list.removeAll();
    int walked = 0;
    PC<IBase> element;
    while (names->hasMoreElements()) {
        names->next(element);
        ++walked;
    }
    EXPECT_EQ(walked, kCount);
    EXPECT_THROW(names->next(element), CEndOfEnumError);
    names->reset();
    EXPECT_TRUE(names->hasMoreElements());
}

TEST(BoxedValues, ToStringGivesTheValueAsText)
{
    const std::pair<P<IBase>, const char*> cases[] = {
        {make<CBool>(true), "true"},
        {make<CBool>(false), "false"},
        {make<CInt>(std::numeric_limits<std::int32_t>::min()), "-2147483648"},
        {make<CInt64>(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808"},
        {make<CFloat>(0.1f), "0.1"},
        {make<CDouble>(0.1), "0.1"},
        {make<CDouble>(-1e300), "-1e+300"},
        {make<CDouble>(std::numeric_limits<double>::denorm_min()), "5e-324"},
    };
    for (const auto& [box, text] : cases) EXPECT_EQ(box->toString().toStdString(), text);
}
