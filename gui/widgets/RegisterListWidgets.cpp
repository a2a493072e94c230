#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSplitPanel.h"
#include "gui/widgets/WidgetRegistration.h"

namespace fenn::gui {

void registerListWidgets(CWindowSystem& system)
{
    // A cell view from a layout file starts with an empty in-memory model
    // that the application fills or replaces.
    system.registerType("cellview", [] {
        auto view = make<CCellView>();
        view->setModel(make<CCellViewListModel>());
        return P<CWindow>(view);
    });
    system.registerType("scrollpanel", [] { return P<CWindow>(make<CScrollPanel>()); });
    system.registerType("splitpanel", [] { return P<CWindow>(make<CSplitPanel>()); });
}

}  // namespace fenn::gui
