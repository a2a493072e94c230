#include "gui/widgets/CScrollPanel.h"

#include <algorithm>

#include "foundation/CObjectError.h"
#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// The wheel moves this many lines a notch.
constexpr int kWheelLines = 3;
// The smallest view a scrolling direction shrinks to: room for a thumb.
constexpr int kMinViewExtent = 48;
// Room kept around a window scrolled into view, so that its focus ring shows.
constexpr int kRevealMargin = 4;

}  // namespace

ScrollDirections parseScrollDirections(const String& text)
{
    if (text.equalsNoCase("none")) return ScrollDirections::none;
    if (text.equalsNoCase("horz")) return ScrollDirections::horizontal;
    if (text.equalsNoCase("vert")) return ScrollDirections::vertical;
    if (text.equalsNoCase("both")) return ScrollDirections::both;
    throw CInvalidArgError(nullptr, "parseScrollDirections", "text");
}

CScrollPanel::CScrollPanel()
{
    setFocusable(true);
}

void CScrollPanel::setScrollDirections(ScrollDirections directions)
{
    if (directions == m_directions) return;
    m_directions = directions;
    invalidateLayout();
    invalidate();
}

void CScrollPanel::setContent(const P<CWindow>& window)
{
    if (window == m_content) return;
    if (m_content) {
        m_content->setLayoutHolder(nullptr);
        removeChild(m_content.get());
    }
    m_content = window;
    if (m_content) {
        addChild(m_content);
        m_content->setLayoutHolder(this);
    }
    invalidateLayout();
}

CWindow* CScrollPanel::getContent() const
{
    if (m_content) return m_content.get();
    if (getLayout() || getChildren().empty()) return nullptr;
    return getChildren().front().get();
}

bool CScrollPanel::scrollsHorizontally() const
{
    return m_directions == ScrollDirections::horizontal || m_directions == ScrollDirections::both;
}

bool CScrollPanel::scrollsVertically() const
{
    return m_directions == ScrollDirections::vertical || m_directions == ScrollDirections::both;
}

CSize CScrollPanel::contentSize(SizeType type)
{
    if (CWindow* content = getContent()) return content->getSize(type);
    if (const P<ILayout> layout = getLayout()) return layout->getSize(type);
    return {};
}

int CScrollPanel::lineStep() const
{
    return std::max(1, getFont()->getLineHeight());
}

CPoint CScrollPanel::getScrollPosition() const
{
    return {m_horizontal.getPosition(), m_vertical.getPosition()};
}

CPoint CScrollPanel::getContentOffset() const
{
    return {m_viewport.x - m_horizontal.getPosition(), m_viewport.y - m_vertical.getPosition()};
}

const CScrollBarPart& CScrollPanel::getBar(Orientation orientation) const
{
    return orientation == Orientation::horizontal ? m_horizontal : m_vertical;
}

void CScrollPanel::setScrollPosition(CPoint position)
{
    const bool movedX = m_horizontal.setPosition(position.x);
    const bool movedY = m_vertical.setPosition(position.y);
    // The whole content moves: there is nothing smaller to repaint.
    if (movedX || movedY) invalidate();
}

void CScrollPanel::scrollBy(int dx, int dy)
{
    const CPoint position = getScrollPosition();
    setScrollPosition({position.x + dx, position.y + dy});
}

void CScrollPanel::scrollTo(const CRect& rect)
{
    const auto reveal = [](int position, int start, int length, int view) {
        if (start + length > position + view) position = start + length - view;
        if (start < position) position = start;
        return position;
    };
    const CPoint position = getScrollPosition();
    setScrollPosition({reveal(position.x, rect.x, rect.width, m_viewport.width),
                       reveal(position.y, rect.y, rect.height, m_viewport.height)});
}

void CScrollPanel::scrollToWindow(const CWindow& descendant)
{
    // Frame coordinates less the panel's own origin and content offset are
    // content coordinates, however deep the window sits.
    const CRect inFrame = descendant.toFrame(descendant.getClientRect());
    const CPoint origin = getFrameOrigin();
    const CPoint offset = getContentOffset();
    const CRect inContent = inFrame.translated(-origin.x - offset.x, -origin.y - offset.y);
    scrollTo(inContent.inset(-kRevealMargin, -kRevealMargin, -kRevealMargin, -kRevealMargin));
}

CSize CScrollPanel::computeSize(SizeType type)
{
    const CSize content = contentSize(type);
    const int bar = CStyle::get().scrollBarWidth;
    CSize size = content;
    if (scrollsHorizontally()) {
        if (type == SizeType::min) size.width = kMinViewExtent;
        if (type == SizeType::min && !scrollsVertically()) size.height += bar;
    }
    if (scrollsVertically()) {
        if (type == SizeType::min) size.height = kMinViewExtent;
        if (type == SizeType::min && !scrollsHorizontally()) size.width += bar;
    }
    if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
    return size;
}

void CScrollPanel::layoutChildren()
{
    const CRect client = getClientRect();
    const CSize wanted = contentSize(SizeType::preferred);
    const int bar = CStyle::get().scrollBarWidth;
    bool needVertical = scrollsVertically() && wanted.height > client.height;
    const bool needHorizontal = scrollsHorizontally() && wanted.width > client.width - (needVertical ? bar : 0);
    // The horizontal bar takes height, which may make the vertical one needed after all.
    if (needHorizontal && !needVertical && scrollsVertically() && wanted.height > client.height - bar)
        needVertical = true;
    m_viewport = client.inset(0, 0, needVertical ? bar : 0, needHorizontal ? bar : 0);
    m_contentSize = {scrollsHorizontally() ? std::max(wanted.width, m_viewport.width) : m_viewport.width,
                     scrollsVertically() ? std::max(wanted.height, m_viewport.height) : m_viewport.height};

    const CPoint before = getScrollPosition();
    m_horizontal.setTrack(needHorizontal ? CRect{0, m_viewport.bottom(), m_viewport.width, bar} : CRect{});
    m_vertical.setTrack(needVertical ? CRect{m_viewport.right(), 0, bar, m_viewport.height} : CRect{});
    m_horizontal.setRange(m_contentSize.width, m_viewport.width);
    m_vertical.setRange(m_contentSize.height, m_viewport.height);
    if (getScrollPosition() != before) invalidate();

    const CRect contentBounds{0, 0, m_contentSize.width, m_contentSize.height};
    if (CWindow* content = getContent()) {
        content->setBounds(contentBounds);
    } else if (const P<ILayout> layout = getLayout()) {
        layout->setBounds(contentBounds);
        layout->doLayout();
    }
}

CWindow* CScrollPanel::hitTest(CPoint point)
{
    if (!isVisible() || !getClientRect().contains(point)) return nullptr;
    // The bars and the corner between them lie over the content.
    if (!m_viewport.contains(point)) return this;
    return CWindow::hitTest(point);
}

void CScrollPanel::paintOverlay(CPainter& painter)
{
    const CColor track = backColorOr(CStyle::get().windowBackground);
    m_horizontal.paint(painter, track);
    m_vertical.paint(painter, track);
    if (m_horizontal.isNeeded() && m_vertical.isNeeded() && !m_horizontal.getTrack().isEmpty() &&
        !m_vertical.getTrack().isEmpty()) {
        painter.fillRect({m_viewport.right(), m_viewport.bottom(), getClientRect().width - m_viewport.right(),
                          getClientRect().height - m_viewport.bottom()},
                         track);
    }
}

CScrollBarPart* CScrollPanel::barAt(CPoint point)
{
    if (m_vertical.contains(point)) return &m_vertical;
    if (m_horizontal.contains(point)) return &m_horizontal;
    return nullptr;
}

void CScrollPanel::invalidateBars()
{
    if (!m_vertical.getTrack().isEmpty()) invalidate(m_vertical.getTrack());
    if (!m_horizontal.getTrack().isEmpty()) invalidate(m_horizontal.getTrack());
}

void CScrollPanel::onMouseLeave()
{
    if (m_vertical.setHovered(false) | m_horizontal.setHovered(false)) invalidateBars();
}

bool CScrollPanel::onMouseDown(const CMouseEvent& event)
{
    if (event.button != MouseButton::left) return false;
    CScrollBarPart* bar = barAt(event.position);
    if (!bar) return false;
    const int position = bar->press(event.position);
    if (bar == &m_vertical) {
        setScrollPosition({m_horizontal.getPosition(), position});
    } else {
        setScrollPosition({position, m_vertical.getPosition()});
    }
    if (bar->isDragging()) {
        m_dragged = bar;
        if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
        invalidate(bar->getTrack());
    }
    return true;
}

bool CScrollPanel::onMouseUp(const CMouseEvent& event)
{
    if (event.button != MouseButton::left || !m_dragged) return false;
    m_dragged->release();
    invalidate(m_dragged->getTrack());
    m_dragged = nullptr;
    if (CFrameWindow* frame = getFrame(); frame && frame->getCaptureWindow() == this) frame->releaseCapture();
    onMouseMove(event);
    return true;
}

bool CScrollPanel::onMouseMove(const CMouseEvent& event)
{
    if (m_dragged) {
        const int position = m_dragged->drag(event.position);
        if (m_dragged == &m_vertical) {
            setScrollPosition({m_horizontal.getPosition(), position});
        } else {
            setScrollPosition({position, m_vertical.getPosition()});
        }
        return true;
    }
    // The pointer may be over a child (which gets the move) or the panel itself.
    const bool overPanel = isHovered();
    const bool changed = m_vertical.setHovered(overPanel && m_vertical.contains(event.position)) |
                         m_horizontal.setHovered(overPanel && m_horizontal.contains(event.position));
    if (changed) invalidateBars();
    return false;
}

bool CScrollPanel::onWheel(const CWheelEvent& event)
{
    int dx = event.deltaX;
    int dy = event.deltaY;
    if (event.modifiers & modifierShift) {
        dx += dy;
        dy = 0;
    }
    const int step = kWheelLines * lineStep();
    const CPoint before = getScrollPosition();
    scrollBy(dx * step, dy * step);
    // A panel at its end passes the wheel on to an outer one.
    return getScrollPosition() != before;
}

bool CScrollPanel::onKeyDown(const CKeyEvent& event)
{
    if (event.modifiers & (modifierAlt | modifierShift)) return false;
    const int line = lineStep();
    const int page = std::max(line, m_viewport.height - line);
    const bool vertical = m_vertical.isNeeded();
    const bool horizontal = m_horizontal.isNeeded();
    const CPoint before = getScrollPosition();
    switch (event.key) {
    case Key::up:
        scrollBy(0, -line);
        break;
    case Key::down:
        scrollBy(0, line);
        break;
    case Key::left:
        scrollBy(-line, 0);
        break;
    case Key::right:
        scrollBy(line, 0);
        break;
    case Key::pageUp:
        scrollBy(0, -page);
        break;
    case Key::pageDown:
        scrollBy(0, page);
        break;
    // Home and End run along the vertical bar, or along the horizontal one when that is all there is.
    case Key::home:
        setScrollPosition(vertical || !horizontal ? CPoint{before.x, 0} : CPoint{0, before.y});
        break;
    case Key::end:
        setScrollPosition(vertical || !horizontal ? CPoint{before.x, m_vertical.getMaxPosition()}
                                                  : CPoint{m_horizontal.getMaxPosition(), before.y});
        break;
    default:
        return false;
    }
    const bool alongUsedBar = (event.key == Key::left || event.key == Key::right) ? horizontal
                              : (event.key == Key::home || event.key == Key::end) ? vertical || horizontal
                                                                                  : vertical;
    return alongUsedBar || getScrollPosition() != before;
}

void CScrollPanel::onDescendantFocusIn(CWindow& window)
{
    // Only the keyboard moves the focus out of sight; a click lands on
    // something that shows already and should not make it jump.
    const CFrameWindow* frame = getFrame();
    if (frame && frame->isFocusVisible()) scrollToWindow(window);
}

}  // namespace fenn::gui
