#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IWorker.h"
#include "foundation/TFrailArray.h"

namespace fenn {

// Runs its workers in rounds and keeps the interval that serves them all:
// the greatest common divisor of their periods, so one timer can drive
// workers of different periods. A manager added to another as a worker
// registers that one as its interval listener, so a change deep down
// reaches the top. GUI thread only.
class CWorkerManager : public CObject, public virtual IWorkerManager
{
public:
    explicit CWorkerManager(std::int32_t priority = 0) : m_priority(priority) {}
    // Tells the workers that are left that they are detached, so that nested
    // managers forget this one as their listener.
    ~CWorkerManager() override;

    void addWorker(IWorker* worker) override;
    void addFrailWorker(IWorker* worker) override;
    void removeWorker(IWorker* worker) override;
    void addIntervalListener(IWorkerManager* listener) override { m_intervalListeners.addFrail(listener); }
    void removeIntervalListener(IWorkerManager* listener) override { m_intervalListeners.remove(listener); }
    void workIntervalChanged(IWorkerManager* changed) override;

    // One round: every worker once, from the last to the first.
    void doWork() override;
    std::int32_t getWorkerPriority() override { return m_priority; }
    std::int32_t getWorkInterval() override { return m_interval; }
    void attached(IWorkerManager* manager) override;
    void detached(IWorkerManager* manager) override;

    // When the last round began, on the time manager's clock; 0 before the first.
    std::int64_t getLastRoundTime() const { return m_lastRoundTime; }

    // The greatest common divisor of two periods; a zero in either gives 1.
    static std::int32_t greatestCommonDivisor(std::int32_t a, std::int32_t b);

private:
    void add(IWorker* worker, Hold hold);
    bool contains(IWorker* worker) const;
    void computeInterval();

    std::int32_t m_priority;
    TFrailArray<IWorker> m_workers;
    TFrailArray<IWorkerManager> m_intervalListeners;
    std::int32_t m_interval = 0;
    std::int64_t m_lastRoundTime = 0;
};

}  // namespace fenn
