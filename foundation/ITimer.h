#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// A stopwatch on the monotonic clock: it measures the time since it was
// made or last restarted. Not locked; one thread uses it.
class ITimer : public virtual IBase
{
public:
    virtual void restart() = 0;
    virtual std::int64_t getElapsedMilliseconds() const = 0;
    virtual std::int64_t getElapsedMicroseconds() const = 0;
};

// The process's clock: stopwatches, the current time and sleeping. Any
// thread may call it.
class ITimerManager : public virtual IBase
{
public:
    virtual P<ITimer> createTimer() = 0;
    // Milliseconds on the monotonic clock, counted from an arbitrary start:
    // for measuring spans and ordering events, not for dates.
    virtual std::int64_t getCurrentTime() const = 0;
    // Lets the calling thread sleep at least the given milliseconds; 0 or
    // less only yields.
    virtual void sleep(std::int32_t milliseconds) = 0;
};

}  // namespace fenn
