#include "gui/widgets/CProgressBar.h"

#include <algorithm>
#include <cmath>

#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

constexpr int kPreferredWidth = 200;
constexpr int kMinWidth = 40;
// With the default factor this gives an 8 pixel bar: visible from across
// the room without looking like a button.
constexpr int kHeight = 20;

}  // namespace

CProgressBar::CProgressBar() = default;

void CProgressBar::setMaximum(int maximum)
{
    maximum = std::max(1, maximum);
    if (maximum == m_maximum) return;
    m_maximum = maximum;
    m_position = std::min(m_position, m_maximum);
    invalidate();
}

void CProgressBar::setPosition(int position)
{
    position = std::clamp(position, 0, m_maximum);
    if (position == m_position) return;
    m_position = position;
    invalidate();
}

void CProgressBar::setBarHeightFactor(double factor)
{
    m_barHeightFactor = std::clamp(factor, 0.05, 1.0);
    invalidate();
}

CSize CProgressBar::computeSize(SizeType type)
{
    switch (type) {
    case SizeType::min:
        return {kMinWidth, kHeight};
    case SizeType::preferred:
        return {kPreferredWidth, kHeight};
    case SizeType::max:
        break;
    }
    return {kUnboundedExtent, kHeight};
}

void CProgressBar::paint(CPainter& painter)
{
    CWindow::paint(painter);
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    const int barHeight = std::clamp(static_cast<int>(std::lround(area.height * m_barHeightFactor)), 2, area.height);
    const CRect track{0, (area.height - barHeight) / 2, area.width, barHeight};
    const double radius = std::min(barHeight / 2.0, static_cast<double>(style.cornerRadius));
    const bool enabled = isEnabled();
    painter.fillRoundedRect(track, radius, enabled ? style.controlPressed : style.borderDisabled);
    const int filled = static_cast<int>(std::lround(track.width * getFraction()));
    if (filled <= 0) return;
    // The fill is the track's shape cut off at the position, so that a short
    // fill keeps the track's round left end instead of becoming a small pill.
    const CPainter::CSaved saved = painter.save();
    painter.clip({track.x, track.y, filled, track.height});
    const CColor fill = enabled ? style.accent : style.accent.mixedWith(style.windowBackground, 0.6);
    painter.fillRoundedRect(track, radius, fill);
}

}  // namespace fenn::gui
