#pragma once

#include "app/IOperation.h"
#include "foundation/CObject.h"
#include "foundation/TFrailArray.h"

namespace tbx {

// The listener bookkeeping of an operation. Subclasses do the work in run
// and call notifyProgress from their progress points. GUI thread only.
class COperation : public fenn::CObject, public virtual IOperation
{
public:
    fenn::P<IOperation> getSubOperation() override { return nullptr; }
    void addListener(IOperationListener* listener) override { m_listeners.addFrail(listener); }
    void removeListener(IOperationListener* listener) override { m_listeners.remove(listener); }
    std::int32_t getResultCode() override { return m_resultCode; }

protected:
    // Tells each listener, from the last added to the first; a listener may
    // remove itself while it is told.
    void notifyProgress();
    void setResultCode(std::int32_t code) { m_resultCode = code; }

private:
    fenn::TFrailArray<IOperationListener> m_listeners;
    std::int32_t m_resultCode = 0;
};

}  // namespace tbx
