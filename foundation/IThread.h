#pragma once

#include <cstdint>

#include "foundation/CException.h"
#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// A system thread that runs one action. The thread keeps the action alive
// until it has run. An error that escapes the action ends the thread and is
// kept, cloned, for the owner to fetch after the thread has finished.
class IThread : public virtual IBase
{
public:
    // Waits until the action has run. Not from the thread itself.
    virtual void join() = 0;
    // Waits at most the given milliseconds; true when the action has run.
    virtual bool waitFor(std::int32_t milliseconds) = 0;
    virtual bool isRunning() const = 0;
    // The error that ended the action, or null.
    virtual P<CException> getError() const = 0;
};

// Starts threads. Any thread may call it.
class IThreadManager : public virtual IBase
{
public:
    // Starts a thread that runs body. Throws CError when the system gives
    // no thread.
    virtual P<IThread> createThread(P<IAction> body) = 0;
    // A number that tells the calling thread from every other running one.
    virtual std::uint64_t getCurrentThreadId() const = 0;
};

}  // namespace fenn
