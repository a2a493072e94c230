#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace tbx {

class IOperation;

class IOperationListener : public virtual fenn::IBase
{
public:
    virtual void onOperationProgress(IOperation* operation) = 0;
};

// A long job. It runs to its end inside run, on the GUI thread, and keeps
// the GUI alive by pumping the event queue from its progress points; cancel
// sets a flag that the job reads at its next progress point.
class IOperation : public virtual fenn::IBase
{
public:
    // False if the job could not start or failed as a whole.
    virtual bool run() = 0;
    virtual void cancel() = 0;
    // From 0.0 to 1.0.
    virtual double getProgress() = 0;
    // The part at work, or null.
    virtual fenn::P<IOperation> getSubOperation() = 0;
    // What is being done, for the user.
    virtual fenn::String getText() = 0;
    // Listeners are held frail: a listener removes itself before it goes,
    // or outlives the operation.
    virtual void addListener(IOperationListener* listener) = 0;
    virtual void removeListener(IOperationListener* listener) = 0;
    virtual std::int32_t getResultCode() = 0;
};

}  // namespace tbx
