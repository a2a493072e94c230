#include "gui/CWindow.h"

#include <algorithm>

#include "foundation/CObjectError.h"
#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/layout/CGUISizeLimits.h"

namespace fenn::gui {

CWindow::CWindow() : m_properties(make<CValueList>()), m_listeners(make<TFrailArray<IWindowListener>>()) {}

CWindow::~CWindow()
{
    for (const P<CWindow>& child : m_children) child->m_parent = nullptr;
}

void CWindow::addChild(const P<CWindow>& child)
{
    if (!child) throw CInvalidArgError(this, "addChild", "child");
    if (child->m_parent == this) return;
    if (child->m_parent) child->m_parent->removeChild(child.get());
    m_children.push_back(child);
    child->setParent(this);
    child->invalidate();
    invalidateLayout();
}

void CWindow::removeChild(CWindow* child)
{
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [child](const P<CWindow>& entry) { return entry.get() == child; });
    if (found == m_children.end()) return;
    const P<CWindow> keep = *found;
    keep->invalidate();
    if (CFrameWindow* frame = getFrame()) frame->windowDetached(keep.get());
    m_children.erase(found);
    keep->setParent(nullptr);
    invalidateLayout();
}

void CWindow::setParent(CWindow* parent)
{
    m_parent = parent;
    frameChanged();
}

void CWindow::frameChanged()
{
    onFrameChanged();
    for (const P<CWindow>& child : m_children) child->frameChanged();
}

CWindow* CWindow::findWindow(const String& id)
{
    if (m_id.equals(id)) return this;
    for (const P<CWindow>& child : m_children) {
        if (CWindow* found = child->findWindow(id)) return found;
    }
    return nullptr;
}

CFrameWindow* CWindow::getFrame() const
{
    const CWindow* window = this;
    while (window->m_parent) window = window->m_parent;
    return dynamic_cast<CFrameWindow*>(const_cast<CWindow*>(window));
}

void CWindow::setText(const String& text)
{
    if (m_text.equals(text)) return;
    m_text = text;
    invalidate();
    invalidateLayout();
}

void CWindow::setVisible(bool visible)
{
    if (m_visible == visible) return;
    if (!visible) {
        invalidate();
        if (CFrameWindow* frame = getFrame()) frame->windowHidden(this);
    }
    m_visible = visible;
    if (visible) invalidate();
    invalidateLayout();
}

bool CWindow::isShowing() const
{
    for (const CWindow* window = this; window; window = window->m_parent) {
        if (!window->m_visible) return false;
    }
    return true;
}

bool CWindow::isEnabled() const
{
    for (const CWindow* window = this; window; window = window->m_parent) {
        if (!window->m_enabled) return false;
    }
    return true;
}

void CWindow::setProperty(const String& name, const String& value)
{
    m_properties->setString(name, value);
    onPropertyChanged(name);
}

void CWindow::setEnabled(bool enabled)
{
    if (m_enabled == enabled) return;
    m_enabled = enabled;
    if (!enabled) {
        if (CFrameWindow* frame = getFrame()) frame->windowHidden(this);
    }
    invalidate();
}

void CWindow::setBackColor(std::optional<CColor> color)
{
    m_backColor = color;
    invalidate();
}

void CWindow::setTextColor(std::optional<CColor> color)
{
    m_textColor = color;
    invalidate();
}

void CWindow::setTextAlign(TextAlign align)
{
    m_textAlign = align;
    invalidate();
}

void CWindow::setFont(P<CFont> font)
{
    m_font = std::move(font);
    invalidate();
    invalidateLayout();
}

P<CFont> CWindow::getFont() const
{
    return m_font ? m_font : CStyle::get().font;
}

void CWindow::setBounds(const CRect& bounds)
{
    if (bounds == m_bounds) return;
    const bool resized = bounds.size() != m_bounds.size();
    invalidate();
    m_bounds = bounds;
    invalidate();
    if (resized) {
        onResized();
        if (CFrameWindow* frame = getFrame()) frame->requestLayout();
        notify({Notification::resized});
    }
}

CPoint CWindow::getFrameOrigin() const
{
    CPoint origin;
    for (const CWindow* window = this; window->m_parent; window = window->m_parent) {
        const CPoint offset = window->m_parent->getContentOffset();
        origin.x += window->m_bounds.x + offset.x;
        origin.y += window->m_bounds.y + offset.y;
    }
    return origin;
}

CRect CWindow::toFrame(const CRect& local) const
{
    const CPoint origin = getFrameOrigin();
    return local.translated(origin.x, origin.y);
}

CPoint CWindow::fromFrame(CPoint framePoint) const
{
    const CPoint origin = getFrameOrigin();
    return {framePoint.x - origin.x, framePoint.y - origin.y};
}

void CWindow::setLayout(P<ILayout> layout)
{
    m_layout = std::move(layout);
    if (m_layout) m_layout->setLayoutHolder(this);
    invalidateLayout();
}

void CWindow::setSizeLimits(P<CGUISizeLimits> limits)
{
    m_sizeLimits = std::move(limits);
    invalidateLayout();
}

void CWindow::setLayoutMargins(int left, int top, int right, int bottom)
{
    m_marginLeft = left;
    m_marginTop = top;
    m_marginRight = right;
    m_marginBottom = bottom;
    invalidateLayout();
}

CSize CWindow::computeSize(SizeType type)
{
    if (!m_layout) {
        if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
        return {};
    }
    const CSize inner = m_layout->getSize(type);
    const auto add = [](int extent, int margins) {
        return extent >= kUnboundedExtent ? kUnboundedExtent : extent + margins;
    };
    return {add(inner.width, m_marginLeft + m_marginRight), add(inner.height, m_marginTop + m_marginBottom)};
}

CSize CWindow::getSize(SizeType type)
{
    CSize size = computeSize(type);
    if (m_sizeLimits) size = m_sizeLimits->apply(type, size);
    return size;
}

void CWindow::invalidateLayout()
{
    if (m_layoutHolder) m_layoutHolder->invalidateLayout();
    if (CFrameWindow* frame = getFrame()) frame->requestLayout();
}

void CWindow::layoutChildren()
{
    if (!m_layout) return;
    m_layout->setBounds(getClientRect().inset(m_marginLeft, m_marginTop, m_marginRight, m_marginBottom));
    m_layout->doLayout();
}

void CWindow::invalidate()
{
    invalidate(getClientRect());
}

void CWindow::invalidate(const CRect& local)
{
    if (!isShowing()) return;
    if (CFrameWindow* frame = getFrame()) frame->invalidateFrameRect(toFrame(local));
}

bool CWindow::hasFocus() const
{
    const CFrameWindow* frame = getFrame();
    return frame && frame->getFocusWindow() == this;
}

void CWindow::setFocus()
{
    if (CFrameWindow* frame = getFrame()) frame->setFocusWindow(this);
}

bool CWindow::isHovered() const
{
    const CFrameWindow* frame = getFrame();
    return frame && frame->getHoverWindow() == this;
}

bool CWindow::isPressed() const
{
    const CFrameWindow* frame = getFrame();
    return frame && frame->getPressedWindow() == this && frame->getHoverWindow() == this;
}

void CWindow::notify(const CNotification& notification)
{
    // Listeners may drop the last other reference to this window.
    const P<CWindow> keep(this);
    m_listeners->notify([&](IWindowListener& listener) { listener.windowNotified(*this, notification); });
}

CWindow* CWindow::hitTest(CPoint point)
{
    if (!m_visible || !getClientRect().contains(point)) return nullptr;
    const CPoint offset = getContentOffset();
    for (auto child = m_children.rbegin(); child != m_children.rend(); ++child) {
        const CRect bounds = (*child)->m_bounds;
        if (CWindow* hit = (*child)->hitTest({point.x - bounds.x - offset.x, point.y - bounds.y - offset.y}))
            return hit;
    }
    return this;
}

void CWindow::paint(CPainter& painter)
{
    if (m_backColor) painter.fillRect(getClientRect(), *m_backColor);
}

void CWindow::paintOverlay(CPainter&) {}

}  // namespace fenn::gui
