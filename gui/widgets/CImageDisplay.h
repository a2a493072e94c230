#pragma once

#include "gui/CWindow.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// Shows an image scaled to fit the window, up or down, keeping its aspect
// ratio, centred; the room beside it shows the back colour if one is set.
// Its preferred size is the image's own. Disabled, the image is drawn faded.
// Owned by its parent window; GUI thread.
class CImageDisplay : public CWindow
{
public:
    CImageDisplay();
    explicit CImageDisplay(P<IImage> image);

    void setImage(P<IImage> image);
    P<IImage> getImage() const { return m_image; }
    // Where the image is drawn, in the window's coordinates; empty without one.
    CRect getImageRect() const;

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;

private:
    P<IImage> m_image;
};

// The largest rectangle of the image's aspect ratio inside area, centred in
// it; empty for an empty area or image.
CRect fitCentred(CSize image, const CRect& area);

}  // namespace fenn::gui
