#include "foundation/CWorkerManager.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/CObjectError.h"
#include "foundation/CTimerManager.h"

namespace fenn {

std::int32_t CWorkerManager::greatestCommonDivisor(std::int32_t a, std::int32_t b)
{
    if (a == 0 || b == 0) return 1;
    std::int64_t x = std::llabs(a);
    std::int64_t y = std::llabs(b);
    while (y != 0) x = std::exchange(y, x % y);
    return static_cast<std::int32_t>(std::min<std::int64_t>(x, INT32_MAX));
}

CWorkerManager::~CWorkerManager()
{
    m_workers.notify([this](IWorker& worker) { worker.detached(this); });
}

void CWorkerManager::addWorker(IWorker* worker)
{
    add(worker, Hold::strong);
}

void CWorkerManager::addFrailWorker(IWorker* worker)
{
    add(worker, Hold::frail);
}

void CWorkerManager::add(IWorker* worker, Hold hold)
{
    if (worker == nullptr) throw CInvalidArgError(this, "addWorker", "worker");
    if (hold == Hold::strong)
        m_workers.add(worker);
    else
        m_workers.addFrail(worker);
    worker->attached(this);
    computeInterval();
}

void CWorkerManager::removeWorker(IWorker* worker)
{
    if (worker == nullptr || !contains(worker)) return;
    // The list may hold the last count; the worker must live through detached.
    const P<IWorker> keep(worker);
    worker->detached(this);
    m_workers.remove(worker);
    computeInterval();
}

bool CWorkerManager::contains(IWorker* worker) const
{
    bool found = false;
    m_workers.notify([&](IWorker& entry) { found = found || &entry == worker; });
    return found;
}

void CWorkerManager::workIntervalChanged(IWorkerManager* /*changed*/)
{
    computeInterval();
}

void CWorkerManager::attached(IWorkerManager* manager)
{
    if (manager != nullptr) addIntervalListener(manager);
}

void CWorkerManager::detached(IWorkerManager* manager)
{
    if (manager != nullptr) removeIntervalListener(manager);
}

void CWorkerManager::computeInterval()
{
    std::int32_t interval = 0;
    const P<IFrailEnum> workers = m_workers.getEnum();
    while (workers->hasMoreElements()) {
        PFrail<IBase> entry;
        workers->next(entry);
        auto* worker = dynamic_cast<IWorker*>(entry.get());
        const std::int32_t period = worker ? worker->getWorkInterval() : 0;
        if (period == 0) continue;
        interval = interval == 0 ? period : greatestCommonDivisor(interval, period);
        if (interval < 2) {
            interval = 1;
            break;
        }
    }
    m_interval = interval;
    m_intervalListeners.notify([this](IWorkerManager& listener) { listener.workIntervalChanged(this); });
}

void CWorkerManager::doWork()
{
    m_lastRoundTime = CTimerManager::getInstance()->getCurrentTime();
    // The walk goes by index from the last worker down and checks the index
    // against the count at each step, because a worker may remove itself or
    // others. A removal below the current index shifts workers that already
    // ran into the indices still to come; the list of those that ran keeps
    // them from running twice.
    std::vector<const IWorker*> done;
    m_workers.notify([&done](IWorker& worker) {
        if (std::find(done.begin(), done.end(), &worker) != done.end()) return;
        done.push_back(&worker);
        const P<IWorker> held(&worker);
        held->doWork();
    });
}

}  // namespace fenn
