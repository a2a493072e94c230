#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditArea.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/WidgetRegistration.h"

namespace fenn::gui {

void registerEditWidgets(CWindowSystem& system)
{
    system.registerType("editfield", [] { return P<CWindow>(make<CEditField>()); });
    system.registerType("editarea", [] { return P<CWindow>(make<CEditArea>()); });
    system.registerType("droplist", [] { return P<CWindow>(make<CDropList>()); });
}

}  // namespace fenn::gui
