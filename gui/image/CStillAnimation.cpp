#include "gui/image/CStillAnimation.h"

#include "foundation/CObjectError.h"

namespace fenn::gui {

CStillAnimation::CStillAnimation(P<IImage> image) : m_image(std::move(image))
{
    if (!m_image) throw CInvalidArgError(this, "CStillAnimation", "image");
}

P<IImage> CStillAnimation::getFrame(int index) const
{
    checkIndex(index, "getFrame");
    return m_image;
}

int CStillAnimation::getDelay(int index) const
{
    checkIndex(index, "getDelay");
    return 0;
}

void CStillAnimation::checkIndex(int index, const char* method) const
{
    if (index != 0) throw CInvalidArgError(this, method, "index");
}

}  // namespace fenn::gui
