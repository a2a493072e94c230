#include "gui/widgets/CImageDisplay.h"

#include <algorithm>
#include <cmath>

#include "gui/CPainter.h"

namespace fenn::gui {

namespace {

// Disabled images show at this strength over the background.
constexpr double kDisabledAlpha = 0.4;
// A display may shrink to this before the image becomes a smudge.
constexpr int kMinExtent = 8;

}  // namespace

CRect fitCentred(CSize image, const CRect& area)
{
    if (area.isEmpty() || image.width <= 0 || image.height <= 0) return {};
    const double scale =
        std::min(static_cast<double>(area.width) / image.width, static_cast<double>(area.height) / image.height);
    const int width = std::clamp(static_cast<int>(std::lround(image.width * scale)), 1, area.width);
    const int height = std::clamp(static_cast<int>(std::lround(image.height * scale)), 1, area.height);
    return {area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height};
}

CImageDisplay::CImageDisplay() = default;

CImageDisplay::CImageDisplay(P<IImage> image) : m_image(std::move(image)) {}

void CImageDisplay::setImage(P<IImage> image)
{
    const bool resized = !image || !m_image || image->getSize() != m_image->getSize();
    m_image = std::move(image);
    invalidate();
    if (resized) invalidateLayout();
}

CRect CImageDisplay::getImageRect() const
{
    return m_image ? fitCentred(m_image->getSize(), getClientRect()) : CRect{};
}

CSize CImageDisplay::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    const CSize image = m_image ? m_image->getSize() : CSize{};
    if (type == SizeType::min) return {std::min(kMinExtent, image.width), std::min(kMinExtent, image.height)};
    return image;
}

void CImageDisplay::paint(CPainter& painter)
{
    CWindow::paint(painter);
    if (!m_image) return;
    painter.drawSurface(m_image->getSurface(), getImageRect(), isEnabled() ? 1.0 : kDisabledAlpha);
}

}  // namespace fenn::gui
