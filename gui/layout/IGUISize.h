#pragma once

#include "foundation/IBase.h"
#include "gui/Geometry.h"

namespace fenn::gui {

// A size worked out when it is asked for: the extent of a text in a window's
// font, or a plain number of pixels. Size limits and fixed layout items hold
// one and ask it at every layout pass, so a size given as text follows the
// font and the language. GUI thread.
class IGUISize : public virtual IBase
{
public:
    virtual CSize getSize() const = 0;
};

}  // namespace fenn::gui
