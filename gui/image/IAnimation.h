#pragma once

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// A sequence of images, each shown for its delay; the skin engine times its
// animations from the delays. A still image is an animation of one frame
// with delay 0 and loop count 1. Owned by whoever holds the P<IAnimation>;
// used on the GUI thread.
class IAnimation : public virtual IBase
{
public:
    // At least 1.
    virtual int getFrameCount() const = 0;
    // Never null; an index outside 0 to getFrameCount() - 1 throws
    // CInvalidArgError, as it does for getDelay.
    virtual P<IImage> getFrame(int index) const = 0;
    // Milliseconds the frame stays before the next one. 0 means it stays
    // until something else changes the picture.
    virtual int getDelay(int index) const = 0;
    // How many times the sequence plays; 0 means forever.
    virtual int getLoopCount() const = 0;
};

}  // namespace fenn::gui
