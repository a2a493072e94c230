#include "gui/CImageConversionError.h"

#include "foundation/IStringLocalizer.h"
#include "gui/GuiTexts.h"

namespace fenn::gui {

CImageConversionError::CImageConversionError(const String& details)
    : CError(String(), details.isEmpty() ? localize(texts::imageConversionNoDetails)
                                         : localize(texts::imageConversion).replace("%DETAILS%", details))
{
}

}  // namespace fenn::gui

namespace fenn::gui::format::mng {

CMNGError::CMNGError(const String& description) : CError("MNG Error", description) {}

}  // namespace fenn::gui::format::mng
