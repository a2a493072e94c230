#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "gui/image/IAnimation.h"

namespace fenn::gui {

// An animation built frame by frame, for decoders of animated formats and for
// skins that cut frames from a strip. It starts with its first frame, so it is
// never empty. Null frames and negative delays or loop counts throw
// CInvalidArgError. Ownership and threads as IAnimation; it is built before it
// is handed on.
class CAnimation : public CObject, public virtual IAnimation
{
public:
    CAnimation(P<IImage> firstFrame, int delay, int loopCount = 0);

    void addFrame(P<IImage> frame, int delay);
    void setLoopCount(int loopCount);

    int getFrameCount() const override { return static_cast<int>(m_frames.size()); }
    P<IImage> getFrame(int index) const override;
    int getDelay(int index) const override;
    int getLoopCount() const override { return m_loopCount; }

private:
    struct Frame
    {
        P<IImage> image;
        int delay = 0;
    };

    const Frame& frameAt(int index, const char* method) const;

    std::vector<Frame> m_frames;
    int m_loopCount = 0;
};

}  // namespace fenn::gui
