#pragma once

#include <vector>

#include "gui/CModalFrame.h"
#include "gui/widgets/CButton.h"

namespace fenn::gui {

enum class MessageBoxButtons
{
    ok,
    okCancel,
    yesNo,
    retryCancel,
};

// The answers of a message box; cancel is also what closing it gives.
enum class MessageBoxResult
{
    cancel = CModalFrame::kCancelled,
    ok,
    yes,
    no,
    retry,
};

// A modal frame with the caller's title and text and a row of buttons.
// The first button is the default: it has the focus and Enter presses it;
// Escape and closing the box give the cancel answer (no for yes/no).
// GUI thread.
class CMessageBox : public CModalFrame, public virtual IWindowListener
{
public:
    CMessageBox(const String& title, const String& text, MessageBoxButtons buttons);

    // Shows a box and returns the answer.
    static MessageBoxResult ask(const String& title, const String& text, MessageBoxButtons buttons);

    MessageBoxResult runBox();
    const std::vector<P<CButton>>& getButtons() const { return m_buttons; }

    void windowNotified(CWindow& window, const CNotification& notification) override;

private:
    void addButton(const String& text, MessageBoxResult result, ButtonKind kind);

    std::vector<P<CButton>> m_buttons;
    std::vector<MessageBoxResult> m_results;
    P<CWindow> m_buttonRow;
};

}  // namespace fenn::gui
