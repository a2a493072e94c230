#pragma once

#include <vector>

#include "gui/CWindow.h"

namespace fenn::gui {

class CDropListPopup;
class CEditField;

// A choice of one entry from a list ("droplist"): a closed box that shows
// the chosen entry and an arrow, and a list that opens below it in a pop-up
// of the frame (a click on the box, Alt+Down or F4). The list closes on a
// choice, on Escape and on a press outside it. While closed, Up and Down
// choose the previous and next entry and a typed letter the next entry
// that starts with it. An editable drop list has an edit field in its box:
// any text may be typed and the list still offers its entries. A choice or
// an edit by the user tells listeners Notification::changed. Owned by its
// parent window; GUI thread.
class CDropList : public CWindow, public virtual IWindowListener
{
public:
    CDropList();
    ~CDropList() override;

    // ---- entries ----
    void addEntry(const String& text);
    void removeAllEntries();
    int getEntryCount() const { return static_cast<int>(m_entries.size()); }
    // Throws CInvalidArgError for an index outside the entries.
    const String& getEntry(int index) const;
    // The chosen entry, or -1 for none (an editable list's text that is no
    // entry); setting it does not notify.
    void setSelectedIndex(int index);
    int getSelectedIndex() const { return m_selected; }
    // An editable list takes the text; another chooses the entry with it.
    void setText(const String& text) override;

    // ---- editing ----
    void setEditable(bool editable);
    bool isEditable() const { return m_edit != nullptr; }
    // The edit field of an editable list, else null.
    CEditField* getEditField() const { return m_edit.get(); }

    // ---- the list ----
    void openList();
    void closeList();
    bool isListOpen() const;
    // The pop-up while the list is open, else null.
    CDropListPopup* getPopup() const;

    // ---- CWindow ----
    CSize computeSize(SizeType type) override;
    void layoutChildren() override;
    void paint(CPainter& painter) override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;
    // An editable list keeps the focus itself and passes keys and text on
    // to its edit field first.
    bool onTextInput(const CTextInputEvent& event) override;
    bool onTextEditing(const CTextEditingEvent& event) override;
    void onFocusIn() override;
    void onFocusOut() override;
    bool wantsTextInput() const override;
    CRect getTextInputRect() const override;

    void windowNotified(CWindow& window, const CNotification& notification) override;

protected:
    void onFrameChanged() override;

private:
    friend class CDropListPopup;
    // Told by the pop-up.
    void chooseFromList(int index);
    void listClosed();

    // Makes index the choice as the user did and tells the listeners.
    void choose(int index);
    void showSelection();
    int findEntry(const String& text) const;
    int findByFirstLetter(char32_t letter, int after) const;
    CRect getArrowRect() const;
    void paintArrow(CPainter& painter, CColor color) const;

    std::vector<String> m_entries;
    int m_selected = -1;
    P<CEditField> m_edit;
    P<CDropListPopup> m_popup;
    // Whether the press that opened the list is still held, so that a
    // release over an entry chooses it.
    bool m_pressOpened = false;
};

}  // namespace fenn::gui
