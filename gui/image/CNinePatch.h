#pragma once

#include <cairo.h>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "gui/Geometry.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// Draws an image into a rectangle of any size by cutting it into nine
// patches along fixed margins: the four corners keep their size, the top and
// bottom edges stretch only across, the left and right edges only down, and
// the centre both ways. Skins draw buttons, frames and backgrounds with it.
// When the margins of one direction are together larger than the
// destination, they shrink in proportion to each other (and the middle
// vanishes). Each patch is painted from a cairo sub-surface with
// CAIRO_EXTEND_PAD and clipped to whole destination pixels, so stretching
// never blends in pixels of the neighbouring patch and no seams appear.
//
// The patches may come from a part of the image (a strip that holds the
// states of a button). Owned by whoever holds it (normally a skin element);
// GUI thread only, like the cairo context it draws on.
class CNinePatch : public CObject
{
public:
    // In image pixels, measured inwards from the sides of the source.
    struct Margins
    {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;

        friend bool operator==(const Margins&, const Margins&) = default;
    };

    // A null image, negative margins or a source that is empty or not
    // inside the image throw CInvalidArgError. Margins larger than the
    // source shrink in proportion, as they do for the destination.
    CNinePatch(P<IImage> image, Margins margins);
    CNinePatch(P<IImage> image, const CRect& source, Margins margins);

    const P<IImage>& getImage() const { return m_image; }
    const CRect& getSource() const { return m_source; }
    Margins getMargins() const { return m_margins; }

    // Paints with the context's operator and transformation; an empty
    // destination draws nothing.
    void draw(cairo_t* context, const CRect& destination, cairo_filter_t filter = CAIRO_FILTER_GOOD) const;

    // The whole image, or a part of it, stretched to fill destination; the
    // edges are padded, not faded into transparency.
    static void drawScaled(cairo_t* context, const IImage& image, const CRect& destination,
                           cairo_filter_t filter = CAIRO_FILTER_GOOD);
    static void drawScaled(cairo_t* context, const IImage& image, const CRect& source, const CRect& destination,
                           cairo_filter_t filter = CAIRO_FILTER_GOOD);

private:
    P<IImage> m_image;
    CRect m_source;
    Margins m_margins;
};

}  // namespace fenn::gui
