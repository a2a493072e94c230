#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "foundation/CObject.h"
#include "foundation/IThread.h"

namespace fenn {

// A std::thread behind IThread. Releasing the last reference waits for the
// action to end; when that release happens on the thread itself (the action
// held the last reference), the thread is let go instead.
class CThreadImpl : public CObject, public virtual IThread
{
public:
    // Starts the thread; throws CError when the system gives none.
    explicit CThreadImpl(P<IAction> body);
    ~CThreadImpl() override;

    void join() override;
    bool waitFor(std::int32_t milliseconds) override;
    bool isRunning() const override;
    P<CException> getError() const override;

private:
    // What the thread and its owner share; it outlives whichever ends last.
    class CState : public CObject
    {
    public:
        mutable std::mutex mutex;
        std::condition_variable finishedChanged;
        bool finished = false;
        P<CException> error;
    };

    static void run(P<CState> state, P<IAction> body);

    P<CState> m_state;
    std::thread m_thread;
};

// The shared starter of threads.
class CThreadManager : public CObject, public virtual IThreadManager
{
public:
    static P<CThreadManager> getInstance();

    P<IThread> createThread(P<IAction> body) override;
    std::uint64_t getCurrentThreadId() const override;
};

}  // namespace fenn
