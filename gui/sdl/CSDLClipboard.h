#pragma once

#include "foundation/CObject.h"
#include "gui/Clipboard.h"

namespace fenn::gui::sdl {

// The desktop's clipboard through SDL (X11 selections or Wayland's data
// device). GUI thread.
class CSDLClipboard : public CObject, public virtual IClipboard
{
public:
    String getText() override;
    void setText(const String& text) override;
};

}  // namespace fenn::gui::sdl
