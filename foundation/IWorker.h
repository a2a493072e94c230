#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

class IWorkerManager;

// A small piece of periodic work run on the GUI thread from a single timer.
// A worker is called at every round of its manager and judges by itself
// whether its own period has passed.
class IWorker : public virtual IBase
{
public:
    virtual void doWork() = 0;
    virtual std::int32_t getWorkerPriority() = 0;
    // The wanted period in milliseconds; 0 means no regular calls.
    virtual std::int32_t getWorkInterval() = 0;
    virtual void attached(IWorkerManager* manager) = 0;
    virtual void detached(IWorkerManager* manager) = 0;
};

// A worker made of workers, so managers nest. Its interval is one that
// serves all of its workers; managers registered as interval listeners are
// told whenever it is computed again. GUI thread only.
class IWorkerManager : public virtual IWorker
{
public:
    // Holds a count on the worker.
    virtual void addWorker(IWorker* worker) = 0;
    // Holds no count; the worker removes itself before it goes.
    virtual void addFrailWorker(IWorker* worker) = 0;
    virtual void removeWorker(IWorker* worker) = 0;
    // Registered frail: the listener removes itself before it goes.
    virtual void addIntervalListener(IWorkerManager* listener) = 0;
    virtual void removeIntervalListener(IWorkerManager* listener) = 0;
    // Called by a manager that this one listens to after it computed its interval.
    virtual void workIntervalChanged(IWorkerManager* changed) = 0;
};

}  // namespace fenn
