#include "app/COperationManager.h"

#include <cmath>
#include <vector>

#include "foundation/CObjectError.h"

namespace tbx {

namespace {

template <class Table> std::vector<fenn::P<IOperation>> childrenInTableOrder(const Table& table)
{
    std::vector<fenn::P<IOperation>> children;
    table.forEach([&children](IOperation*, const auto& child) { children.push_back(child.operation); });
    return children;
}

}  // namespace

COperationManager::~COperationManager()
{
    removeAll();
}

void COperationManager::add(fenn::P<IOperation> operation, double weight)
{
    if (!operation) throw fenn::CInvalidArgError(this, "add", "operation");
    // A total weight of 0 would divide by zero in the progress formula.
    if (!(weight > 0.0) || !std::isfinite(weight)) throw fenn::CInvalidArgError(this, "add", "weight");
    IOperation* key = operation.get();
    if (Child* existing = m_children.find(key)) {
        existing->weight = weight;
        return;
    }
    m_children.put(key, Child{operation, weight});
    operation->addListener(this);
}

void COperationManager::remove(IOperation* operation)
{
    Child* child = m_children.find(operation);
    if (child == nullptr) return;
    const fenn::P<IOperation> removed = child->operation;
    m_children.remove(operation);
    removed->removeListener(this);
}

void COperationManager::removeAll()
{
    for (const fenn::P<IOperation>& child : childrenInTableOrder(m_children)) remove(child.get());
}

bool COperationManager::run()
{
    if (m_running) return false;
    m_cancelled = false;
    m_total = 0.0;
    m_done = 0.0;
    m_progress = 0.0;
    m_running = true;
    m_children.forEach([this](IOperation*, const Child& child) { m_total += child.weight; });
    // The children are taken as they are now: the GUI runs during the job,
    // and what it adds or removes belongs to the next run.
    for (const fenn::P<IOperation>& child : childrenInTableOrder(m_children)) {
        if (m_cancelled) break;
        const Child* entry = m_children.find(child.get());
        if (entry == nullptr) continue;
        const double weight = entry->weight;
        m_current = child;
        notifyProgress();
        // The manager stays marked running: a failed run cannot be repeated.
        if (!child->run()) return false;
        m_done += weight / m_total;
        notifyProgress();
    }
    m_current = nullptr;
    m_running = false;
    return true;
}

void COperationManager::cancel()
{
    m_cancelled = true;
    for (const fenn::P<IOperation>& child : childrenInTableOrder(m_children)) child->cancel();
}

fenn::String COperationManager::getText()
{
    return m_current ? m_current->getText() : fenn::String();
}

bool COperationManager::updateProgress(IOperation* operation)
{
    const Child* child = m_children.find(operation);
    if (!m_running || child == nullptr) return false;
    // Not clamped: a child that reports more than 1.0 shows as such.
    m_progress = child->weight / m_total * operation->getProgress() + m_done;
    return true;
}

void COperationManager::onOperationProgress(IOperation* operation)
{
    if (updateProgress(operation)) notifyProgress();
}

}  // namespace tbx
