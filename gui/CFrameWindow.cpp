#include "gui/CFrameWindow.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "foundation/CObjectError.h"
#include "foundation/ISystem.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"

namespace fenn::gui {

namespace {

// Beyond this many separate dirty rectangles one rectangle around them all
// is cheaper than walking the tree for each.
constexpr std::size_t kMaxDirtyRects = 16;
// The focus ring stands this far outside the focused window.
constexpr int kFocusRingOffset = 3;
constexpr int kMaxLayoutPasses = 3;

bool touches(const CRect& a, const CRect& b)
{
    return a.x <= b.right() && b.x <= a.right() && a.y <= b.bottom() && b.y <= a.bottom();
}

std::vector<CFrameWindow*>& allFrames()
{
    static std::vector<CFrameWindow*> frames;
    return frames;
}

CFrameWindow::HostFactory& hostFactory()
{
    static CFrameWindow::HostFactory factory;
    return factory;
}

}  // namespace

void CFrameWindow::setHostFactory(HostFactory factory)
{
    hostFactory() = std::move(factory);
}

std::vector<CFrameWindow*> CFrameWindow::getOpenFrames()
{
    std::vector<CFrameWindow*> open;
    for (CFrameWindow* frame : allFrames()) {
        if (frame->isOpen()) open.push_back(frame);
    }
    return open;
}

CFrameWindow::CFrameWindow()
{
    allFrames().push_back(this);
    setVisible(false);
    setBounds({0, 0, 400, 300});
    allocateBuffer();
}

CFrameWindow::~CFrameWindow()
{
    std::erase(allFrames(), this);
    if (m_toolTipTimer) {
        m_toolTipTimer->removeListener(this);
        m_toolTipTimer->stop();
    }
    if (m_host) m_host->detach();
    if (m_buffer) cairo_surface_destroy(m_buffer);
}

void CFrameWindow::setHost(P<IFrameHost> host)
{
    if (m_host) m_host->detach();
    m_host = std::move(host);
    if (!m_host) return;
    m_host->setTitle(getText().c_str());
    m_host->setSize(getBounds().size());
    m_host->updateDecorations();
    if (m_open) m_host->show();
}

void CFrameWindow::setBlank(bool blank)
{
    if (blank == m_blank) return;
    m_blank = blank;
    if (m_host) m_host->updateDecorations();
}

void CFrameWindow::setResizable(bool resizable)
{
    if (resizable == m_resizable) return;
    m_resizable = resizable;
    if (m_host) m_host->updateDecorations();
}

void CFrameWindow::setOpacity(double opacity)
{
    // Not a number is taken as fully opaque, the safe side for a window.
    opacity = std::isnan(opacity) ? 1.0 : std::clamp(opacity, 0.0, 1.0);
    if (opacity == m_opacity) return;
    m_opacity = opacity;
    if (m_host) m_host->updateDecorations();
}

void CFrameWindow::setIcon(P<IImage> icon)
{
    if (icon == m_icon) return;
    m_icon = std::move(icon);
    if (m_host) m_host->updateDecorations();
}

void CFrameWindow::show()
{
    if (!m_host && hostFactory()) setHost(hostFactory()(*this));
    m_open = true;
    setVisible(true);
    if (m_initialFocus) {
        CWindow* initial = m_initialFocus;
        m_initialFocus = nullptr;
        setFocusWindow(initial);
    }
    updateLayout();
    invalidate();
    if (m_host) m_host->show();
}

void CFrameWindow::hide()
{
    if (!m_open) return;
    m_open = false;
    injectMouseLeft();
    if (m_host) m_host->hide();
    setVisible(false);
}

void CFrameWindow::requestClose()
{
    m_closeVetoed = false;
    notify({Notification::closeRequested});
    if (!m_closeVetoed) close();
}

void CFrameWindow::close()
{
    const P<CFrameWindow> keep(this);
    hide();
    notify({Notification::closed});
    if (m_closeAction == CloseAction::exit) {
        if (const P<ISystem> system = getSystem()) system->endMessageLoop();
    }
}

void CFrameWindow::setText(const String& text)
{
    CWindow::setText(text);
    if (m_host) m_host->setTitle(text.c_str());
}

void CFrameWindow::pack()
{
    const CSize size = getSize(SizeType::preferred);
    setBounds({0, 0, std::max(1, size.width), std::max(1, size.height)});
}

void CFrameWindow::setScaleFactor(double scale)
{
    if (scale <= 0.0 || scale == m_scale) return;
    m_scale = scale;
    allocateBuffer();
}

void CFrameWindow::onResized()
{
    allocateBuffer();
    if (m_host) m_host->setSize(getBounds().size());
}

void CFrameWindow::allocateBuffer()
{
    const CRect bounds = getBounds();
    const int width = std::max(1, static_cast<int>(std::ceil(bounds.width * m_scale)));
    const int height = std::max(1, static_cast<int>(std::ceil(bounds.height * m_scale)));
    if (m_buffer && cairo_image_surface_get_width(m_buffer) == width &&
        cairo_image_surface_get_height(m_buffer) == height)
        return;
    if (m_buffer) cairo_surface_destroy(m_buffer);
    m_buffer = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    m_dirty.clear();
    m_dirty.push_back(getClientRect());
    requestLayout();
}

void CFrameWindow::invalidateFrameRect(const CRect& rect)
{
    CRect area = rect.intersected(getClientRect());
    if (area.isEmpty()) return;
    // Rectangles that touch merge, so a region of small changes stays a few
    // rectangles; the merge repeats because a grown rectangle may now touch others.
    bool merged = true;
    while (merged) {
        merged = false;
        for (auto it = m_dirty.begin(); it != m_dirty.end(); ++it) {
            if (touches(*it, area)) {
                area = area.united(*it);
                m_dirty.erase(it);
                merged = true;
                break;
            }
        }
    }
    m_dirty.push_back(area);
    if (m_dirty.size() > kMaxDirtyRects) {
        CRect all;
        for (const CRect& dirty : m_dirty) all = all.united(dirty);
        m_dirty.assign(1, all);
    }
}

void CFrameWindow::captureMouse(CWindow* window)
{
    m_capture = window;
    m_implicitCapture = false;
}

void CFrameWindow::releaseCapture()
{
    m_capture = nullptr;
    m_implicitCapture = false;
}

void CFrameWindow::updateLayout()
{
    // A walk that changes sizes asks for another one: windows whose height
    // follows their width (wrapped text) learn their width in the first.
    // Sizes settle in the second walk; the third is a guard against windows
    // that keep asking.
    for (int pass = 0; pass < kMaxLayoutPasses && m_layoutPending; ++pass) {
        m_layoutPending = false;
        layoutTree(*this);
    }
    m_layoutPending = false;
}

void CFrameWindow::layoutTree(CWindow& window)
{
    window.layoutChildren();
    const std::vector<P<CWindow>> children = window.getChildren();
    for (const P<CWindow>& child : children) {
        if (child->isVisible()) layoutTree(*child);
    }
}

std::vector<CRect> CFrameWindow::updateAndPaint()
{
    updateLayout();
    std::vector<CRect> painted;
    if (m_dirty.empty()) return painted;
    const std::vector<CRect> dirty = std::move(m_dirty);
    m_dirty.clear();
    for (const CRect& rect : dirty) {
        paintRect(rect);
        const int left = static_cast<int>(std::floor(rect.x * m_scale));
        const int top = static_cast<int>(std::floor(rect.y * m_scale));
        const int right = static_cast<int>(std::ceil(rect.right() * m_scale));
        const int bottom = static_cast<int>(std::ceil(rect.bottom() * m_scale));
        painted.push_back({left, top, right - left, bottom - top});
        applyShape(painted.back());
    }
    cairo_surface_flush(m_buffer);
    if (m_host && m_open) m_host->present(painted.data(), static_cast<int>(painted.size()));
    return painted;
}

void CFrameWindow::setShape(const CFrameShape& shape)
{
    m_shape = shape;
    invalidate();
}

namespace {

// Where a frame coordinate falls in a shape image of extent imageExtent:
// the margins map one to one from their edges, the middle is stretched.
int shapeCoordinate(double frame, int frameExtent, int imageExtent, int marginStart, int marginEnd)
{
    if (frame < marginStart) return static_cast<int>(frame);
    if (frame >= frameExtent - marginEnd) return imageExtent - static_cast<int>(std::ceil(frameExtent - frame));
    const int frameMiddle = frameExtent - marginStart - marginEnd;
    const int imageMiddle = imageExtent - marginStart - marginEnd;
    if (frameMiddle <= 0 || imageMiddle <= 0) return marginStart;
    return marginStart + static_cast<int>((frame - marginStart) * imageMiddle / frameMiddle);
}

}  // namespace

// Clears the buffer's pixels outside the shape: SDL's shaped windows are not
// reliable across window managers, so the frame keeps its rectangle and
// leaves what lies outside its outline transparent.
void CFrameWindow::applyShape(const CRect& deviceRect)
{
    if (!m_shape.image) return;
    cairo_surface_flush(m_buffer);
    const int width = cairo_image_surface_get_width(m_buffer);
    const int height = cairo_image_surface_get_height(m_buffer);
    const int stride = cairo_image_surface_get_stride(m_buffer);
    std::uint8_t* data = cairo_image_surface_get_data(m_buffer);
    const CRect area = deviceRect.intersected({0, 0, width, height});
    const IImage& image = *m_shape.image;
    const CSize frameSize = getBounds().size();
    const std::uint32_t threshold = static_cast<std::uint32_t>(std::clamp(m_shape.alphaThreshold, 0, 256));
    for (int y = area.y; y < area.bottom(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        const double frameY = y / m_scale;
        const int imageY = m_shape.adaptToWindowSize ? shapeCoordinate(frameY, frameSize.height, image.getHeight(),
                                                                       m_shape.marginTop, m_shape.marginBottom)
                                                     : static_cast<int>(frameY);
        for (int x = area.x; x < area.right(); ++x) {
            const double frameX = x / m_scale;
            const int imageX = m_shape.adaptToWindowSize ? shapeCoordinate(frameX, frameSize.width, image.getWidth(),
                                                                           m_shape.marginLeft, m_shape.marginRight)
                                                         : static_cast<int>(frameX);
            const bool inside = imageX >= 0 && imageY >= 0 && imageX < image.getWidth() && imageY < image.getHeight() &&
                                (image.getPixel(imageX, imageY) >> 24) >= threshold;
            if (!inside) row[x] = 0;
        }
    }
    cairo_surface_mark_dirty_rectangle(m_buffer, area.x, area.y, area.width, area.height);
}

void CFrameWindow::paintRect(const CRect& rect)
{
    cairo_t* cr = cairo_create(m_buffer);
    cairo_scale(cr, m_scale, m_scale);
    CPainter painter(cr);
    painter.clip(rect);
    paintWindow(*this, painter, {0, 0}, rect);
    paintFocusRing(painter);
    cairo_destroy(cr);
}

void CFrameWindow::paintWindow(CWindow& window, CPainter& painter, CPoint origin, const CRect& clip)
{
    // The painter stays in frame coordinates between windows; each window
    // is painted translated to its origin and clipped to the part of it
    // that its ancestors leave visible.
    const CRect area{origin.x, origin.y, window.getBounds().width, window.getBounds().height};
    const CRect visible = area.intersected(clip);
    if (visible.isEmpty()) return;
    {
        const CPainter::CSaved saved = painter.save();
        painter.clip(visible);
        painter.translate(origin.x, origin.y);
        window.paint(painter);
    }
    const CPoint offset = window.getContentOffset();
    const std::vector<P<CWindow>> children = window.getChildren();
    for (const P<CWindow>& child : children) {
        if (!child->isVisible()) continue;
        const CRect bounds = child->getBounds();
        paintWindow(*child, painter, {origin.x + offset.x + bounds.x, origin.y + offset.y + bounds.y}, visible);
    }
    const CPainter::CSaved saved = painter.save();
    painter.clip(visible);
    painter.translate(origin.x, origin.y);
    window.paintOverlay(painter);
}

CRect CFrameWindow::focusRingRect(CWindow* window) const
{
    const CRect local = window->getClientRect();
    return window->toFrame(local).inset(-kFocusRingOffset, -kFocusRingOffset, -kFocusRingOffset, -kFocusRingOffset);
}

void CFrameWindow::paintFocusRing(CPainter& painter)
{
    if (!m_focusVisible || !m_focus || !m_focus->isShowing() || m_focus == this) return;
    const CStyle& style = CStyle::get();
    painter.strokeRoundedRect(focusRingRect(m_focus), style.cornerRadius + kFocusRingOffset, style.focusRing,
                              style.focusRingWidth);
}

void CFrameWindow::openPopup(const P<CWindow>& popup, const CRect& rect)
{
    closePopup(popup.get());
    // Children are painted in order and hit first from the end, so the last
    // child is on top of the rest.
    addChild(popup);
    popup->setBounds(rect);
    popup->setVisible(true);
    m_popups.push_back(popup);
    requestLayout();
}

void CFrameWindow::closePopup(CWindow* popup)
{
    const auto found = std::find_if(m_popups.begin(), m_popups.end(),
                                    [popup](const P<CWindow>& entry) { return entry.get() == popup; });
    if (found == m_popups.end()) return;
    const P<CWindow> keep = *found;
    m_popups.erase(found);
    removeChild(keep.get());
    keep->notify({Notification::closed});
}

void CFrameWindow::closePopups()
{
    while (!m_popups.empty()) closePopup(m_popups.back().get());
}

bool CFrameWindow::writePNG(const String& path) const
{
    cairo_surface_flush(m_buffer);
    return cairo_surface_write_to_png(m_buffer, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

void CFrameWindow::paint(CPainter& painter)
{
    painter.fillRect(getClientRect(), backColorOr(CStyle::get().windowBackground));
}

}  // namespace fenn::gui
