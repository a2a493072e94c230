#pragma once

#include "foundation/CObject.h"
#include "gui/image/IAnimation.h"

namespace fenn::gui {

// A still image seen as an animation: one frame, delay 0, played once, so a
// widget that shows animations shows stills the same way without a timer.
// A null image throws CInvalidArgError. Ownership and threads as IAnimation.
class CStillAnimation : public CObject, public virtual IAnimation
{
public:
    explicit CStillAnimation(P<IImage> image);

    int getFrameCount() const override { return 1; }
    P<IImage> getFrame(int index) const override;
    int getDelay(int index) const override;
    int getLoopCount() const override { return 1; }

private:
    void checkIndex(int index, const char* method) const;

    P<IImage> m_image;
};

}  // namespace fenn::gui
