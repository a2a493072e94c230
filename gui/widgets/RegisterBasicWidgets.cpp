#include "gui/widgets/CButton.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CSelectField.h"
#include "gui/widgets/CSelectGroup.h"
#include "gui/widgets/CSliderBar.h"
#include "gui/widgets/CTabView.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"
#include "gui/widgets/WidgetRegistration.h"

namespace fenn::gui {

namespace {

template <class T> void registerWidget(CWindowSystem& system, const char* type)
{
    system.registerType(type, [] { return P<CWindow>(make<T>()); });
}

}  // namespace

void registerBasicWidgets(CWindowSystem& system)
{
    registerWidget<CButton>(system, "button");
    registerWidget<CCheckBox>(system, "checkbox");
    registerWidget<CSelectField>(system, "selectfield");
    registerWidget<CSelectGroup>(system, "selectgroup");
    registerWidget<CTextField>(system, "textfield");
    registerWidget<CTextArea>(system, "textarea");
    registerWidget<CProgressBar>(system, "progressbar");
    registerWidget<CSliderBar>(system, "sliderbar");
    registerWidget<CImageButton>(system, "imagebutton");
    registerWidget<CImageDisplay>(system, "imagedisplay");
    registerWidget<CCanvas>(system, "canvas");
    registerWidget<CTabView>(system, "tabview");
}

}  // namespace fenn::gui
