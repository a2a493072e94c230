#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "gui/widgets/CButton.h"
#include "gui/widgets/CEditArea.h"
#include "tests/gui/edit/EditTestSupport.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using edittest::press;
using edittest::pressCharacter;
using fenn::make;
using fenn::String;

const char* const kParagraph = "Sample rates, channel counts and tags are kept when a file is converted, "
                               "unless the target format has no room for them; then the closest match is used.";

TEST(EditArea, WrapsAtItsWidthAndKeepsTheColumnOnUpAndDown)
{
    tbtest::GuiTestFrame test(260, 220);
    auto area = make<CEditArea>(kParagraph);
    test.add(area, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    CFrameWindow& frame = test.frame();
    const CTextEditModel& model = area->getModel();
    frame.injectClick(test.centreOf(*area));
    ASSERT_TRUE(area->hasFocus());

    // The paragraph has no line break, so a second line comes from wrapping.
    press(frame, Key::home, modifierControl);
    const CRect first = area->getTextInputRect();
    press(frame, Key::down);
    EXPECT_GT(model.getCaret(), 10);
    EXPECT_LT(model.getCaret(), model.getLength());
    EXPECT_GT(area->getTextInputRect().y, first.y);
    EXPECT_NEAR(area->getTextInputRect().x, first.x, 8);
    // End stays on the line on screen rather than jumping to the next.
    press(frame, Key::home, modifierControl);
    press(frame, Key::end);
    EXPECT_EQ(area->getTextInputRect().y, first.y);
    EXPECT_GT(model.getCaret(), 10);

    // Lines of different lengths: the column survives a short line between.
    area->setText("a long first line of text\nab\nanother long line here");
    press(frame, Key::home, modifierControl);
    for (int step = 0; step < 10; ++step) press(frame, Key::right);
    press(frame, Key::down);
    EXPECT_EQ(model.getCaret(), 28);
    press(frame, Key::down);
    EXPECT_LE(std::abs(model.getCaret() - 39), 2);
    press(frame, Key::up);
    press(frame, Key::up);
    EXPECT_EQ(model.getCaret(), 10);
    // Up on the first line goes to the start, Down on the last to the end;
    // Shift keeps the selection growing.
    press(frame, Key::up, modifierShift);
    EXPECT_EQ(model.getSelectedText(), "a long fir");
    press(frame, Key::down, modifierShift);
    press(frame, Key::down, modifierShift);
    press(frame, Key::down, modifierShift);
    EXPECT_EQ(model.getCaret(), model.getLength());
    EXPECT_EQ(model.getAnchor(), 10);
}

TEST(EditArea, EnterBreaksLinesTabMovesOnAndReadOnlyLeavesEnter)
{
    tbtest::GuiTestFrame test(300, 260);
    auto area = make<CEditArea>();
    auto readOnly = make<CEditArea>("fixed");
    readOnly->setEditMode(EditMode::readOnly);
    auto next = make<CButton>("Next");
    auto recorder = make<edittest::Recorder>();
    area->addListener(recorder.get());
    test.add(area, {.horzGrow = 1});
    test.add(readOnly, {.horzGrow = 1});
    test.add(next);
    test.render();
    int enter = 0;
    test.frame().addAccelerator("Enter", [&] { ++enter; });
    CFrameWindow& frame = test.frame();

    frame.injectClick(test.centreOf(*area));
    frame.injectTyping("one\ntwo");
    EXPECT_EQ(area->getText(), "one\ntwo");
    EXPECT_EQ(recorder->count(area.get(), Notification::changed), 7);
    EXPECT_EQ(enter, 0);
    // Backspace at a line's start joins it to the line before.
    press(frame, Key::home);
    press(frame, Key::backspace);
    EXPECT_EQ(area->getText(), "onetwo");
    pressCharacter(frame, U'z', modifierControl);
    EXPECT_EQ(area->getText(), "one\ntwo");

    press(frame, Key::tab);
    EXPECT_TRUE(readOnly->hasFocus());
    press(frame, Key::enter);
    EXPECT_EQ(enter, 1);
    EXPECT_EQ(readOnly->getText(), "fixed");
    press(frame, Key::tab);
    EXPECT_TRUE(next->hasFocus());
}

TEST(EditArea, ScrollsWithTheWheelThePagesAndTheThumb)
{
    tbtest::GuiTestFrame test(260, 160);
    auto area = make<CEditArea>();
    test.add(area, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    std::string lines;
    for (int line = 1; line <= 40; ++line) lines += "line " + std::to_string(line) + (line < 40 ? "\n" : "");
    area->setText(String::copyOf(lines));
    CFrameWindow& frame = test.frame();
    const CTextEditModel& model = area->getModel();
    const int lineHeight = area->getFont()->getLineHeight();

    // The caret is at the end after setText, and the view follows it.
    ASSERT_GT(area->getMaxScrollY(), 10 * lineHeight);
    EXPECT_EQ(area->getScrollY(), area->getMaxScrollY());
    frame.injectClick(test.centreOf(*area));
    press(frame, Key::home, modifierControl);
    EXPECT_EQ(area->getScrollY(), 0);

    frame.injectWheel(test.centreOf(*area), 0, 2);
    EXPECT_EQ(area->getScrollY(), 6 * lineHeight);
    frame.injectWheel(test.centreOf(*area), 0, -10);
    EXPECT_EQ(area->getScrollY(), 0);
    frame.injectWheel(test.centreOf(*area), 0, 100);
    EXPECT_EQ(area->getScrollY(), area->getMaxScrollY());

    press(frame, Key::home, modifierControl);
    press(frame, Key::pageDown);
    const int afterPage = model.getCaret();
    EXPECT_GT(afterPage, static_cast<int>(std::string("line 1\nline 2\nline 3\n").size()));
    EXPECT_GT(area->getScrollY(), 0);
    press(frame, Key::pageUp);
    EXPECT_EQ(model.getCaret(), 0);
    EXPECT_EQ(area->getScrollY(), 0);

    // Dragging the thumb from the top to the bottom of its strip scrolls to the end.
    const CRect bounds = area->toFrame(area->getClientRect());
    const CPoint top{bounds.right() - 7, bounds.y + 12};
    frame.injectMouseMove(top);
    frame.injectMouseButton(top, MouseButton::left, true);
    frame.injectMouseMove({top.x, bounds.bottom() + 30});
    frame.injectMouseButton({top.x, bounds.bottom() + 30}, MouseButton::left, false);
    EXPECT_EQ(area->getScrollY(), area->getMaxScrollY());
    EXPECT_EQ(model.getCaret(), 0);
    EXPECT_EQ(frame.getCaptureWindow(), nullptr);

    // A short text fits and passes the wheel on.
    area->setText("short");
    EXPECT_EQ(area->getMaxScrollY(), 0);
    EXPECT_EQ(area->getScrollY(), 0);
    EXPECT_FALSE(area->onWheel({{10, 10}, 0, 1}));
}

}  // namespace
