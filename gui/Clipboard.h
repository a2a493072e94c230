#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn::gui {

// The desktop's clipboard for text. The window system installs its own;
// until then (and in tests without a display) a clipboard in memory serves.
// GUI thread.
class IClipboard : public virtual IBase
{
public:
    virtual String getText() = 0;
    virtual void setText(const String& text) = 0;
};

P<IClipboard> getClipboard();
// Null puts the clipboard in memory back.
void setClipboard(P<IClipboard> clipboard);

}  // namespace fenn::gui
