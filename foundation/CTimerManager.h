#pragma once

#include <chrono>

#include "foundation/CObject.h"
#include "foundation/ITimer.h"

namespace fenn {

// A stopwatch on std::chrono::steady_clock.
class CTimer : public CObject, public virtual ITimer
{
public:
    CTimer() : m_start(std::chrono::steady_clock::now()) {}

    void restart() override { m_start = std::chrono::steady_clock::now(); }
    std::int64_t getElapsedMilliseconds() const override;
    std::int64_t getElapsedMicroseconds() const override;

private:
    std::chrono::steady_clock::time_point m_start;
};

// The time manager of the process. It holds no state, so it is made once
// and never released: the singleton holders wait through it, and they must
// not need a singleton for that.
class CTimerManager : public CObject, public virtual ITimerManager
{
public:
    static P<CTimerManager> getInstance();

    P<ITimer> createTimer() override;
    std::int64_t getCurrentTime() const override;
    void sleep(std::int32_t milliseconds) override;
};

}  // namespace fenn
