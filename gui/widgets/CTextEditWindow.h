#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gui/CWindow.h"
#include "gui/widgets/CTextEditModel.h"

namespace fenn::gui {

// Whether an edit window paints its own rounded box or sits inside one
// that another widget paints (the editable drop list).
enum class EditFrameStyle
{
    box,
    none,
};

// Whether the user may change the text.
enum class EditMode
{
    editable,
    readOnly,
};

// The part of CEditField and CEditArea that does not depend on the number of
// lines: the text model with caret, selection and undo; typing, erasing and
// the input method's composition (shown underlined at the caret); caret
// movement and selection with keys and the mouse; the clipboard; painting of
// the box, text, selection, caret and placeholder. The subclasses place the
// text (scrolling included) and add their own keys. Every edit made by the
// user tells listeners Notification::changed; setText does not. Owned by its
// parent window; GUI thread.
class CTextEditWindow : public CWindow
{
public:
    explicit CTextEditWindow(TextLines lines);
    ~CTextEditWindow() override;

    // ---- text and options ----
    void setText(const String& text) override;
    void setEditMode(EditMode mode);
    bool isReadOnly() const { return m_mode == EditMode::readOnly; }
    // Shown in the secondary colour while the text is empty.
    void setPlaceholder(const String& text);
    const String& getPlaceholder() const { return m_placeholder; }
    // At most this many characters (code points); -1 for no limit.
    void setMaxLength(int maxLength);
    int getMaxLength() const { return m_model.getMaxLength(); }
    void setFrameStyle(EditFrameStyle style);
    // The window that takes the focus and the keys for this one (an
    // editable drop list, which passes them on); null for this one itself.
    // The link is raw: the holder is this window's parent.
    void setFocusHolder(CWindow* holder) { m_focusHolder = holder; }
    // Whether this window, or its focus holder, has the focus.
    bool isFocusShown() const { return m_focusHolder ? m_focusHolder->hasFocus() : hasFocus(); }

    // ---- caret and selection ----
    const CTextEditModel& getModel() const { return m_model; }
    void select(int anchor, int caret);
    void selectAll();

    // ---- what the editing keys do, for menus ----
    void copy();
    bool cut();
    bool paste();
    bool undo();
    bool redo();

    // ---- CWindow ----
    void paint(CPainter& painter) override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;
    bool onTextInput(const CTextInputEvent& event) override;
    bool onTextEditing(const CTextEditingEvent& event) override;
    void onFocusIn() override;
    void onFocusOut() override;
    bool isFocusable() const override { return !m_focusHolder && CWindow::isFocusable(); }
    bool wantsTextInput() const override { return !isReadOnly(); }
    CRect getTextInputRect() const override { return getCaretRect(); }

protected:
    // The part of the window the text shows in.
    virtual CRect getTextArea() const = 0;
    // Where the top left of the text layout lies in the window, scrolling included.
    virtual CPoint getLayoutOrigin() const = 0;
    // Sets the width and wrapping of the layout before it is used.
    virtual void configureLayout(CTextLayout& layout) const = 0;
    // Scrolls so that the caret shows.
    virtual void scrollToCaret() = 0;

    void onResized() override;

    // The laid-out text as shown (with any composition), made when needed.
    CTextLayout& getTextLayout() const;
    // The layout must be made again: the text area's width changed.
    void invalidateTextLayout();
    // The caret in window coordinates.
    CRect getCaretRect() const;
    // The caret in layout coordinates.
    CRect getLayoutCaretRect() const;
    // The caret's x and the whole height of its line, in layout coordinates.
    CRect getLayoutCaretLine() const;
    // The text index under a point of the window.
    int indexAt(CPoint point) const;
    // Moves the caret by whole lines of the layout, keeping the column it
    // had before the first of a run of such moves.
    void moveByLines(int lines, CaretMove move);
    // Moves the caret and selection and shows the change.
    void moveCaret(int index, CaretMove move);
    // Shows and announces an edit that the user made through the model.
    void userEdited();
    CTextEditModel& model() { return m_model; }
    bool isDragging() const { return m_drag != DragUnit::none; }

private:
    enum class DragUnit
    {
        none,
        character,
        word,
    };

    // The shown text is the model's text with the composition at the caret.
    int toShownIndex(int index) const;
    int fromShownIndex(int index) const;
    std::vector<CRect> selectionRects(int shownStart, int shownEnd) const;
    void paintBox(CPainter& painter);
    int lineStartAt(int index) const;
    int lineEndAt(int index) const;
    void clearComposition();

    CTextEditModel m_model;
    EditMode m_mode = EditMode::editable;
    EditFrameStyle m_frameStyle = EditFrameStyle::box;
    String m_placeholder;
    CWindow* m_focusHolder = nullptr;
    std::u32string m_composition;
    int m_compositionCursor = 0;
    // The x position that runs of Up and Down keep; -1 when none is kept.
    int m_preferredX = -1;
    DragUnit m_drag = DragUnit::none;
    std::pair<int, int> m_dragWord;
    mutable std::unique_ptr<CTextLayout> m_layout;
    mutable P<CFont> m_layoutFont;
    mutable bool m_layoutValid = false;
};

}  // namespace fenn::gui
