#pragma once

#include "foundation/IBase.h"
#include "foundation/String.h"
#include "gui/Geometry.h"

namespace fenn::gui {

// Measures text in one font: what a window offers so that sizes given as
// text (a label's size, "heightchars" lines) follow the font and the
// language. GUI thread.
class ITextMetrics : public virtual IBase
{
public:
    // The extent of text laid out in lines at its "\n" breaks, without wrapping.
    virtual CSize measureText(const String& text) const = 0;
    // The distance from one line's top to the next's.
    virtual int getLineHeight() const = 0;
};

}  // namespace fenn::gui
