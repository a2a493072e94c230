#include <gtest/gtest.h>

#include "gui/CStyle.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CSelectField.h"
#include "gui/widgets/CSelectGroup.h"
#include "tests/gui/basic/BasicWidgetTests.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using basictest::Recorder;
using fenn::make;
using fenn::P;

// A point of an indicator's fill, clear of its border and of the tick.
CColor indicatorFill(const tbtest::GuiTestFrame& test, const CIndicatorButton& button)
{
    const CRect box = button.toFrame(button.getClientRect());
    return test.pixel(box.x + 5, box.y + (box.height - CStyle::get().checkBoxSize) / 2 + 5);
}

TEST(CheckBox, ClickAndSpaceToggleAndListenersHearOnlyTheUser)
{
    const CStyle& style = CStyle::get();
    tbtest::GuiTestFrame test;
    auto recorder = make<Recorder>();
    auto box = make<CCheckBox>("Keep the original files");
    auto off = make<CCheckBox>("Not now");
    off->setEnabled(false);
    box->addListener(recorder.get());
    off->addListener(recorder.get());
    test.add(box);
    test.add(off);
    test.render();
    const CSize preferred = box->getSize(SizeType::preferred);
    EXPECT_GE(preferred.width, style.font->measureText("Keep the original files").width + style.checkBoxSize);
    EXPECT_EQ(box->getSize(SizeType::max).height, preferred.height);

    test.frame().injectClick(test.centreOf(*box));
    EXPECT_TRUE(box->isChecked());
    test.frame().injectClick(box->toFrame({}).origin());
    EXPECT_FALSE(box->isChecked());
    test.frame().injectKey({Key::space}, true);
    // A held key repeats without toggling again.
    test.frame().injectKey({Key::space, 0, modifierNone, true}, true);
    EXPECT_TRUE(box->isChecked());
    box->setChecked(false);
    test.frame().injectClick(test.centreOf(*off));
    off->toggle();
    EXPECT_FALSE(off->isChecked());
    EXPECT_EQ(recorder->count(box.get(), Notification::changed), 3);
    EXPECT_EQ(recorder->count(off.get(), Notification::changed), 0);

    // Resting, hovered, pressed, checked and disabled boxes each look their own.
    const CPoint centre = test.centreOf(*box);
    test.frame().injectMouseLeft();
    test.render();
    EXPECT_EQ(indicatorFill(test, *box), style.controlBackground);
    EXPECT_EQ(indicatorFill(test, *off), style.controlDisabled);
    test.frame().injectMouseMove(centre);
    test.render();
    EXPECT_EQ(indicatorFill(test, *box), style.controlHover);
    test.frame().injectMouseButton(centre, MouseButton::left, true);
    test.render();
    EXPECT_EQ(indicatorFill(test, *box), style.controlPressed);
    test.frame().injectMouseButton(centre, MouseButton::left, false);
    test.frame().injectMouseLeft();
    test.render();
    EXPECT_EQ(indicatorFill(test, *box), style.accent);
}

TEST(SelectGroup, FieldsExcludeEachOtherAndArrowsMoveTheChoice)
{
    const CStyle& style = CStyle::get();
    tbtest::GuiTestFrame test(400, 320);
    auto recorder = make<Recorder>();
    auto group = make<CSelectGroup>();
    auto mp3 = group->addField("MP3");
    auto vorbis = group->addField("Ogg Vorbis");
    auto flac = group->addField("FLAC");
    auto wav = group->addField("WAV");
    flac->setEnabled(false);
    auto alone = make<CSelectField>("On its own");
    for (const P<CWindow>& window : std::vector<P<CWindow>>{group, mp3, vorbis, wav, alone})
        window->addListener(recorder.get());
    test.add(group);
    test.add(alone);
    test.render();
    EXPECT_EQ(group->getSelectedIndex(), -1);
    EXPECT_EQ(alone->getGroup(), nullptr);
    // Without a choice the first field is the group's one Tab stop.
    EXPECT_TRUE(mp3->isFocusable());
    EXPECT_FALSE(vorbis->isFocusable());

    test.frame().injectClick(test.centreOf(*vorbis));
    EXPECT_TRUE(vorbis->hasFocus());
    test.frame().injectClick(test.centreOf(*mp3));
    test.frame().injectClick(test.centreOf(*mp3));
    EXPECT_TRUE(mp3->isChecked());
    EXPECT_FALSE(vorbis->isChecked());
    EXPECT_EQ(group->getSelectedIndex(), 0);
    EXPECT_FALSE(vorbis->isFocusable());
    // The cleared field hears it too; the click on the chosen field changes nothing.
    EXPECT_EQ(recorder->count(vorbis.get(), Notification::changed), 2);
    EXPECT_EQ(recorder->count(mp3.get(), Notification::changed), 1);
    EXPECT_EQ(recorder->count(group.get(), Notification::changed), 2);
    EXPECT_EQ(recorder->lastIndex(group.get(), Notification::changed), 0);

    // A field outside the group acts alone, and clicking it again keeps it set.
    test.frame().injectClick(test.centreOf(*alone));
    test.frame().injectClick(test.centreOf(*alone));
    EXPECT_TRUE(alone->isChecked());
    EXPECT_TRUE(mp3->isChecked());
    EXPECT_FALSE(alone->onKeyDown({Key::down}));

    // Arrows move the choice and the focus, skip the disabled field and wrap.
    mp3->setFocus();
    const struct
    {
        Key key;
        CSelectField* expected;
        int index;
    } moves[] = {{Key::down, vorbis.get(), 1},
                 {Key::right, wav.get(), 3},
                 {Key::down, mp3.get(), 0},
                 {Key::up, wav.get(), 3},
                 {Key::left, vorbis.get(), 1}};
    for (const auto& move : moves) {
        test.frame().injectKey({move.key}, true);
        EXPECT_TRUE(move.expected->isChecked() && move.expected->hasFocus()) << move.index;
        EXPECT_EQ(recorder->lastIndex(group.get(), Notification::changed), move.index);
    }
    EXPECT_EQ(recorder->count(group.get(), Notification::changed), 2 + 5);

    // Set by the program: exclusive as well, but nobody is told.
    const std::size_t heard = recorder->events.size();
    group->setSelectedIndex(3);
    mp3->setChecked(true);
    EXPECT_FALSE(wav->isChecked());
    EXPECT_EQ(group->getSelectedIndex(), 0);
    group->setSelectedIndex(-1);
    EXPECT_EQ(group->getSelectedIndex(), -1);
    EXPECT_EQ(recorder->events.size(), heard);

    // The chosen field shows a dot of the mark colour in an accent circle.
    group->setSelectedIndex(1);
    test.frame().injectMouseLeft();
    test.render();
    const CPoint centre{vorbis->toFrame({}).x + style.checkBoxSize / 2, test.centreOf(*vorbis).y};
    EXPECT_EQ(test.pixel(centre.x, centre.y), style.accentText);
    EXPECT_EQ(test.pixel(centre.x + style.checkBoxSize / 2 - 3, centre.y), style.accent);
    EXPECT_EQ(test.pixel(centre.x, test.centreOf(*wav).y), style.controlBackground);
}

}  // namespace
