#pragma once

#include <condition_variable>
#include <mutex>

#include "foundation/CObject.h"
#include "foundation/ISignal.h"

namespace fenn {

// A signal made of a flag, a mutex and a condition variable.
class CSignalImpl : public CObject, public virtual ISignal
{
public:
    CSignalImpl(SignalReset reset, bool initiallySet) : m_manual(reset == SignalReset::manual), m_set(initiallySet) {}

    void set() override;
    void reset() override;
    bool isSet() const override;
    void wait() override;
    bool waitFor(std::int32_t milliseconds) override;

private:
    // Takes the flag for the waiter that saw it.
    bool consume();

    const bool m_manual;
    bool m_set;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
};

// The shared maker of signals; any thread may call it.
class CSignalFactory : public CObject, public virtual ISignalFactory
{
public:
    static P<CSignalFactory> getInstance();

    P<ISignal> createSignal(SignalReset reset = SignalReset::automatic, bool initiallySet = false) override;
};

}  // namespace fenn
