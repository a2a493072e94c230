#include "gui/widgets/CSliderBar.h"

#include <algorithm>
#include <cmath>

#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

constexpr int kThumbSize = 18;
// The lane the thumb runs in leaves room for the thumb's shadow.
constexpr int kLaneExtent = 24;
// Tick marks: 4 pixels long, 1 pixel from the lane and 3 from the edge.
constexpr int kTickArea = 8;
constexpr int kTickLength = 4;
// Closer tick marks than this blur into a grey band; then none are drawn.
constexpr double kMinTickDistance = 3.0;
constexpr int kPreferredLength = 160;
constexpr int kMinLength = 3 * kThumbSize;
// The accent dot in the thumb, and the dot under the pointer.
constexpr int kDotSize = 8;
constexpr int kHoveredDotSize = 10;
// A grab this close to the thumb takes the thumb rather than paging.
constexpr int kThumbGrabMargin = 2;

}  // namespace

CSliderBar::CSliderBar(Orientation orientation) : m_orientation(orientation)
{
    setFocusable(true);
}

void CSliderBar::setOrientation(Orientation orientation)
{
    if (orientation == m_orientation) return;
    m_orientation = orientation;
    invalidate();
    invalidateLayout();
}

void CSliderBar::setMaxPosition(int maximum)
{
    m_maximum = std::max(1, maximum);
    m_position = snap(m_position);
    invalidate();
}

void CSliderBar::setStepSize(int step)
{
    m_step = std::max(1, step);
    m_position = snap(m_position);
    invalidate();
}

void CSliderBar::setTickMarkDelta(int delta)
{
    const bool hadTicks = m_tickDelta > 0;
    m_tickDelta = std::max(0, delta);
    invalidate();
    if (hadTicks != (m_tickDelta > 0)) invalidateLayout();
}

void CSliderBar::setBarHeightFactor(double factor)
{
    m_barHeightFactor = std::clamp(factor, 0.05, 1.0);
    invalidate();
}

void CSliderBar::setPosition(int position)
{
    const int snapped = snap(position);
    if (snapped == m_position) return;
    m_position = snapped;
    invalidate();
}

int CSliderBar::getPageSize() const
{
    return std::max(m_step, m_maximum / 10 / m_step * m_step);
}

int CSliderBar::snap(double position) const
{
    // The maximum stays reachable when it is no multiple of the step.
    if (position >= m_maximum) return m_maximum;
    const double steps = std::round(position / m_step);
    return static_cast<int>(std::clamp(steps * m_step, 0.0, static_cast<double>(m_maximum)));
}

void CSliderBar::changeByUser(int position)
{
    const int snapped = snap(position);
    if (snapped == m_position) return;
    m_position = snapped;
    invalidate();
    notify({Notification::changed, m_position});
}

int CSliderBar::getLength() const
{
    return m_orientation == Orientation::horizontal ? getBounds().width : getBounds().height;
}

int CSliderBar::getTickArea() const
{
    return m_tickDelta > 0 ? kTickArea : 0;
}

int CSliderBar::getLaneExtent() const
{
    const int across = m_orientation == Orientation::horizontal ? getBounds().height : getBounds().width;
    return std::max(kThumbSize, across - getTickArea());
}

CSliderBar::ThumbTravel CSliderBar::getThumbTravel() const
{
    const double length = getLength();
    const double travel = std::max(0.0, length - kThumbSize);
    // Vertical sliders rise: position 0 is at the bottom.
    if (m_orientation == Orientation::horizontal) return {kThumbSize / 2.0, kThumbSize / 2.0 + travel};
    return {length - kThumbSize / 2.0, length - kThumbSize / 2.0 - travel};
}

double CSliderBar::thumbCentreFor(int position) const
{
    const ThumbTravel travel = getThumbTravel();
    const double fraction = static_cast<double>(position) / m_maximum;
    return travel.first + (travel.last - travel.first) * fraction;
}

double CSliderBar::positionAt(double alongTrack) const
{
    const ThumbTravel travel = getThumbTravel();
    const double span = travel.last - travel.first;
    if (std::abs(span) < 1.0) return 0.0;
    const double fraction = (alongTrack - travel.first) / span;
    return std::clamp(fraction, 0.0, 1.0) * m_maximum;
}

double CSliderBar::along(CPoint point) const
{
    return m_orientation == Orientation::horizontal ? point.x : point.y;
}

CRect CSliderBar::getThumbRect() const
{
    const int centre = static_cast<int>(std::lround(thumbCentreFor(m_position)));
    const int laneCentre = getLaneExtent() / 2;
    if (m_orientation == Orientation::horizontal)
        return {centre - kThumbSize / 2, laneCentre - kThumbSize / 2, kThumbSize, kThumbSize};
    return {laneCentre - kThumbSize / 2, centre - kThumbSize / 2, kThumbSize, kThumbSize};
}

bool CSliderBar::isDragging() const
{
    const CFrameWindow* frame = getFrame();
    return m_dragging && frame && frame->getCaptureWindow() == this;
}

CSize CSliderBar::computeSize(SizeType type)
{
    const int across = kLaneExtent + getTickArea();
    const int length = type == SizeType::min         ? kMinLength
                       : type == SizeType::preferred ? kPreferredLength
                                                     : kUnboundedExtent;
    return m_orientation == Orientation::horizontal ? CSize{length, across} : CSize{across, length};
}

void CSliderBar::paint(CPainter& painter)
{
    CWindow::paint(painter);
    const CStyle& style = CStyle::get();
    const bool horizontal = m_orientation == Orientation::horizontal;
    const bool enabled = isEnabled();
    const int lane = getLaneExtent();
    const int length = getLength();

    // The track runs between the thumb's centres at both ends and reaches
    // under the thumb by half its thickness, so its round ends stay hidden.
    const int thickness = std::max(2, static_cast<int>(std::lround(lane * m_barHeightFactor / 2)) * 2);
    const int start = kThumbSize / 2 - thickness / 2;
    const int trackLength = std::max(0, length - kThumbSize + thickness);
    const int crossStart = lane / 2 - thickness / 2;
    const CRect track = horizontal ? CRect{start, crossStart, trackLength, thickness}
                                   : CRect{crossStart, start, thickness, trackLength};
    painter.fillRoundedRect(track, thickness / 2.0, enabled ? style.controlPressed : style.borderDisabled);

    const int centre = static_cast<int>(std::lround(thumbCentreFor(m_position)));
    const CRect filled = horizontal ? CRect{track.x, track.y, centre - track.x, track.height}
                                    : CRect{track.x, centre, track.width, track.bottom() - centre};
    {
        const CPainter::CSaved saved = painter.save();
        painter.clip(filled);
        painter.fillRoundedRect(track, thickness / 2.0,
                                enabled ? style.accent : style.accent.mixedWith(style.windowBackground, 0.6));
    }

    if (m_tickDelta > 0) {
        const double spacing = static_cast<double>(length - kThumbSize) * m_tickDelta / m_maximum;
        if (spacing >= kMinTickDistance) {
            const CColor tick = enabled ? style.borderHover : style.borderDisabled;
            // 64-bit steps: a maximum near the largest int must not wrap the loop.
            for (std::int64_t position = 0; position <= m_maximum; position += m_tickDelta) {
                const int at = static_cast<int>(std::floor(thumbCentreFor(static_cast<int>(position))));
                if (horizontal) {
                    painter.fillRect({at, lane + 1, 1, kTickLength}, tick);
                } else {
                    painter.fillRect({lane + 1, at, kTickLength, 1}, tick);
                }
            }
        }
    }

    const CRect thumb = getThumbRect();
    const bool dragging = isDragging();
    const bool hovered = enabled && (m_thumbHovered || dragging);
    if (enabled && !dragging) painter.drawShadow(thumb, kThumbSize / 2.0, 2, style.shadow);
    painter.fillRoundedRect(thumb, kThumbSize / 2.0, enabled ? style.controlBackground : style.controlDisabled);
    const CColor border = !enabled   ? style.borderDisabled
                          : dragging ? style.accent
                          : hovered  ? style.borderHover
                                     : style.border;
    painter.strokeRoundedRect(thumb, kThumbSize / 2.0, border);
    const int dot = hovered && !dragging ? kHoveredDotSize : kDotSize;
    const CRect dotRect{thumb.x + (kThumbSize - dot) / 2, thumb.y + (kThumbSize - dot) / 2, dot, dot};
    painter.fillRoundedRect(dotRect, dot / 2.0,
                            !enabled   ? style.borderDisabled
                            : dragging ? style.accentPressed
                                       : style.accent);
}

bool CSliderBar::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    const CRect thumb =
        getThumbRect().inset(-kThumbGrabMargin, -kThumbGrabMargin, -kThumbGrabMargin, -kThumbGrabMargin);
    if (thumb.contains(event.position)) {
        m_dragging = true;
        m_grabOffset = along(event.position) - thumbCentreFor(m_position);
        if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
        invalidate();
        return true;
    }
    // A press on the track moves a page toward the press, but not past it.
    const int target = snap(positionAt(along(event.position)));
    if (target > m_position) {
        changeByUser(std::min(m_position + getPageSize(), target));
    } else if (target < m_position) {
        changeByUser(std::max(m_position - getPageSize(), target));
    }
    return true;
}

bool CSliderBar::onMouseMove(const CMouseEvent& event)
{
    if (isDragging()) {
        changeByUser(snap(positionAt(along(event.position) - m_grabOffset)));
        return true;
    }
    const bool overThumb = getThumbRect().contains(event.position);
    if (overThumb != m_thumbHovered) {
        m_thumbHovered = overThumb;
        invalidate();
    }
    return true;
}

bool CSliderBar::onMouseUp(const CMouseEvent& event)
{
    if (event.button != MouseButton::left || !m_dragging) return false;
    const bool captured = isDragging();
    m_dragging = false;
    if (captured) getFrame()->releaseCapture();
    m_thumbHovered = getThumbRect().contains(event.position);
    invalidate();
    return true;
}

void CSliderBar::onMouseLeave()
{
    if (!m_thumbHovered) return;
    m_thumbHovered = false;
    invalidate();
}

bool CSliderBar::onKeyDown(const CKeyEvent& event)
{
    if (event.modifiers != modifierNone) return false;
    switch (event.key) {
    case Key::left:
    case Key::down:
        changeByUser(m_position - m_step);
        return true;
    case Key::right:
    case Key::up:
        changeByUser(m_position + m_step);
        return true;
    case Key::pageDown:
        changeByUser(m_position - getPageSize());
        return true;
    case Key::pageUp:
        changeByUser(m_position + getPageSize());
        return true;
    case Key::home:
        changeByUser(0);
        return true;
    case Key::end:
        changeByUser(m_maximum);
        return true;
    default:
        return false;
    }
}

}  // namespace fenn::gui
