#include "gui/image/CAnimation.h"

#include "foundation/CObjectError.h"

namespace fenn::gui {

CAnimation::CAnimation(P<IImage> firstFrame, int delay, int loopCount)
{
    addFrame(std::move(firstFrame), delay);
    setLoopCount(loopCount);
}

void CAnimation::addFrame(P<IImage> frame, int delay)
{
    if (!frame) throw CInvalidArgError(this, "addFrame", "frame");
    if (delay < 0) throw CInvalidArgError(this, "addFrame", "delay");
    m_frames.push_back({std::move(frame), delay});
}

void CAnimation::setLoopCount(int loopCount)
{
    if (loopCount < 0) throw CInvalidArgError(this, "setLoopCount", "loopCount");
    m_loopCount = loopCount;
}

P<IImage> CAnimation::getFrame(int index) const
{
    return frameAt(index, "getFrame").image;
}

int CAnimation::getDelay(int index) const
{
    return frameAt(index, "getDelay").delay;
}

const CAnimation::Frame& CAnimation::frameAt(int index, const char* method) const
{
    if (index < 0 || index >= getFrameCount()) throw CInvalidArgError(this, method, "index");
    return m_frames[static_cast<std::size_t>(index)];
}

}  // namespace fenn::gui
