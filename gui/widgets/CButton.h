#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// How a button looks: the accent-filled default action or a plain one.
enum class ButtonKind
{
    normal,
    primary,
};

// A push button with a text. A click (left button pressed and released on
// it, or Space or Enter while it has the focus) tells listeners
// Notification::clicked. Owned by its parent window; GUI thread.
class CButton : public CWindow
{
public:
    CButton();
    explicit CButton(const String& text);

    void setKind(ButtonKind kind);
    ButtonKind getKind() const { return m_kind; }
    // Runs the click as if the user had clicked.
    void click();

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onClick(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;

private:
    ButtonKind m_kind = ButtonKind::normal;
};

}  // namespace fenn::gui
