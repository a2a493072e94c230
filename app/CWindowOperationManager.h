#pragma once

#include "app/COperationManager.h"
#include "foundation/IBase.h"

namespace tbx {

// The small window that shows a job outside a wizard: an action text, a
// bar and a cancel button. The GUI provides it; the operation manager only
// drives it. GUI thread only.
class IProgressWindow : public virtual fenn::IBase
{
public:
    virtual void setActionText(const fenn::String& text) = 0;
    // The bar, in whole percent.
    virtual void setProgress(int percent) = 0;
    // Lets the window repaint what changed.
    virtual void update() = 0;
    // Set when the user asked to cancel; read at the job's next progress point.
    virtual void setCancelFlag(bool cancel) = 0;
    virtual bool getCancelFlag() const = 0;
};

// Sets the cancel flag of a progress window. The window's cancel button
// posts it, so the flag changes between two progress points, never inside
// one. Holds a count on the window.
class CCancelAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    explicit CCancelAction(fenn::P<IProgressWindow> window) : m_window(std::move(window)) {}

    void execute() override
    {
        if (m_window) m_window->setCancelFlag(true);
    }

private:
    fenn::P<IProgressWindow> m_window;
};

// The process's manager of jobs that show their progress in a progress
// window. One object, made at first use and shared. At each progress call
// it shows the child's text when the child changed, writes the bar when
// the whole percent changed, turns the window's cancel flag into a cancel
// and then pumps the GUI's event queue, so the program stays alive while
// the job holds the GUI thread. GUI thread only.
class CWindowOperationManager : public COperationManager
{
public:
    static fenn::P<CWindowOperationManager> getInstance();

    // The window to drive; null runs jobs without one.
    void setProgressWindow(fenn::P<IProgressWindow> window) { m_window = std::move(window); }
    fenn::P<IProgressWindow> getProgressWindow() const { return m_window; }

    // Clears the window's cancel flag, so that a cancel of the last job does
    // not end this one, then runs the children.
    bool run() override;
    void onOperationProgress(IOperation* operation) override;

private:
    fenn::P<IProgressWindow> m_window;
    // The child whose text the window shows.
    fenn::P<IOperation> m_shownChild;
};

}  // namespace tbx
