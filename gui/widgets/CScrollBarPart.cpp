#include "gui/widgets/CScrollBarPart.h"

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// A thumb never gets shorter than this, so that it stays easy to grab in
// a list of a million rows.
constexpr int kMinThumbLength = 24;
// Thickness of the thumb at rest and under the pointer; the track itself
// is CStyle::scrollBarWidth thick.
constexpr int kThinThumb = 6;
constexpr int kWideThumb = 8;

}  // namespace

CScrollBarPart::CScrollBarPart(Orientation orientation) : m_orientation(orientation) {}

void CScrollBarPart::setRange(int contentLength, int viewLength)
{
    m_contentLength = std::max(0, contentLength);
    m_viewLength = std::max(0, viewLength);
    m_position = clampPosition(m_position);
}

int CScrollBarPart::getMaxPosition() const
{
    return std::max(0, m_contentLength - m_viewLength);
}

int CScrollBarPart::clampPosition(int position) const
{
    return std::clamp(position, 0, getMaxPosition());
}

bool CScrollBarPart::setPosition(int position)
{
    position = clampPosition(position);
    if (position == m_position) return false;
    m_position = position;
    return true;
}

int CScrollBarPart::thumbLength() const
{
    const int length = trackLength();
    if (m_contentLength <= 0) return length;
    const long long proportional = static_cast<long long>(length) * m_viewLength / m_contentLength;
    return std::clamp(static_cast<int>(proportional), std::min(kMinThumbLength, length), length);
}

CRect CScrollBarPart::getThumbRect() const
{
    const int length = thumbLength();
    const int room = trackLength() - length;
    const int maxPosition = getMaxPosition();
    // Rounded both here and in drag, so that a dragged thumb stays under the pointer.
    const int offset =
        maxPosition > 0 ? static_cast<int>((2LL * room * m_position + maxPosition) / (2LL * maxPosition)) : 0;
    if (m_orientation == Orientation::vertical) return {m_track.x, m_track.y + offset, m_track.width, length};
    return {m_track.x + offset, m_track.y, length, m_track.height};
}

bool CScrollBarPart::setHovered(bool hovered)
{
    if (hovered == m_hovered) return false;
    m_hovered = hovered;
    return true;
}

int CScrollBarPart::press(CPoint point)
{
    const CRect thumb = getThumbRect();
    const int thumbStart = m_orientation == Orientation::vertical ? thumb.y : thumb.x;
    const int at = along(point);
    if (thumb.contains(point)) {
        m_dragging = true;
        m_grabOffset = at - thumbStart;
        return m_position;
    }
    // A page is the visible length: what was at the bottom comes to the top.
    const int page = std::max(1, m_viewLength);
    return clampPosition(at < thumbStart ? m_position - page : m_position + page);
}

int CScrollBarPart::drag(CPoint point) const
{
    const int room = trackLength() - thumbLength();
    if (room <= 0) return m_position;
    const int thumbStart = along(point) - m_grabOffset - trackStart();
    if (thumbStart <= 0) return 0;
    return clampPosition(static_cast<int>((2LL * thumbStart * getMaxPosition() + room) / (2LL * room)));
}

void CScrollBarPart::paint(CPainter& painter, CColor trackColor) const
{
    if (!isNeeded() || m_track.isEmpty()) return;
    const CStyle& style = CStyle::get();
    const bool active = m_hovered || m_dragging;
    painter.fillRect(m_track, trackColor);
    if (active) painter.fillRect(m_track, style.controlPressed.withAlpha(110));
    const int thickness = active ? kWideThumb : kThinThumb;
    const CRect thumb = getThumbRect();
    CRect pill;
    if (m_orientation == Orientation::vertical) {
        const int inset = (m_track.width - thickness) / 2;
        pill = {thumb.x + inset, thumb.y + 2, thickness, thumb.height - 4};
    } else {
        const int inset = (m_track.height - thickness) / 2;
        pill = {thumb.x + 2, thumb.y + inset, thumb.width - 4, thickness};
    }
    const CColor thumbColor = m_dragging ? style.textSecondary : m_hovered ? style.borderHover : style.border;
    painter.fillRoundedRect(pill, thickness / 2.0, thumbColor);
}

}  // namespace fenn::gui
