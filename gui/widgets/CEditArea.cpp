#include "gui/widgets/CEditArea.h"

#include <algorithm>

#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// The scroll strip is narrow and drawn inside the border; the text keeps
// clear of it so that wrapping does not change when the thumb appears.
constexpr int kStripWidth = 10;
constexpr int kThumbWidth = 6;
constexpr int kMinThumbHeight = 20;
constexpr int kVerticalPadding = 6;
// Lines scrolled per notch of the wheel.
constexpr int kWheelLines = 3;
constexpr int kPreferredLines = 4;
constexpr int kPreferredWidth = 240;

}  // namespace

CEditArea::CEditArea() : CTextEditWindow(TextLines::multiple) {}

CEditArea::CEditArea(const String& text) : CEditArea()
{
    setText(text);
}

CSize CEditArea::computeSize(SizeType type)
{
    const int lineHeight = getFont()->getLineHeight();
    switch (type) {
    case SizeType::min:
        return {kStripWidth * 6, lineHeight + 2 * kVerticalPadding};
    case SizeType::max:
        return {kUnboundedExtent, kUnboundedExtent};
    default:
        return {kPreferredWidth, kPreferredLines * lineHeight + 2 * kVerticalPadding};
    }
}

CRect CEditArea::getTextArea() const
{
    return getClientRect().inset(CStyle::get().padding, kVerticalPadding, kStripWidth + 4, kVerticalPadding);
}

CPoint CEditArea::getLayoutOrigin() const
{
    const CRect area = getTextArea();
    return {area.x, area.y - m_scrollY};
}

void CEditArea::configureLayout(CTextLayout& layout) const
{
    layout.setWidth(std::max(1, getTextArea().width), TextWrap::wrap);
}

int CEditArea::getMaxScrollY() const
{
    return std::max(0, getTextLayout().getSize().height - getTextArea().height);
}

void CEditArea::setScrollY(int scroll)
{
    scroll = std::clamp(scroll, 0, getMaxScrollY());
    if (scroll == m_scrollY) return;
    m_scrollY = scroll;
    invalidate();
}

void CEditArea::scrollToCaret()
{
    const CRect area = getTextArea();
    if (area.height <= 0) return;
    const CRect caret = getLayoutCaretLine();
    int scroll = m_scrollY;
    if (caret.y < scroll) scroll = caret.y;
    if (caret.bottom() > scroll + area.height) scroll = caret.bottom() - area.height;
    setScrollY(scroll);
    // A text that got shorter may leave the view past its end.
    setScrollY(m_scrollY);
}

int CEditArea::linesPerPage() const
{
    return std::max(1, getTextArea().height / std::max(1, getFont()->getLineHeight()) - 1);
}

bool CEditArea::onKeyDown(const CKeyEvent& event)
{
    const std::uint32_t modifiers = event.modifiers;
    const CaretMove move = (modifiers & modifierShift) ? CaretMove::extend : CaretMove::move;
    if ((modifiers & (modifierControl | modifierAlt)) == 0) {
        const int page = linesPerPage();
        switch (event.key) {
        case Key::up:
            moveByLines(-1, move);
            return true;
        case Key::down:
            moveByLines(1, move);
            return true;
        case Key::pageUp:
            setScrollY(m_scrollY - page * getFont()->getLineHeight());
            moveByLines(-page, move);
            return true;
        case Key::pageDown:
            setScrollY(m_scrollY + page * getFont()->getLineHeight());
            moveByLines(page, move);
            return true;
        case Key::enter:
            if (isReadOnly()) return false;
            if (model().type("\n")) userEdited();
            return true;
        default:
            break;
        }
    }
    return CTextEditWindow::onKeyDown(event);
}

bool CEditArea::onWheel(const CWheelEvent& event)
{
    if (event.deltaY == 0 || getMaxScrollY() == 0) return false;
    setScrollY(m_scrollY + event.deltaY * kWheelLines * getFont()->getLineHeight());
    return true;
}

CRect CEditArea::getScrollStrip() const
{
    const CRect client = getClientRect();
    return {client.right() - kStripWidth - 2, 3, kStripWidth, std::max(0, client.height - 6)};
}

CRect CEditArea::getThumbRect() const
{
    const int maxScroll = getMaxScrollY();
    if (maxScroll == 0) return {};
    const CRect strip = getScrollStrip();
    const int content = getTextLayout().getSize().height;
    const int height =
        std::clamp(strip.height * getTextArea().height / std::max(1, content), kMinThumbHeight, strip.height);
    const int top = strip.y + (strip.height - height) * m_scrollY / maxScroll;
    return {strip.x + (kStripWidth - kThumbWidth) / 2, top, kThumbWidth, height};
}

void CEditArea::paint(CPainter& painter)
{
    CTextEditWindow::paint(painter);
    const CRect thumb = getThumbRect();
    if (thumb.isEmpty()) return;
    const CStyle& style = CStyle::get();
    const CColor color = !isEnabled()                    ? style.borderDisabled
                         : m_thumbDragged || isHovered() ? style.borderHover
                                                         : style.border;
    painter.fillRoundedRect(thumb, kThumbWidth / 2.0, color);
}

bool CEditArea::onMouseDown(const CMouseEvent& event)
{
    if (event.button == MouseButton::left && getMaxScrollY() > 0 && getScrollStrip().contains(event.position)) {
        const CRect thumb = getThumbRect();
        // A press beside the thumb first moves the thumb's middle there.
        if (event.position.y < thumb.y || event.position.y >= thumb.bottom()) {
            const CRect strip = getScrollStrip();
            const int travel = std::max(1, strip.height - thumb.height);
            setScrollY((event.position.y - strip.y - thumb.height / 2) * getMaxScrollY() / travel);
        }
        m_thumbDragged = true;
        m_dragStartY = event.position.y;
        m_dragStartScroll = m_scrollY;
        if (CFrameWindow* frame = getFrame()) frame->captureMouse(this);
        invalidate();
        return true;
    }
    return CTextEditWindow::onMouseDown(event);
}

bool CEditArea::onMouseMove(const CMouseEvent& event)
{
    if (!m_thumbDragged) return CTextEditWindow::onMouseMove(event);
    const int travel = std::max(1, getScrollStrip().height - getThumbRect().height);
    setScrollY(m_dragStartScroll + (event.position.y - m_dragStartY) * getMaxScrollY() / travel);
    return true;
}

bool CEditArea::onMouseUp(const CMouseEvent& event)
{
    if (!m_thumbDragged) return CTextEditWindow::onMouseUp(event);
    m_thumbDragged = false;
    if (CFrameWindow* frame = getFrame(); frame && frame->getCaptureWindow() == this) frame->releaseCapture();
    invalidate();
    return true;
}

}  // namespace fenn::gui
