#pragma once

#include "foundation/CObject.h"
#include "foundation/IBase.h"

namespace fenn {

// Ends the application: asks the platform object to end its loop.
class CSystemExitAction : public CObject, public virtual IAction
{
public:
    void execute() override;
};

}  // namespace fenn
