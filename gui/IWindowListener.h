#pragma once

#include "foundation/IBase.h"

namespace fenn::gui {

class CWindow;

// What a window tells its listeners.
enum class Notification
{
    // A button was pressed and released over it, or activated by a key.
    clicked,
    // The value changed by the user: a check box's state, a slider's position,
    // an edit field's text, a drop list's choice, a tab view's page.
    changed,
    // A cell view's or list's selection changed.
    selectionChanged,
    // A row or item was activated (double click or Enter).
    activated,
    // A cell's button was clicked; index is the row, column the column.
    cellClicked,
    // A column header was clicked; column is its index.
    headerClicked,
    // The user asked a frame to close (its close button, Alt+F4).
    closeRequested,
    // A frame was closed.
    closed,
    // The window's size changed.
    resized,
};

struct CNotification
{
    Notification kind = Notification::changed;
    int index = -1;
    int column = -1;
};

// Listens to one or more windows. Windows hold their listeners frail unless
// added strongly; a frail listener removes itself before it goes. GUI thread.
class IWindowListener : public virtual IBase
{
public:
    virtual void windowNotified(CWindow& window, const CNotification& notification) = 0;
};

}  // namespace fenn::gui
