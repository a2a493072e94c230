// The input side of CTextEditWindow: the mouse selects, the keys move the
// caret, erase and reach the clipboard and undo, and typed and composed text
// arrive from the input method.
#include <algorithm>

#include "gui/CFrameWindow.h"
#include "gui/widgets/CTextEditWindow.h"

namespace fenn::gui {

// ---- mouse ----

bool CTextEditWindow::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    clearComposition();
    const int index = indexAt(event.position);
    if (event.clicks >= 3) {
        // A third click selects the paragraph (the whole text of a field).
        const std::u32string& text = m_model.getCharacters();
        int start = index;
        while (start > 0 && text[static_cast<std::size_t>(start) - 1] != U'\n') --start;
        int end = index;
        while (end < m_model.getLength() && text[static_cast<std::size_t>(end)] != U'\n') ++end;
        m_model.select(start, end);
        m_drag = DragUnit::character;
    } else if (event.clicks == 2) {
        m_dragWord = m_model.wordRangeAt(index);
        m_model.select(m_dragWord.first, m_dragWord.second);
        m_drag = DragUnit::word;
    } else {
        m_model.setCaret(index, (event.modifiers & modifierShift) ? CaretMove::extend : CaretMove::move);
        m_drag = DragUnit::character;
    }
    if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
    m_preferredX = -1;
    scrollToCaret();
    invalidate();
    return true;
}

bool CTextEditWindow::onMouseMove(const CMouseEvent& event)
{
    if (m_drag == DragUnit::none) return false;
    const int index = indexAt(event.position);
    if (m_drag == DragUnit::word) {
        // A drag after a double click grows the selection by whole words.
        const auto [start, end] = m_model.wordRangeAt(index);
        if (start < m_dragWord.first) {
            m_model.select(m_dragWord.second, start);
        } else {
            m_model.select(m_dragWord.first, std::max(end, m_dragWord.second));
        }
    } else {
        m_model.setCaret(index, CaretMove::extend);
    }
    m_preferredX = -1;
    scrollToCaret();
    invalidate();
    return true;
}

bool CTextEditWindow::onMouseUp(const CMouseEvent& event)
{
    if (m_drag == DragUnit::none || event.button != MouseButton::left) return false;
    m_drag = DragUnit::none;
    if (CFrameWindow* frame = getFrame(); frame && frame->getCaptureWindow() == this) frame->releaseCapture();
    return true;
}

// ---- keyboard ----

bool CTextEditWindow::onKeyDown(const CKeyEvent& event)
{
    const std::uint32_t modifiers = event.modifiers;
    if (modifiers & modifierAlt) return false;
    const bool shift = (modifiers & modifierShift) != 0;
    const bool control = (modifiers & modifierControl) != 0;
    const CaretMove move = shift ? CaretMove::extend : CaretMove::move;
    const TextUnit unit = control ? TextUnit::word : TextUnit::character;
    const bool editable = !isReadOnly();
    const int caret = m_model.getCaret();
    switch (event.key) {
    case Key::left:
        if (!shift && !control && m_model.hasSelection()) {
            moveCaret(m_model.getSelectionStart(), move);
        } else {
            moveCaret(m_model.previousStop(caret, unit), move);
        }
        return true;
    case Key::right:
        if (!shift && !control && m_model.hasSelection()) {
            moveCaret(m_model.getSelectionEnd(), move);
        } else {
            moveCaret(m_model.nextStop(caret, unit), move);
        }
        return true;
    case Key::home:
        moveCaret(control ? 0 : lineStartAt(caret), move);
        return true;
    case Key::end:
        moveCaret(control ? m_model.getLength() : lineEndAt(caret), move);
        return true;
    case Key::backspace:
        if (!editable) return false;
        if (m_model.eraseBackward(unit)) userEdited();
        return true;
    case Key::deleteKey:
        if (!editable) return false;
        if (shift && !control) {
            cut();
        } else if (m_model.eraseForward(unit)) {
            userEdited();
        }
        return true;
    case Key::insert:
        if (control && !shift) {
            copy();
            return true;
        }
        if (shift && !control) {
            paste();
            return true;
        }
        return false;
    case Key::space:
        return editable && !control;
    case Key::character:
        if (!control) return editable;
        switch (event.character) {
        case U'a':
            if (shift) return false;
            selectAll();
            return true;
        case U'c':
            if (shift) return false;
            copy();
            return true;
        case U'x':
            if (shift) return false;
            cut();
            return true;
        case U'v':
            if (shift) return false;
            paste();
            return true;
        case U'z':
            if (shift) {
                redo();
            } else {
                undo();
            }
            return true;
        case U'y':
            if (shift) return false;
            redo();
            return true;
        default:
            return false;
        }
    default:
        return false;
    }
}

bool CTextEditWindow::onTextInput(const CTextInputEvent& event)
{
    if (isReadOnly()) return false;
    clearComposition();
    if (m_model.type(event.text)) userEdited();
    return true;
}

bool CTextEditWindow::onTextEditing(const CTextEditingEvent& event)
{
    if (isReadOnly()) return false;
    m_composition = event.text.toUTF32();
    m_compositionCursor = std::clamp(event.cursor, 0, static_cast<int>(m_composition.size()));
    invalidateTextLayout();
    scrollToCaret();
    return true;
}

void CTextEditWindow::onFocusIn()
{
    invalidate();
}

void CTextEditWindow::onFocusOut()
{
    clearComposition();
    m_drag = DragUnit::none;
    invalidate();
}

}  // namespace fenn::gui
