#include "gui/widgets/CCanvas.h"

#include <cairo.h>

#include <cmath>
#include <memory>

#include "gui/CFrameWindow.h"
#include "gui/CPainter.h"

namespace fenn::gui {

CCanvas::CCanvas() = default;

CCanvas::CCanvas(PaintFunction paintFunction) : m_paintFunction(std::move(paintFunction)) {}

CCanvas::~CCanvas()
{
    dropBuffer();
}

void CCanvas::setPaintFunction(PaintFunction paintFunction)
{
    m_paintFunction = std::move(paintFunction);
    redraw();
}

void CCanvas::setDoubleBuffered(bool doubleBuffered)
{
    m_doubleBuffered = doubleBuffered;
    redraw();
}

void CCanvas::redraw()
{
    dropBuffer();
    invalidate();
}

void CCanvas::dropBuffer()
{
    if (m_buffer) cairo_surface_destroy(m_buffer);
    m_buffer = nullptr;
}

void CCanvas::onResized()
{
    dropBuffer();
}

void CCanvas::onFrameChanged()
{
    dropBuffer();
}

void CCanvas::paintCanvas(CPainter& painter, CSize size)
{
    CWindow::paint(painter);
    if (m_paintFunction) m_paintFunction(painter, size);
}

void CCanvas::paint(CPainter& painter)
{
    const CRect area = getClientRect();
    const CFrameWindow* frame = getFrame();
    if (!m_doubleBuffered || !frame || area.isEmpty()) {
        paintCanvas(painter, area.size());
        return;
    }
    const double scale = frame->getScaleFactor();
    if (m_buffer && scale != m_bufferScale) dropBuffer();
    if (!m_buffer) {
        // The copy has the frame's device pixels, so showing it is a 1:1 copy.
        const auto width = static_cast<int>(std::ceil(area.width * scale));
        const auto height = static_cast<int>(std::ceil(area.height * scale));
        std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> buffer(
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), &cairo_surface_destroy);
        {
            std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cr(cairo_create(buffer.get()), &cairo_destroy);
            cairo_scale(cr.get(), scale, scale);
            CPainter bufferPainter(cr.get());
            paintCanvas(bufferPainter, area.size());
        }
        cairo_surface_flush(buffer.get());
        m_buffer = buffer.release();
        m_bufferScale = scale;
    }
    painter.drawSurface(m_buffer, area);
}

}  // namespace fenn::gui
