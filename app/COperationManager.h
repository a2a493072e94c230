#pragma once

#include "app/COperation.h"
#include "foundation/TSimpleHashTable.h"

namespace tbx {

// Runs child operations in turn, each counted with its weight in the
// overall progress. A child whose run fails leaves the manager running and
// unusable: every later run answers false. GUI thread only.
class COperationManager : public COperation, public virtual IOperationListener
{
public:
    ~COperationManager() override;

    // Enters the child with a weight, which must be positive; a child that
    // is there already gets the new weight.
    void add(fenn::P<IOperation> operation, double weight);
    void remove(IOperation* operation);
    void removeAll();

    // Runs the children in table order until one fails or a cancel comes.
    // False when running already or when a child failed; true otherwise,
    // also after a cancel.
    bool run() override;
    // Marks the run cancelled and cancels every child, running or not.
    void cancel() override;
    double getProgress() override { return m_progress; }
    fenn::P<IOperation> getSubOperation() override { return m_current; }
    fenn::String getText() override;

    // overall = weight(child) / total * child's progress + what finished
    // children account for; then the manager's listeners are told.
    void onOperationProgress(IOperation* operation) override;

    bool isRunning() const { return m_running; }
    bool isCancelled() const { return m_cancelled; }

protected:
    // Computes the overall progress for a child's report; false when the
    // report does not belong to a run.
    bool updateProgress(IOperation* operation);

private:
    struct Child
    {
        fenn::P<IOperation> operation;
        double weight;
    };

    fenn::TSimpleHashTable<IOperation*, Child> m_children;
    double m_total = 0.0;
    double m_done = 0.0;
    double m_progress = 0.0;
    bool m_running = false;
    bool m_cancelled = false;
    fenn::P<IOperation> m_current;
};

}  // namespace tbx
