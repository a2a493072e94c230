#include "foundation/CSystemExitAction.h"

#include "foundation/ISystem.h"

namespace fenn {

void CSystemExitAction::execute()
{
    if (P<ISystem> system = getSystem()) system->endMessageLoop();
}

}  // namespace fenn
