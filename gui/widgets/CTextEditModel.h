#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "foundation/String.h"

namespace fenn::gui {

// Whether an edited text may hold line breaks.
enum class TextLines
{
    single,
    multiple,
};

// What a caret movement does to the selection.
enum class CaretMove
{
    // The caret moves and the selection goes.
    move,
    // The caret moves and the anchor stays: the selection grows or shrinks.
    extend,
};

// The step of caret movements and erasing.
enum class TextUnit
{
    character,
    word,
};

// The state of an edited text without any painting: the characters, the
// caret and the selection anchor, and the undo history. Positions are code
// point indices; the caret never stops inside a character cluster (a base
// character with its combining marks, variation selectors, emoji modifiers
// and zero-width joiner sequences), so "é" typed as "e" plus a combining
// accent and "😀" are one step each. Single-line texts turn line breaks and
// tabs into spaces as they arrive. The edit widgets own one each; GUI thread.
class CTextEditModel
{
public:
    explicit CTextEditModel(TextLines lines = TextLines::single);

    TextLines getLines() const { return m_lines; }

    // ---- the text ----
    String getText() const;
    const std::u32string& getCharacters() const { return m_text; }
    int getLength() const { return static_cast<int>(m_text.size()); }
    // Replaces the text (cut to the maximum length), puts the caret at the
    // end and forgets the undo history.
    void setText(const String& text);
    // At most this many code points (-1: no limit); a longer text is cut.
    void setMaxLength(int maxLength);
    int getMaxLength() const { return m_maxLength; }

    // ---- caret and selection ----
    int getCaret() const { return m_caret; }
    int getAnchor() const { return m_anchor; }
    bool hasSelection() const { return m_caret != m_anchor; }
    int getSelectionStart() const { return std::min(m_caret, m_anchor); }
    int getSelectionEnd() const { return std::max(m_caret, m_anchor); }
    String getSelectedText() const;
    // Indices are clamped to the text and moved to the start of the cluster
    // they fall into.
    void setCaret(int index, CaretMove move = CaretMove::move);
    void select(int anchor, int caret);
    void selectAll() { select(0, getLength()); }
    // The word at index (or the run of spaces, or the single other
    // character), as start and end; a caret at the end of a line takes the
    // word before it. selectWordAt selects it.
    std::pair<int, int> wordRangeAt(int index) const;
    void selectWordAt(int index);

    // The caret stop before and after index: the neighbouring cluster for
    // TextUnit::character; for TextUnit::word the start of the word before
    // and the end of the word after.
    int previousStop(int index, TextUnit unit) const;
    int nextStop(int index, TextUnit unit) const;

    // ---- edits; each returns whether the text changed ----
    // Replaces the selection with text (cut to what the maximum length
    // leaves) as an edit of its own: a paste, a drop.
    bool insert(const String& text);
    // The same for typed text: characters typed in a row are taken back
    // together, a word (with the spaces before it) at a time.
    bool type(const String& text);
    bool eraseSelection();
    // Erases the selection, or else back to / on to the next stop.
    bool eraseBackward(TextUnit unit);
    bool eraseForward(TextUnit unit);

    // Undo takes back the last edit; typing or erasing in a row without
    // moving the caret counts as one edit.
    bool undo();
    bool redo();
    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }

private:
    enum class EditKind
    {
        typing,
        erasingBackward,
        erasingForward,
        other,
    };
    // One edit for undo: at start, removed was replaced by inserted; the
    // caret and anchor were where they are restored to.
    struct Edit
    {
        int start = 0;
        std::u32string removed;
        std::u32string inserted;
        int caretBefore = 0;
        int anchorBefore = 0;
    };

    std::u32string normalize(const std::u32string& text) const;
    bool isClusterContinuation(int index) const;
    int clusterStart(int index) const;
    bool replace(int start, int end, const std::u32string& text, EditKind kind);

    TextLines m_lines;
    std::u32string m_text;
    int m_caret = 0;
    int m_anchor = 0;
    int m_maxLength = -1;
    std::vector<Edit> m_undo;
    std::vector<Edit> m_redo;
    EditKind m_lastKind = EditKind::other;
};

}  // namespace fenn::gui
