#include "gui/widgets/CSplitPanel.h"

#include <algorithm>

#include "foundation/CObjectError.h"
#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// The divider's room between the panes: wide enough to grab, thin enough
// not to look like a gap.
constexpr int kDividerThickness = 7;
// The grip in the middle of the divider: a short rounded bar.
constexpr int kGripLength = 28;
constexpr int kGripThickness = 3;

}  // namespace

Orientation parseOrientation(const String& text)
{
    if (text.equalsNoCase("horz")) return Orientation::horizontal;
    if (text.equalsNoCase("vert")) return Orientation::vertical;
    throw CInvalidArgError(nullptr, "parseOrientation", "text");
}

CSplitPanel::CSplitPanel(Orientation orientation) : m_orientation(orientation) {}

void CSplitPanel::setOrientation(Orientation orientation)
{
    if (orientation == m_orientation) return;
    m_orientation = orientation;
    m_position = -1;
    invalidateLayout();
    invalidate();
}

void CSplitPanel::setPanes(const P<CWindow>& first, const P<CWindow>& second)
{
    // The panes are the first children: the rest move behind the new ones.
    std::vector<P<CWindow>> others;
    for (std::size_t i = 0; i < getChildren().size(); ++i) {
        if (i >= 2) others.push_back(getChildren()[i]);
    }
    while (!getChildren().empty()) removeChild(getChildren().front().get());
    for (const P<CWindow>& pane : {first, second}) {
        if (pane) addChild(pane);
    }
    for (const P<CWindow>& other : others) addChild(other);
    invalidateLayout();
}

CWindow* CSplitPanel::getPane(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= std::min<std::size_t>(2, getChildren().size())) return nullptr;
    return getChildren()[static_cast<std::size_t>(index)].get();
}

void CSplitPanel::setMinimumPaneSizes(int first, int second)
{
    m_minimum[0] = std::max(0, first);
    m_minimum[1] = std::max(0, second);
    invalidateLayout();
}

int CSplitPanel::minimumOf(int index) const
{
    CWindow* pane = getPane(index);
    const int own = pane ? along(pane->getSize(SizeType::min)) : 0;
    return std::max(own, m_minimum[index]);
}

int CSplitPanel::clampPosition(int position) const
{
    const int total = along(getClientRect().size());
    const int highest = total - kDividerThickness - minimumOf(1);
    // When both minimums do not fit, the first pane keeps its own.
    return std::max(0, std::min(std::max(position, minimumOf(0)), std::max(highest, minimumOf(0))));
}

void CSplitPanel::setDividerPosition(int position)
{
    const int clamped = getClientRect().isEmpty() ? std::max(0, position) : clampPosition(position);
    if (clamped == m_position) return;
    m_position = clamped;
    invalidateLayout();
    invalidate();
}

CRect CSplitPanel::getDividerRect() const
{
    if (!getPane(1) || m_position < 0) return {};
    const CRect client = getClientRect();
    if (m_orientation == Orientation::horizontal) return {m_position, 0, kDividerThickness, client.height};
    return {0, m_position, client.width, kDividerThickness};
}

void CSplitPanel::setBackImage(P<IImage> image, CNinePatch::Margins margins)
{
    m_backImage = image ? make<CNinePatch>(std::move(image), margins) : nullptr;
    invalidate();
}

void CSplitPanel::setCenterImage(P<IImage> image)
{
    m_centerImage = std::move(image);
    invalidate();
}

CSize CSplitPanel::computeSize(SizeType type)
{
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    int length = 0;
    int breadth = 0;
    for (int index = 0; index < 2; ++index) {
        CWindow* pane = getPane(index);
        if (!pane) continue;
        const CSize size = pane->getSize(type);
        length += std::max(along(size), m_minimum[index]);
        breadth = std::max(breadth, across(size));
    }
    if (getPane(1)) length += kDividerThickness;
    return m_orientation == Orientation::horizontal ? CSize{length, breadth} : CSize{breadth, length};
}

void CSplitPanel::layoutChildren()
{
    const CRect client = getClientRect();
    CWindow* first = getPane(0);
    CWindow* second = getPane(1);
    if (!first) return;
    if (!second) {
        first->setBounds(client);
        return;
    }
    if (m_position < 0) m_position = along(first->getSize(SizeType::preferred));
    m_position = clampPosition(m_position);
    const int secondStart = m_position + kDividerThickness;
    if (m_orientation == Orientation::horizontal) {
        first->setBounds({0, 0, m_position, client.height});
        second->setBounds({secondStart, 0, std::max(0, client.width - secondStart), client.height});
    } else {
        first->setBounds({0, 0, client.width, m_position});
        second->setBounds({0, secondStart, client.width, std::max(0, client.height - secondStart)});
    }
}

void CSplitPanel::paint(CPainter& painter)
{
    CWindow::paint(painter);
    const CRect divider = getDividerRect();
    if (divider.isEmpty()) return;
    const CStyle& style = CStyle::get();
    const bool active = m_hovered || m_dragging;
    if (m_backImage) {
        m_backImage->draw(painter.getCairo(), divider);
    } else {
        const CPoint middle{divider.x + divider.width / 2, divider.y + divider.height / 2};
        if (m_orientation == Orientation::horizontal) {
            painter.drawLine({middle.x, divider.y}, {middle.x, divider.bottom()}, active ? style.accent : style.border);
        } else {
            painter.drawLine({divider.x, middle.y}, {divider.right(), middle.y}, active ? style.accent : style.border);
        }
    }
    if (m_centerImage) {
        const CSize size = m_centerImage->getSize();
        painter.drawSurface(m_centerImage->getSurface(),
                            {divider.x + (divider.width - size.width) / 2,
                             divider.y + (divider.height - size.height) / 2, size.width, size.height});
        return;
    }
    if (m_backImage) return;
    const CRect grip = m_orientation == Orientation::horizontal
                           ? CRect{divider.x + (divider.width - kGripThickness) / 2,
                                   divider.y + (divider.height - kGripLength) / 2, kGripThickness, kGripLength}
                           : CRect{divider.x + (divider.width - kGripLength) / 2,
                                   divider.y + (divider.height - kGripThickness) / 2, kGripLength, kGripThickness};
    painter.fillRoundedRect(grip, kGripThickness / 2.0, active ? style.accent : style.borderHover);
}

void CSplitPanel::onMouseLeave()
{
    if (!m_hovered) return;
    m_hovered = false;
    invalidate(getDividerRect());
}

bool CSplitPanel::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left || !getDividerRect().contains(event.position)) return false;
    m_dragging = true;
    m_grabOffset = along(event.position) - m_position;
    if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
    invalidate(getDividerRect());
    return true;
}

bool CSplitPanel::onMouseUp(const CMouseEvent& event)
{
    if (event.button != MouseButton::left || !m_dragging) return false;
    m_dragging = false;
    if (CFrameWindow* frame = getFrame(); frame && frame->getCaptureWindow() == this) frame->releaseCapture();
    invalidate(getDividerRect());
    onMouseMove(event);
    return true;
}

bool CSplitPanel::onMouseMove(const CMouseEvent& event)
{
    if (m_dragging) {
        const int before = m_position;
        invalidate(getDividerRect());
        setDividerPosition(along(event.position) - m_grabOffset);
        if (m_position != before) notify({Notification::changed});
        return true;
    }
    const bool hovered = isHovered() && getDividerRect().contains(event.position);
    if (hovered != m_hovered) {
        m_hovered = hovered;
        invalidate(getDividerRect());
    }
    return false;
}

}  // namespace fenn::gui
