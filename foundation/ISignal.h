#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/P.h"

namespace fenn {

// What a successful wait does to a signal: an automatic signal lets exactly
// one waiter through and is clear again; a manual one stays set until reset.
enum class SignalReset { automatic, manual };

// A flag that threads wait for. Any thread may set, reset or wait.
class ISignal : public virtual IBase
{
public:
    virtual void set() = 0;
    virtual void reset() = 0;
    virtual bool isSet() const = 0;
    // Waits until the signal is set.
    virtual void wait() = 0;
    // Waits at most the given milliseconds; true when the signal was set.
    virtual bool waitFor(std::int32_t milliseconds) = 0;
};

class ISignalFactory : public virtual IBase
{
public:
    virtual P<ISignal> createSignal(SignalReset reset = SignalReset::automatic, bool initiallySet = false) = 0;
};

}  // namespace fenn
