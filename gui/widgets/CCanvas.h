#pragma once

#include <functional>

#include "gui/CWindow.h"

typedef struct _cairo_surface cairo_surface_t;

namespace fenn::gui {

// A window whose drawing is done by a paint function or by a subclass
// (paintCanvas). Double buffered, it keeps its drawing in an image surface
// of its own at the frame's resolution and paints by copying it, until
// redraw, a new size or a new scale factor drops the copy; repaints for
// other reasons (a pop-up closing over it, a neighbour's hover) then cost a
// copy, not a drawing. Children are painted over the drawing as usual.
// Owned by its parent window; GUI thread.
class CCanvas : public CWindow
{
public:
    // Draws the canvas: the painter is in the canvas's coordinates, size is
    // its client size.
    using PaintFunction = std::function<void(CPainter& painter, CSize size)>;

    CCanvas();
    explicit CCanvas(PaintFunction paintFunction);
    ~CCanvas() override;

    void setPaintFunction(PaintFunction paintFunction);
    void setDoubleBuffered(bool doubleBuffered);
    bool isDoubleBuffered() const { return m_doubleBuffered; }
    // Drops the kept drawing and repaints: call it when what the canvas
    // shows has changed.
    void redraw();

    void paint(CPainter& painter) override;

protected:
    // The drawing: the back colour if one is set, then the paint function.
    virtual void paintCanvas(CPainter& painter, CSize size);
    void onResized() override;
    void onFrameChanged() override;

private:
    void dropBuffer();

    PaintFunction m_paintFunction;
    bool m_doubleBuffered = false;
    cairo_surface_t* m_buffer = nullptr;
    double m_bufferScale = 0.0;
};

}  // namespace fenn::gui
