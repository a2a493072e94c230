#include "app/CWindowOperationManager.h"

#include "app/LastShownPercents.h"
#include "audio/IProgress.h"
#include "foundation/ISystem.h"
#include "foundation/TSingleton.h"

namespace tbx {

fenn::P<CWindowOperationManager> CWindowOperationManager::getInstance()
{
    static fenn::TSingleton<CWindowOperationManager> instance([] { return fenn::make<CWindowOperationManager>(); });
    return instance.get();
}

bool CWindowOperationManager::run()
{
    if (isRunning()) return false;
    if (m_window) m_window->setCancelFlag(false);
    const bool finished = COperationManager::run();
    m_shownChild = nullptr;
    return finished;
}

void CWindowOperationManager::onOperationProgress(IOperation* operation)
{
    if (!updateProgress(operation)) return;
    notifyProgress();
    // The window may be replaced by what runs during the pump; this call
    // finishes with the one it began with.
    if (const fenn::P<IProgressWindow> window = m_window) {
        if (m_shownChild.get() != operation) {
            window->setActionText(operation->getText());
            m_shownChild = operation;
        }
        window->update();
        // Progress comes far more often than the bar can change; the bar is
        // written only when the whole percent moves.
        const int percent = static_cast<int>(getProgress() * 100);
        if (int& shown = getLastShownPercents().window; percent != shown) {
            window->setProgress(percent);
            shown = percent;
        }
        if (window->getCancelFlag()) cancel();
    }
    if (const fenn::P<fenn::ISystem> system = fenn::getSystem()) system->pump();
}

}  // namespace tbx
