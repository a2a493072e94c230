#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// The platform object: the services of the operating system that the
// framework and the application use. The platform package installs it when
// it starts and removes it when it stops.
class ISystem : public virtual IBase
{
public:
    // Runs the GUI thread's event loop until endMessageLoop.
    virtual void runMessageLoop() = 0;
    // Ends the loop; may be called from any thread.
    virtual void endMessageLoop() = 0;
    // Hands an action to the GUI thread, which runs posted actions in the
    // order of posting. May be called from any thread.
    virtual void postAction(P<IAction> action) = 0;
    // Runs what is pending on the GUI thread's queue, then returns. Long jobs
    // call it from their progress points.
    virtual void pump() = 0;
    // What the loop runs when the platform asks the program to quit (a
    // termination signal, the session ending). Without a handler the loop ends.
    virtual void setQuitRequestHandler(P<IAction> handler) = 0;
};

// The installed platform object, or null before the platform package starts.
P<ISystem> getSystem();
void setSystem(P<ISystem> system);

}  // namespace fenn
