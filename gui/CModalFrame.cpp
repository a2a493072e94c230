#include "gui/CModalFrame.h"

#include <vector>

#include "foundation/CObjectError.h"
#include "foundation/ISystem.h"

namespace fenn::gui {

CModalFrame::CModalFrame()
{
    addAccelerator("Escape", [this] { endModal(kCancelled); });
}

int CModalFrame::runModal()
{
    if (m_running) throw CInvalidObjectStateError(this, "the frame runs modally already");
    const P<ISystem> system = getSystem();
    if (!system) throw CInvalidObjectStateError(this, "there is no event loop");
    const P<CModalFrame> keep(this);
    // Every frame open now is blocked while this one runs, and gets back
    // the state it had.
    std::vector<std::pair<P<CFrameWindow>, bool>> blocked;
    for (CFrameWindow* frame : getOpenFrames()) {
        if (frame == this) continue;
        blocked.emplace_back(P<CFrameWindow>(frame), frame->isInputBlocked());
        frame->setInputBlocked(true);
    }
    m_running = true;
    m_ended = false;
    m_result = kCancelled;
    show();
    if (getHost()) getHost()->raise();
    try {
        while (!m_ended) system->runMessageLoop();
    } catch (...) {
        m_running = false;
        for (auto& [frame, wasBlocked] : blocked) frame->setInputBlocked(wasBlocked);
        throw;
    }
    m_running = false;
    for (auto& [frame, wasBlocked] : blocked) frame->setInputBlocked(wasBlocked);
    hide();
    return m_result;
}

void CModalFrame::close()
{
    endModal(kCancelled);
    CFrameWindow::close();
}

void CModalFrame::endModal(int result)
{
    if (!m_running || m_ended) return;
    m_result = result;
    m_ended = true;
    if (const P<ISystem> system = getSystem()) system->endMessageLoop();
}

}  // namespace fenn::gui
