#include "gui/CStyle.h"

namespace fenn::gui {

const CStyle& CStyle::get()
{
    static const CStyle style;
    return style;
}

}  // namespace fenn::gui
