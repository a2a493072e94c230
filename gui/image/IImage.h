#pragma once

#include <cairo.h>

#include <cstdint>

#include "foundation/IBase.h"
#include "gui/Geometry.h"

namespace fenn::gui {

// A picture in the pixel layout cairo paints without conversion
// (CAIRO_FORMAT_ARGB32): rows top first, getStride bytes apart, each pixel
// one native-endian 32-bit word with alpha in the top byte and then red,
// green and blue, the colours premultiplied by alpha. The image owns its
// pixels and a cairo surface on them; whoever holds the P<IImage> owns the
// image. Images are built on any thread (decoders run on workers) and then
// handed on; after that one thread at a time uses them, normally the GUI
// thread, since cairo does not lock its surfaces.
class IImage : public virtual IBase
{
public:
    // Both at least 1.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual CSize getSize() const = 0;
    // Bytes from one row to the next.
    virtual int getStride() const = 0;
    virtual const std::uint8_t* getPixels() const = 0;
    // The word of one pixel as laid out above; throws CInvalidArgError for a
    // place outside the image.
    virtual std::uint32_t getPixel(int x, int y) const = 0;
    // False only when every pixel is known to be opaque, which lets a painter
    // skip blending.
    virtual bool hasAlpha() const = 0;
    // A cairo image surface on the same pixels, owned by the image; take a
    // reference (cairo_surface_reference) to keep it beyond the image. Paint
    // from it; drawing into it changes the image.
    virtual cairo_surface_t* getSurface() const = 0;
};

}  // namespace fenn::gui
