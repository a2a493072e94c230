#pragma once

#include "foundation/IBase.h"
#include "gui/Geometry.h"

typedef struct _cairo_surface cairo_surface_t;

namespace fenn::gui {

class CWindow;

// A window that owns a double buffer which the windows inside it paint
// into, and whose events it hands on to them: the frame. Core windows of
// a skin reach their frame through this interface. GUI thread.
class IVirtualWindowParent : public virtual IBase
{
public:
    // The frame's buffer: a cairo ARGB32 image surface in device pixels.
    virtual cairo_surface_t* getBuffer() const = 0;
    // Device pixels per layout pixel.
    virtual double getScaleFactor() const = 0;
    // Marks a rectangle in the frame's coordinates for the next repaint.
    virtual void invalidateFrameRect(const CRect& rect) = 0;
    // Sends all mouse events to window until releaseCapture (a drag).
    virtual void captureMouse(CWindow* window) = 0;
    virtual void releaseCapture() = 0;
};

// The platform side of a frame: a real window that shows the frame's
// buffer and feeds its events in. A frame without a host still lays out,
// paints and takes injected events, which is how tests run without a
// display. Owned by its frame; GUI thread.
class IFrameHost : public virtual IBase
{
public:
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual void setTitle(const char* utf8) = 0;
    // The frame's new size in layout pixels; the host resizes its window.
    virtual void setSize(CSize size) = 0;
    // Shows the buffer's rectangles (device pixels) on screen.
    virtual void present(const CRect* rects, int count) = 0;
    virtual void startTextInput(const CRect& caret) = 0;
    virtual void stopTextInput() = 0;
    // Brings the window to the front and gives it the keyboard.
    virtual void raise() = 0;
    // The frame's blank style, resizability, opacity or icon changed (or
    // the host was just given the frame): the host reads them from the
    // frame and applies what its platform can. A host without decorations
    // has nothing to do.
    virtual void updateDecorations() {}
    // The frame is going: the host must not reach it any more.
    virtual void detach() = 0;
};

}  // namespace fenn::gui
