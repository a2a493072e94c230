#include <gtest/gtest.h>

#include <string>

#include "foundation/CObjectError.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CDropListPopup.h"
#include "gui/widgets/CEditArea.h"
#include "gui/widgets/CEditField.h"
#include "tests/gui/edit/EditTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using edittest::press;
using fenn::make;
using fenn::P;
using fenn::String;

P<CDropList> makeList(std::initializer_list<const char*> entries)
{
    auto list = make<CDropList>();
    for (const char* entry : entries) list->addEntry(entry);
    return list;
}

// A point in the middle of an entry's row of the open list, in frame coordinates.
CPoint rowPoint(const CDropList& list, int row)
{
    const CDropListPopup* popup = list.getPopup();
    if (!popup) {
        ADD_FAILURE() << "the list is not open";
        return {};
    }
    const CRect bounds = popup->toFrame(popup->getClientRect());
    for (int y = 0; y < bounds.height; ++y) {
        if (popup->rowAt({bounds.width / 2, y}) == row) return {bounds.x + bounds.width / 2, bounds.y + y + 8};
    }
    ADD_FAILURE() << "row " << row << " is not shown";
    return {};
}

TEST(DropList, OpensWithAClickAndChoosesWithAClickInTheList)
{
    tbtest::GuiTestFrame test(300, 320);
    auto list = makeList({"MP3", "Ogg Vorbis", "FLAC", "WAV"});
    auto other = make<CButton>("Other");
    auto recorder = make<edittest::Recorder>();
    list->addListener(recorder.get());
    test.add(list);
    test.add(other, {.horzGrow = 1});
    list->setSelectedIndex(1);
    test.render();
    EXPECT_EQ(list->getText(), "Ogg Vorbis");
    CFrameWindow& frame = test.frame();

    frame.injectClick(test.centreOf(*list));
    ASSERT_TRUE(list->isListOpen());
    EXPECT_TRUE(list->hasFocus());
    const CRect box = list->toFrame(list->getClientRect());
    const CRect popup = list->getPopup()->toFrame(list->getPopup()->getClientRect());
    EXPECT_GE(popup.y, box.bottom());
    EXPECT_GE(popup.width, box.width);
    // The chosen entry is highlighted when the list opens; the pointer moves the highlight.
    EXPECT_EQ(list->getPopup()->getHighlight(), 1);
    frame.injectMouseMove(rowPoint(*list, 3));
    EXPECT_EQ(list->getPopup()->getHighlight(), 3);
    test.render();

    frame.injectClick(rowPoint(*list, 2));
    EXPECT_FALSE(list->isListOpen());
    EXPECT_FALSE(frame.hasPopups());
    EXPECT_EQ(list->getSelectedIndex(), 2);
    EXPECT_EQ(list->getText(), "FLAC");
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), 1);
    EXPECT_TRUE(list->hasFocus());

    // A press outside closes the list without a choice and reaches nothing else.
    auto otherRecorder = make<edittest::Recorder>();
    other->addListener(otherRecorder.get());
    frame.injectClick(test.centreOf(*list));
    ASSERT_TRUE(list->isListOpen());
    // The list covers the middle of the button below; its right end is outside.
    const CRect otherBounds = other->toFrame(other->getClientRect());
    const CPoint outside{otherBounds.right() - 10, otherBounds.y + otherBounds.height / 2};
    ASSERT_FALSE(popup.contains(outside));
    frame.injectClick(outside);
    EXPECT_FALSE(list->isListOpen());
    EXPECT_EQ(otherRecorder->count(other.get(), Notification::clicked), 0);
    EXPECT_EQ(list->getSelectedIndex(), 2);

    // Pressing on the box, dragging into the list and letting go there chooses.
    frame.injectMouseButton(test.centreOf(*list), MouseButton::left, true);
    ASSERT_TRUE(list->isListOpen());
    frame.injectMouseMove(rowPoint(*list, 0));
    EXPECT_EQ(list->getPopup()->getHighlight(), 0);
    frame.injectMouseButton(rowPoint(*list, 0), MouseButton::left, false);
    EXPECT_FALSE(list->isListOpen());
    EXPECT_EQ(list->getSelectedIndex(), 0);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), 2);
    // Choosing the entry that is chosen already is no change.
    frame.injectClick(test.centreOf(*list));
    frame.injectClick(rowPoint(*list, 0));
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), 2);
}

TEST(DropList, KeysChooseWhileClosedAndInTheOpenList)
{
    tbtest::GuiTestFrame test(300, 320);
    auto list = makeList({"MP3", "Ogg Vorbis", "FLAC", "WAV", "Windows Media"});
    auto recorder = make<edittest::Recorder>();
    list->addListener(recorder.get());
    test.add(list);
    test.render();
    int escape = 0;
    test.frame().addAccelerator("Escape", [&] { ++escape; });
    CFrameWindow& frame = test.frame();
    list->setFocus();
    EXPECT_EQ(list->getSelectedIndex(), -1);

    press(frame, Key::down);
    EXPECT_EQ(list->getSelectedIndex(), 0);
    press(frame, Key::down);
    press(frame, Key::down);
    press(frame, Key::up);
    EXPECT_EQ(list->getSelectedIndex(), 1);
    press(frame, Key::end);
    press(frame, Key::down);
    EXPECT_EQ(list->getSelectedIndex(), 4);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), 5);
    // A letter chooses the next entry that starts with it, and steps on.
    frame.injectTyping("w");
    EXPECT_EQ(list->getText(), "WAV");
    frame.injectTyping("w");
    EXPECT_EQ(list->getText(), "Windows Media");

    // Alt+Down opens; Up and Down move the highlight, not the choice; Enter chooses.
    const int changes = recorder->count(list.get(), Notification::changed);
    press(frame, Key::down, modifierAlt);
    ASSERT_TRUE(list->isListOpen());
    press(frame, Key::up);
    press(frame, Key::up);
    EXPECT_EQ(list->getPopup()->getHighlight(), 2);
    EXPECT_EQ(list->getSelectedIndex(), 4);
    press(frame, Key::enter);
    EXPECT_FALSE(list->isListOpen());
    EXPECT_EQ(list->getSelectedIndex(), 2);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), changes + 1);

    // Escape closes the list without a choice and goes no further.
    press(frame, Key::f4);
    ASSERT_TRUE(list->isListOpen());
    press(frame, Key::down);
    press(frame, Key::escape);
    EXPECT_FALSE(list->isListOpen());
    EXPECT_EQ(list->getSelectedIndex(), 2);
    EXPECT_EQ(escape, 0);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), changes + 1);
    // With the list closed Escape belongs to the frame; F4 toggles.
    press(frame, Key::escape);
    EXPECT_EQ(escape, 1);
    press(frame, Key::f4);
    press(frame, Key::f4);
    EXPECT_FALSE(list->isListOpen());

    // A disabled list does not open; setSelectedIndex does not notify.
    list->setSelectedIndex(0);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), changes + 1);
    EXPECT_EQ(list->getText(), "MP3");
    list->setEnabled(false);
    list->openList();
    EXPECT_FALSE(list->isListOpen());
    EXPECT_THROW(list->getEntry(5), fenn::CInvalidArgError);
}

TEST(DropList, OpensAboveWhenThereIsNoRoomBelowAndScrollsLongLists)
{
    tbtest::GuiTestFrame test(300, 330);
    auto spacer = make<CEditArea>();
    auto list = make<CDropList>();
    for (int entry = 1; entry <= 20; ++entry) list->addEntry(fenn::String::copyOf("Entry " + std::to_string(entry)));
    test.add(spacer, {.vertGrow = 1});
    test.add(list);
    test.render();
    list->setFocus();
    list->openList();
    ASSERT_TRUE(list->isListOpen());
    const CRect box = list->toFrame(list->getClientRect());
    const CRect popup = list->getPopup()->toFrame(list->getPopup()->getClientRect());
    EXPECT_LE(popup.bottom(), box.y);
    // Only some entries fit; moving the highlight past them scrolls.
    press(test.frame(), Key::end);
    EXPECT_EQ(list->getPopup()->getHighlight(), 19);
    EXPECT_GT(list->getPopup()->getFirstVisibleRow(), 0);
    test.frame().injectClick(rowPoint(*list, 19));
    EXPECT_EQ(list->getText(), "Entry 20");
}

TEST(DropList, EditableListTakesTypedTextAndStillOffersItsEntries)
{
    tbtest::GuiTestFrame test(300, 320);
    auto list = makeList({"44100", "48000", "96000"});
    list->setSelectedIndex(0);
    list->setEditable(true);
    auto recorder = make<edittest::Recorder>();
    list->addListener(recorder.get());
    test.add(list);
    test.render();
    CFrameWindow& frame = test.frame();
    CEditField* edit = list->getEditField();
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->getText(), "44100");
    // The list keeps the focus (and the focus ring around the whole box)
    // and passes keys and text on to its field.
    EXPECT_FALSE(edit->isFocusable());

    frame.injectClick(test.centreOf(*edit));
    ASSERT_TRUE(list->hasFocus());
    EXPECT_TRUE(list->wantsTextInput());
    EXPECT_FALSE(list->isListOpen());
    edittest::pressCharacter(frame, U'a', modifierControl);
    frame.injectTyping("22050");
    EXPECT_EQ(list->getText(), "22050");
    EXPECT_EQ(list->getSelectedIndex(), -1);
    EXPECT_EQ(recorder->count(list.get(), Notification::changed), 5);

    // Typing an entry's text chooses that entry.
    edittest::pressCharacter(frame, U'a', modifierControl);
    frame.injectTyping("48000");
    EXPECT_EQ(list->getSelectedIndex(), 1);
    // Down chooses the next entry into the field; Alt+Down and Enter choose from the list.
    press(frame, Key::down);
    EXPECT_EQ(edit->getText(), "96000");
    EXPECT_EQ(edit->getModel().getSelectedText(), "96000");
    EXPECT_EQ(list->getSelectedIndex(), 2);
    press(frame, Key::down, modifierAlt);
    ASSERT_TRUE(list->isListOpen());
    EXPECT_TRUE(list->hasFocus());
    press(frame, Key::up);
    press(frame, Key::enter);
    EXPECT_EQ(list->getText(), "48000");
    EXPECT_FALSE(list->isListOpen());
    // The arrow at the right end opens the list too.
    const CRect box = list->toFrame(list->getClientRect());
    frame.injectClick({box.right() - 10, box.y + box.height / 2});
    EXPECT_TRUE(list->isListOpen());
    frame.injectClick(rowPoint(*list, 0));
    EXPECT_EQ(list->getText(), "44100");
    EXPECT_EQ(edit->getText(), "44100");

    // Back to a plain list the choice stays.
    list->setEditable(false);
    EXPECT_EQ(list->getEditField(), nullptr);
    EXPECT_EQ(list->getSelectedIndex(), 0);
    EXPECT_FALSE(list->wantsTextInput());
}

}  // namespace
