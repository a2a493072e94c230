#pragma once

#include <functional>

#include "foundation/CObject.h"

namespace tbtest {

// Runs a piece of test code when the event loop gets to it: how a test
// answers a modal frame whose loop it has just started.
class LaterAction : public fenn::CObject, public virtual fenn::IAction
{
public:
    explicit LaterAction(std::function<void()> work) : m_work(std::move(work)) {}
    void execute() override { m_work(); }

private:
    std::function<void()> m_work;
};

}  // namespace tbtest
