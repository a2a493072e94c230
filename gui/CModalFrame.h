#pragma once

#include "gui/CFrameWindow.h"

namespace fenn::gui {

// A frame that runs modally: runModal shows it and runs a nested event loop
// until endModal, while every other frame takes no input (window managers
// need not enforce it, so the toolkit does). Closing it ends the loop with
// the cancel result. GUI thread only.
class CModalFrame : public CFrameWindow
{
public:
    // The result of a modal frame closed by its close button or Escape.
    static constexpr int kCancelled = 0;

    CModalFrame();

    // Shows the frame, blocks the others, runs the loop; returns the result
    // given to endModal. Throws CInvalidObjectStateError when already running.
    int runModal();
    void endModal(int result);
    bool isRunningModal() const { return m_running; }
    // Closing a modal frame ends its loop with kCancelled.
    void close() override;

private:
    bool m_running = false;
    bool m_ended = false;
    int m_result = kCancelled;
};

}  // namespace fenn::gui
