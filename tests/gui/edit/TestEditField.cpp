#include <gtest/gtest.h>

#include "gui/CStyle.h"
#include "gui/Clipboard.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CEditField.h"
#include "tests/gui/edit/EditTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using edittest::press;
using edittest::pressCharacter;
using fenn::make;
using fenn::P;
using fenn::String;

const char* const kHelloWorld = "Hello w\xC3\xB6rld";

// Where the caret before character index stands in a field that is not
// scrolled, in frame coordinates.
CPoint pointAt(const tbtest::GuiTestFrame& test, const CEditField& field, int index)
{
    const CTextLayout layout(field.getFont(), field.getText());
    const CRect bounds = field.toFrame(field.getClientRect());
    return {bounds.x + CStyle::get().padding + layout.getCaretRect(index).x, test.centreOf(field).y};
}

// How many device pixels of a window have exactly the colour.
int countPixels(const tbtest::GuiTestFrame& test, const CWindow& window, CColor color)
{
    const CRect bounds = window.toFrame(window.getClientRect());
    int count = 0;
    for (int y = bounds.y; y < bounds.bottom(); ++y) {
        for (int x = bounds.x; x < bounds.right(); ++x) count += test.pixel(x, y) == color ? 1 : 0;
    }
    return count;
}

TEST(EditField, TypingEditingAndSelectingWithKeys)
{
    tbtest::GuiTestFrame test;
    auto field = make<CEditField>();
    auto next = make<CButton>("Next");
    auto recorder = make<edittest::Recorder>();
    field->addListener(recorder.get());
    test.add(field, {.horzGrow = 1});
    test.add(next);
    test.render();
    int enter = 0;
    test.frame().addAccelerator("Enter", [&] { ++enter; });
    CFrameWindow& frame = test.frame();

    frame.injectClick(test.centreOf(*field));
    ASSERT_TRUE(field->hasFocus());
    EXPECT_TRUE(field->wantsTextInput());
    frame.injectTyping(kHelloWorld);
    const CTextEditModel& model = field->getModel();
    EXPECT_EQ(field->getText(), kHelloWorld);
    EXPECT_EQ(model.getCaret(), 11);
    EXPECT_EQ(recorder->count(field.get(), Notification::changed), 11);

    press(frame, Key::left, modifierControl);
    EXPECT_EQ(model.getCaret(), 6);
    press(frame, Key::right, modifierControl | modifierShift);
    EXPECT_EQ(model.getSelectedText(), "w\xC3\xB6rld");
    press(frame, Key::left, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "w\xC3\xB6rl");
    // Left without Shift ends the selection at its start.
    press(frame, Key::left);
    EXPECT_FALSE(model.hasSelection());
    EXPECT_EQ(model.getCaret(), 6);
    press(frame, Key::end, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "w\xC3\xB6rld");
    press(frame, Key::home, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "Hello ");

    // Typing replaces the selection; Delete, Backspace and Ctrl+Backspace erase.
    frame.injectTyping("Bye ");
    EXPECT_EQ(field->getText(), "Bye w\xC3\xB6rld");
    press(frame, Key::home);
    press(frame, Key::deleteKey);
    EXPECT_EQ(field->getText(), "ye w\xC3\xB6rld");
    press(frame, Key::end);
    press(frame, Key::backspace);
    press(frame, Key::backspace, modifierControl);
    EXPECT_EQ(field->getText(), "ye ");
    pressCharacter(frame, U'z', modifierControl);
    EXPECT_EQ(field->getText(), "ye w\xC3\xB6rld");
    pressCharacter(frame, U'z', modifierControl | modifierShift);
    EXPECT_EQ(field->getText(), "ye ");
    pressCharacter(frame, U'a', modifierControl);
    press(frame, Key::deleteKey);
    EXPECT_EQ(field->getText(), "");
    pressCharacter(frame, U'y', modifierControl);
    EXPECT_EQ(field->getText(), "");
    pressCharacter(frame, U'z', modifierControl);
    EXPECT_EQ(field->getText(), "ye ");

    // Enter belongs to the frame; Tab moves on; setText is no user edit.
    const int edits = recorder->count(field.get(), Notification::changed);
    press(frame, Key::enter);
    EXPECT_EQ(enter, 1);
    EXPECT_EQ(field->getText(), "ye ");
    field->setText("set");
    EXPECT_EQ(recorder->count(field.get(), Notification::changed), edits);
    press(frame, Key::tab);
    EXPECT_TRUE(next->hasFocus());
    // Coming back with the keyboard selects the whole text.
    press(frame, Key::tab, modifierShift);
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(model.getSelectedText(), "set");
}

TEST(EditField, MouseSelectsByDraggingDoubleClickingAndShiftClicking)
{
    tbtest::GuiTestFrame test;
    auto field = make<CEditField>("alpha beta gamma");
    test.add(field, {.horzGrow = 1});
    test.render();
    CFrameWindow& frame = test.frame();
    const CTextEditModel& model = field->getModel();

    frame.injectMouseMove(pointAt(test, *field, 0));
    frame.injectMouseButton(pointAt(test, *field, 0), MouseButton::left, true);
    EXPECT_EQ(frame.getCaptureWindow(), field.get());
    frame.injectMouseMove(pointAt(test, *field, 10));
    frame.injectMouseButton(pointAt(test, *field, 10), MouseButton::left, false);
    EXPECT_EQ(model.getSelectedText(), "alpha beta");
    EXPECT_EQ(frame.getCaptureWindow(), nullptr);

    frame.injectClick(pointAt(test, *field, 8), 2);
    EXPECT_EQ(model.getSelectedText(), "beta");
    frame.injectClick(pointAt(test, *field, 6));
    EXPECT_FALSE(model.hasSelection());
    EXPECT_EQ(model.getCaret(), 6);
    frame.injectMouseButton(pointAt(test, *field, 16), MouseButton::left, true, 1, modifierShift);
    frame.injectMouseButton(pointAt(test, *field, 16), MouseButton::left, false, 1, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "beta gamma");

    // A drag after a double click selects whole words, backwards too.
    frame.injectMouseButton(pointAt(test, *field, 8), MouseButton::left, true, 1);
    frame.injectMouseButton(pointAt(test, *field, 8), MouseButton::left, false, 1);
    frame.injectMouseButton(pointAt(test, *field, 8), MouseButton::left, true, 2);
    frame.injectMouseMove(pointAt(test, *field, 2));
    frame.injectMouseButton(pointAt(test, *field, 2), MouseButton::left, false, 2);
    EXPECT_EQ(model.getSelectedText(), "alpha beta");
    EXPECT_EQ(model.getCaret(), 0);
    frame.injectClick(pointAt(test, *field, 3), 3);
    EXPECT_EQ(model.getSelectedText(), "alpha beta gamma");

    // Dragging past the right edge scrolls a long text along.
    field->setText("The quick brown fox jumps over the lazy dog, again and again and again and again");
    field->select(0, 0);
    frame.injectClick(pointAt(test, *field, 0));
    EXPECT_EQ(field->getScrollX(), 0);
    const CRect bounds = field->toFrame(field->getClientRect());
    frame.injectMouseButton(pointAt(test, *field, 0), MouseButton::left, true);
    for (int step = 0; step < 6; ++step) frame.injectMouseMove({bounds.right() + 40, test.centreOf(*field).y});
    frame.injectMouseButton({bounds.right() + 40, test.centreOf(*field).y}, MouseButton::left, false);
    EXPECT_GT(field->getScrollX(), 0);
    EXPECT_EQ(model.getSelectionStart(), 0);
    EXPECT_GT(model.getSelectionEnd(), 40);
}

TEST(EditField, ClipboardRoundTripAndReadOnlyFields)
{
    setClipboard(nullptr);
    tbtest::GuiTestFrame test;
    auto field = make<CEditField>(kHelloWorld);
    auto readOnly = make<CEditField>("Read me");
    readOnly->setEditMode(EditMode::readOnly);
    auto recorder = make<edittest::Recorder>();
    field->addListener(recorder.get());
    readOnly->addListener(recorder.get());
    test.add(field, {.horzGrow = 1});
    test.add(readOnly, {.horzGrow = 1});
    test.render();
    CFrameWindow& frame = test.frame();

    frame.injectClick(test.centreOf(*field));
    press(frame, Key::end);
    press(frame, Key::left, modifierControl | modifierShift);
    pressCharacter(frame, U'c', modifierControl);
    EXPECT_EQ(getClipboard()->getText(), "w\xC3\xB6rld");
    EXPECT_EQ(field->getText(), kHelloWorld);
    pressCharacter(frame, U'x', modifierControl);
    EXPECT_EQ(field->getText(), "Hello ");
    press(frame, Key::home);
    pressCharacter(frame, U'v', modifierControl);
    EXPECT_EQ(field->getText(), "w\xC3\xB6rldHello ");
    press(frame, Key::insert, modifierShift);
    EXPECT_EQ(field->getText(), "w\xC3\xB6rldw\xC3\xB6rldHello ");
    EXPECT_EQ(recorder->count(field.get(), Notification::changed), 3);
    // Pasted line breaks turn into spaces in a single line.
    getClipboard()->setText("two\nlines");
    pressCharacter(frame, U'a', modifierControl);
    pressCharacter(frame, U'v', modifierControl);
    EXPECT_EQ(field->getText(), "two lines");

    // A read-only field moves, selects and copies, and changes nothing.
    frame.injectClick(test.centreOf(*readOnly));
    ASSERT_TRUE(readOnly->hasFocus());
    EXPECT_FALSE(readOnly->wantsTextInput());
    frame.injectTyping("abc");
    press(frame, Key::backspace);
    press(frame, Key::deleteKey);
    pressCharacter(frame, U'v', modifierControl);
    press(frame, Key::home);
    press(frame, Key::right, modifierShift | modifierControl);
    EXPECT_EQ(readOnly->getModel().getSelectedText(), "Read");
    pressCharacter(frame, U'x', modifierControl);
    pressCharacter(frame, U'z', modifierControl);
    EXPECT_EQ(readOnly->getText(), "Read me");
    EXPECT_EQ(recorder->count(readOnly.get(), Notification::changed), 0);
    press(frame, Key::insert, modifierControl);
    EXPECT_EQ(getClipboard()->getText(), "Read");
    EXPECT_FALSE(readOnly->cut());
    EXPECT_FALSE(readOnly->paste());
    EXPECT_EQ(readOnly->getText(), "Read me");
}

TEST(EditField, MultiByteCharactersAndInputMethodComposition)
{
    tbtest::GuiTestFrame test;
    auto field = make<CEditField>();
    test.add(field, {.horzGrow = 1});
    test.render();
    CFrameWindow& frame = test.frame();
    const CTextEditModel& model = field->getModel();
    frame.injectClick(test.centreOf(*field));

    frame.injectTyping("\xC3\xA9\xF0\x9F\x98\x80x");
    EXPECT_EQ(model.getLength(), 3);
    press(frame, Key::left);
    press(frame, Key::left);
    EXPECT_EQ(model.getCaret(), 1);
    press(frame, Key::right, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "\xF0\x9F\x98\x80");
    press(frame, Key::backspace);
    EXPECT_EQ(field->getText(), "\xC3\xA9x");
    // e with a combining accent is one step as well.
    field->setText("ae\xCC\x81");
    press(frame, Key::left);
    EXPECT_EQ(model.getCaret(), 1);
    press(frame, Key::deleteKey);
    EXPECT_EQ(field->getText(), "a");

    // Composed text shows at the caret (which moves behind it) but is not
    // the field's text until the input method commits it.
    press(frame, Key::end);
    const int caretBefore = field->getTextInputRect().x;
    frame.injectTextEditing("\xE3\x81\xAB\xE3\x81\xBB", 2);
    EXPECT_EQ(field->getText(), "a");
    EXPECT_GT(field->getTextInputRect().x, caretBefore + 10);
    test.render();
    frame.injectTextEditing("", 0);
    EXPECT_EQ(field->getTextInputRect().x, caretBefore);
    frame.injectTextInput("\xE6\x97\xA5\xE6\x9C\xAC");
    EXPECT_EQ(field->getText(), "a\xE6\x97\xA5\xE6\x9C\xAC");
    EXPECT_EQ(model.getCaret(), 3);
}

TEST(EditField, ScrollsToTheCaretAndKeepsToTheMaximumLength)
{
    tbtest::GuiTestFrame test(200, 120);
    auto field = make<CEditField>();
    auto limited = make<CEditField>();
    limited->setMaxLength(5);
    auto recorder = make<edittest::Recorder>();
    limited->addListener(recorder.get());
    test.add(field, {.horzGrow = 1});
    test.add(limited, {.horzGrow = 1});
    test.render();
    field->setText("The quick brown fox jumps over the lazy dog");
    const CRect client = field->getClientRect();
    EXPECT_GT(field->getScrollX(), 0);
    EXPECT_TRUE(client.contains(field->getTextInputRect().origin()));
    field->setFocus();
    press(test.frame(), Key::home);
    EXPECT_EQ(field->getScrollX(), 0);
    EXPECT_TRUE(client.contains(field->getTextInputRect().origin()));
    for (int step = 0; step < 30; ++step) press(test.frame(), Key::right);
    EXPECT_GT(field->getScrollX(), 0);
    EXPECT_TRUE(client.contains(field->getTextInputRect().origin()));
    // A shorter text scrolls back so that no room is wasted.
    field->setText("short");
    EXPECT_EQ(field->getScrollX(), 0);

    limited->setFocus();
    test.frame().injectTyping("Hello world");
    EXPECT_EQ(limited->getText(), "Hello");
    EXPECT_EQ(recorder->count(limited.get(), Notification::changed), 5);
}

TEST(EditField, PaintsSelectionFocusAndStates)
{
    tbtest::GuiTestFrame test;
    auto field = make<CEditField>("mmmm nnnn");
    auto other = make<CEditField>("other");
    auto empty = make<CEditField>();
    empty->setPlaceholder("Search");
    test.add(field, {.horzGrow = 1});
    test.add(other, {.horzGrow = 1});
    test.add(empty, {.horzGrow = 1});
    test.render();
    const CStyle& style = CStyle::get();
    const int edgeY = test.centreOf(*field).y;
    const int left = field->toFrame(field->getClientRect()).x;
    EXPECT_EQ(test.pixel(left, edgeY), style.border);
    EXPECT_EQ(countPixels(test, *field, style.selectionBackground), 0);
    // The placeholder shows, in a quieter colour than text.
    const CRect inside = empty->toFrame(empty->getClientRect()).inset(4, 4, 4, 4);
    int ink = 0;
    for (int y = inside.y; y < inside.bottom(); ++y) {
        for (int x = inside.x; x < inside.right(); ++x) ink += test.pixel(x, y) != style.controlBackground ? 1 : 0;
    }
    EXPECT_GT(ink, 20);
    EXPECT_EQ(countPixels(test, *empty, style.text), 0);

    field->setFocus();
    field->select(0, 4);
    test.render();
    EXPECT_EQ(test.pixel(left, edgeY), style.accent);
    EXPECT_GT(countPixels(test, *field, style.selectionBackground), 100);

    // Without the focus the selection stays, in the quiet colour.
    other->setFocus();
    test.render();
    EXPECT_EQ(test.pixel(left, edgeY), style.border);
    EXPECT_EQ(countPixels(test, *field, style.selectionBackground), 0);
    EXPECT_GT(countPixels(test, *field, style.selectionInactive), 100);

    field->setEnabled(false);
    test.render();
    EXPECT_EQ(test.pixel(left, edgeY), style.borderDisabled);
    EXPECT_EQ(test.pixel(left + 3, edgeY), style.controlDisabled);
    EXPECT_EQ(countPixels(test, *field, style.text), 0);
}

}  // namespace
