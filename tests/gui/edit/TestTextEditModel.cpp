#include <gtest/gtest.h>

#include <vector>

#include "gui/widgets/CTextEditModel.h"

namespace {

using fenn::String;
using namespace fenn::gui;

std::vector<int> stopsForward(const CTextEditModel& model, TextUnit unit)
{
    std::vector<int> stops;
    for (int index = 0; index < model.getLength();) {
        index = model.nextStop(index, unit);
        stops.push_back(index);
    }
    return stops;
}

std::vector<int> stopsBackward(const CTextEditModel& model, TextUnit unit)
{
    std::vector<int> stops;
    for (int index = model.getLength(); index > 0;) {
        index = model.previousStop(index, unit);
        stops.push_back(index);
    }
    return stops;
}

TEST(TextEditModel, CaretStepsOverWholeCharacterClusters)
{
    struct Case
    {
        const char* text;
        std::vector<int> forward;
    };
    const Case cases[] = {
        // é as one code point and as e with a combining accent, then 😀 (outside the BMP).
        {"\xC3\xA9"
         "e\xCC\x81"
         "\xF0\x9F\x98\x80"
         "a",
         {1, 3, 4, 5}},
        // A thumb with a skin tone, a flag of two regional indicators, a
        // family joined by zero-width joiners, a heart with a variation selector.
        {"\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD"
         "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA"
         "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7"
         "\xE2\x9D\xA4\xEF\xB8\x8F",
         {2, 4, 7, 9}},
        // Two flags in a row split between the pairs.
        {"\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7", {2, 4}},
    };
    for (const Case& test : cases) {
        CTextEditModel model;
        model.setText(test.text);
        EXPECT_EQ(stopsForward(model, TextUnit::character), test.forward) << test.text;
        std::vector<int> backward(test.forward.rbegin() + 1, test.forward.rend());
        backward.push_back(0);
        EXPECT_EQ(stopsBackward(model, TextUnit::character), backward) << test.text;
    }

    // A caret set inside a cluster goes to its start; erasing takes the cluster.
    CTextEditModel model;
    model.setText("ae\xCC\x81z");
    model.setCaret(2);
    EXPECT_EQ(model.getCaret(), 1);
    model.setCaret(3);
    EXPECT_TRUE(model.eraseBackward(TextUnit::character));
    EXPECT_EQ(model.getText(), "az");
    EXPECT_EQ(model.getCaret(), 1);
}

TEST(TextEditModel, WordsForCtrlArrowsAndDoubleClicks)
{
    CTextEditModel model;
    model.setText("Hello, w\xC3\xB6rld_2  foo");
    // "Hello" 0-5, ", " 5-7, "wörld_2" 7-14, two spaces, "foo" 16-19.
    EXPECT_EQ(stopsForward(model, TextUnit::word), (std::vector<int>{5, 14, 19}));
    EXPECT_EQ(stopsBackward(model, TextUnit::word), (std::vector<int>{16, 7, 0}));

    struct Case
    {
        int index;
        int start;
        int end;
    };
    const Case cases[] = {
        {9, 7, 14},    // inside a word with a non-ASCII letter and an underscore
        {5, 5, 6},     // a punctuation character alone
        {14, 14, 16},  // a run of spaces
        {19, 16, 19},  // the end of the text takes the last word
        {0, 0, 5},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(model.wordRangeAt(test.index), std::make_pair(test.start, test.end)) << test.index;
    }

    // Ctrl+Backspace and Ctrl+Delete erase to the word stops.
    model.setCaret(14);
    EXPECT_TRUE(model.eraseBackward(TextUnit::word));
    EXPECT_EQ(model.getText(), "Hello,   foo");
    model.setCaret(0);
    EXPECT_TRUE(model.eraseForward(TextUnit::word));
    EXPECT_EQ(model.getText(), ",   foo");

    // Lines bound words in a text of several lines.
    CTextEditModel lines(TextLines::multiple);
    lines.setText("one\ntwo");
    EXPECT_EQ(lines.wordRangeAt(3), std::make_pair(0, 3));
    EXPECT_EQ(lines.wordRangeAt(4), std::make_pair(4, 7));
}

TEST(TextEditModel, UndoTakesBackWordsAndRunsOfErasing)
{
    CTextEditModel model;
    for (const char* typed : {"H", "e", "l", "l", "o", " ", "w", "\xC3\xB6", "r", "l", "d"}) model.type(typed);
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6rld");
    // Two backspaces in a row are one step.
    model.eraseBackward(TextUnit::character);
    model.eraseBackward(TextUnit::character);
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6r");
    EXPECT_TRUE(model.undo());
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6rld");
    EXPECT_EQ(model.getCaret(), 11);
    EXPECT_TRUE(model.undo());
    EXPECT_EQ(model.getText(), "Hello");
    EXPECT_TRUE(model.redo());
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6rld");

    // A move of the caret ends a typing run; a paste is a step of its own
    // and restores the selection it replaced.
    model.setCaret(0);
    model.type("A");
    model.type("B");
    model.select(2, 7);
    model.insert("pasted");
    EXPECT_EQ(model.getText(), "ABpasted w\xC3\xB6rld");
    EXPECT_TRUE(model.undo());
    EXPECT_EQ(model.getText(), "ABHello w\xC3\xB6rld");
    EXPECT_EQ(model.getSelectionStart(), 2);
    EXPECT_EQ(model.getSelectionEnd(), 7);
    EXPECT_TRUE(model.undo());
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6rld");

    // Forward erasing merges too, and a new edit forgets what could be redone.
    model.setCaret(0);
    model.eraseForward(TextUnit::character);
    model.eraseForward(TextUnit::character);
    EXPECT_EQ(model.getText(), "llo w\xC3\xB6rld");
    model.undo();
    EXPECT_EQ(model.getText(), "Hello w\xC3\xB6rld");
    EXPECT_TRUE(model.canRedo());
    model.type("x");
    EXPECT_FALSE(model.canRedo());
    EXPECT_FALSE(model.redo());

    // setText starts a new history.
    model.setText("fresh");
    EXPECT_FALSE(model.canUndo());
    EXPECT_EQ(model.getCaret(), 5);
}

TEST(TextEditModel, LineBreaksControlCharactersAndMaximumLength)
{
    CTextEditModel single;
    single.insert("a\r\nb\tc\x01"
                  "d\re");
    EXPECT_EQ(single.getText(), "a b cd e");
    CTextEditModel multiple(TextLines::multiple);
    multiple.insert("a\r\nb\tc\x01"
                    "d\re");
    EXPECT_EQ(multiple.getText(), "a\nb\tcd\ne");

    CTextEditModel limited;
    limited.setMaxLength(5);
    EXPECT_TRUE(limited.insert("Hello world"));
    EXPECT_EQ(limited.getText(), "Hello");
    EXPECT_FALSE(limited.type("!"));
    // A selection frees its room for what replaces it.
    limited.select(1, 3);
    EXPECT_TRUE(limited.insert("EEEE"));
    EXPECT_EQ(limited.getText(), "HEElo");
    // A smaller limit cuts the text; -1 lifts it.
    limited.setMaxLength(2);
    EXPECT_EQ(limited.getText(), "HE");
    EXPECT_EQ(limited.getCaret(), 2);
    limited.setMaxLength(-1);
    EXPECT_TRUE(limited.insert(" and more"));
    EXPECT_EQ(limited.getText(), "HE and more");
    EXPECT_EQ(limited.getSelectedText(), "");
    limited.select(3, 6);
    EXPECT_EQ(limited.getSelectedText(), "and");
}

}  // namespace
