#include "app/COperation.h"

namespace tbx {

void COperation::notifyProgress()
{
    // A listener may release this operation while it is told.
    const fenn::P<COperation> self(this);
    m_listeners.notify([this](IOperationListener& listener) { listener.onOperationProgress(this); });
}

}  // namespace tbx
