#include <gtest/gtest.h>

#include <vector>

#include "gui/layout/CFixedLayoutItem.h"
#include "gui/layout/CGUISizeLimits.h"
#include "gui/layout/CTextGUISize.h"
#include "tests/gui/layout/LayoutTestSupport.h"

namespace {

using namespace layouttest;
using fenn::P;
using fenn::gui::CFixedLayoutItem;
using fenn::gui::CGUISizeLimits;
using fenn::gui::CTextGUISize;
using fenn::gui::Directions;
using fenn::gui::IGUISize;
using fenn::gui::LimitKind;

// A size the test can change between layout passes.
class CPlainSize : public fenn::CObject, public virtual IGUISize
{
public:
    explicit CPlainSize(CSize size) : size(size) {}
    CSize getSize() const override { return size; }
    CSize size;
};

P<IGUISize> plain(int width, int height)
{
    return fenn::make<CPlainSize>(CSize{width, height});
}

TEST(SizeLimits, RaiseOrLowerTheirSizeTypeInTheirDirections)
{
    struct LimitCase
    {
        const char* name;
        LimitKind kind;
        SizeType which;
        int value;
        Directions directions;
        CItemSizes expected;
    };
    const CItemSizes own{{20, 20}, {50, 50}, {100, 100}};
    const std::vector<LimitCase> cases = {
        {"lower min", LimitKind::lower, SizeType::min, 30, Directions::both, {{30, 30}, {50, 50}, {100, 100}}},
        {"lower min below", LimitKind::lower, SizeType::min, 10, Directions::both, own},
        {"lower preferred width",
         LimitKind::lower,
         SizeType::preferred,
         60,
         Directions::width,
         {{20, 20}, {60, 50}, {100, 100}}},
        {"lower max height",
         LimitKind::lower,
         SizeType::max,
         130,
         Directions::height,
         {{20, 20}, {50, 50}, {100, 130}}},
        {"upper min", LimitKind::upper, SizeType::min, 5, Directions::both, {{5, 5}, {50, 50}, {100, 100}}},
        {"upper preferred height",
         LimitKind::upper,
         SizeType::preferred,
         40,
         Directions::height,
         {{20, 20}, {50, 40}, {100, 100}}},
        {"upper max", LimitKind::upper, SizeType::max, 70, Directions::both, {{20, 20}, {50, 50}, {70, 70}}},
        {"upper max above", LimitKind::upper, SizeType::max, 170, Directions::both, own},
    };
    for (const LimitCase& test : cases) {
        SCOPED_TRACE(test.name);
        auto limits = fenn::make<CGUISizeLimits>();
        limits->addLimit(test.kind, test.which, plain(test.value, test.value), test.directions);
        EXPECT_EQ(limits->apply(own), test.expected);
        EXPECT_EQ(limits->apply(test.which, own.get(test.which)), test.expected.get(test.which));
    }
}

TEST(SizeLimits, ResultsStayOrderedAndLaterLimitsWin)
{
    auto limits = fenn::make<CGUISizeLimits>();
    const CItemSizes own{{20, 20}, {50, 50}, {100, 100}};
    limits->addLimit(LimitKind::lower, SizeType::min, plain(80, 0));
    limits->addLimit(LimitKind::upper, SizeType::max, plain(200, 30));
    // The raised min pushes the preferred size; the lowered max gives way to the preferred size.
    EXPECT_EQ(limits->apply(own), (CItemSizes{{80, 20}, {80, 50}, {100, 50}}));

    limits->addLimit(LimitKind::upper, SizeType::min, plain(60, 60));
    EXPECT_EQ(limits->apply(SizeType::min, own.min), (CSize{60, 20}));

    // Limits are asked at every call.
    auto source = fenn::make<CPlainSize>(CSize{10, 10});
    auto fresh = fenn::make<CGUISizeLimits>();
    fresh->addLimit(LimitKind::lower, SizeType::preferred, source);
    source->size = {90, 5};
    EXPECT_EQ(fresh->apply(SizeType::preferred, {50, 50}), (CSize{90, 50}));
}

TEST(SizeLimits, TextSizeFollowsTheFontAndHeightChars)
{
    struct TextCase
    {
        const char* text;
        int heightChars;
        int widthAdd;
        int heightAdd;
        CSize expected;
    };
    const std::vector<TextCase> cases = {
        {"Hello", 0, 0, 0, {35, 12}}, {"Hello", 3, 0, 0, {35, 36}}, {"one\ntwo\nthree\nfour", 2, 0, 0, {35, 48}},
        {"abc", 1, 8, 4, {29, 16}},   {"", 2, 10, 0, {10, 24}},
    };
    const auto metrics = fenn::make<CFakeTextMetrics>();
    for (const TextCase& test : cases) {
        const auto size = fenn::make<CTextGUISize>(metrics, test.text, test.heightChars, test.widthAdd, test.heightAdd);
        EXPECT_EQ(size->getSize(), test.expected) << test.text;
    }
    const auto label = fenn::make<CTextGUISize>(metrics, "ab");
    label->setText("abcd");
    EXPECT_EQ(label->getSize(), (CSize{28, 12}));
}

TEST(SizeLimits, FixedItemHasOneSizeForEveryType)
{
    const auto text = fenn::make<CTextGUISize>(fenn::make<CFakeTextMetrics>(), "wide", 0, 2, 0);
    auto fromText = fenn::make<CFixedLayoutItem>(P<IGUISize>(text));
    auto fixed = fenn::make<CFixedLayoutItem>(CSize{12, 3});
    for (const SizeType type : {SizeType::min, SizeType::preferred, SizeType::max}) {
        EXPECT_EQ(fromText->getSize(type), (CSize{30, 12}));
        EXPECT_EQ(fixed->getSize(type), (CSize{12, 3}));
    }
    text->setText("wider");
    EXPECT_EQ(fromText->getSize(SizeType::max), (CSize{37, 12}));
    fromText->setSize({4, 4});
    EXPECT_EQ(fromText->getSize(SizeType::preferred), (CSize{4, 4}));
}

}  // namespace
