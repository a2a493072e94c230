#include "gui/widgets/CImageButton.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CImageDisplay.h"

namespace fenn::gui {

namespace {

// Room around the image inside the hover background.
constexpr int kPadding = 6;
constexpr double kDisabledAlpha = 0.4;

}  // namespace

CImageButton::CImageButton() = default;

CImageButton::CImageButton(P<IImage> image) : m_image(std::move(image)) {}

void CImageButton::setImage(P<IImage> image)
{
    m_image = std::move(image);
    invalidate();
    invalidateLayout();
}

CSize CImageButton::computeSize(SizeType type)
{
    if (!m_image) return CButton::computeSize(type);
    const CSize image = m_image->getSize();
    const CSize natural{image.width + 2 * kPadding, image.height + 2 * kPadding};
    // The image may shrink to half its size where room is short.
    if (type == SizeType::min) return {image.width / 2 + 2 * kPadding, image.height / 2 + 2 * kPadding};
    return natural;
}

void CImageButton::paint(CPainter& painter)
{
    if (!m_image) {
        CButton::paint(painter);
        return;
    }
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const bool enabled = isEnabled();
    if (getBackColor()) painter.fillRoundedRect(area, style.cornerRadius, *getBackColor());
    if (enabled && isPressed()) {
        painter.fillRoundedRect(area, style.cornerRadius, style.controlPressed);
        painter.strokeRoundedRect(area, style.cornerRadius, style.borderHover);
    } else if (enabled && isHovered()) {
        painter.fillRoundedRect(area, style.cornerRadius, style.controlHover);
        painter.strokeRoundedRect(area, style.cornerRadius, style.border);
    }
    // The image sits at its own size in the middle, shrunk only to fit, and
    // moves down a pixel while pressed, as if pushed in.
    const CRect room = area.inset(kPadding, kPadding, kPadding, kPadding);
    const CSize image = m_image->getSize();
    CRect dest = image.width <= room.width && image.height <= room.height
                     ? CRect{room.x + (room.width - image.width) / 2, room.y + (room.height - image.height) / 2,
                             image.width, image.height}
                     : fitCentred(image, room);
    if (enabled && isPressed()) dest = dest.translated(0, 1);
    painter.drawSurface(m_image->getSurface(), dest, enabled ? 1.0 : kDisabledAlpha);
}

}  // namespace fenn::gui
