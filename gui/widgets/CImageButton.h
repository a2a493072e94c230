#pragma once

#include "gui/image/IImage.h"
#include "gui/widgets/CButton.h"

namespace fenn::gui {

// A button that shows an image instead of its text: flat until the pointer
// is over it, then with the hover and pressed backgrounds of a button. The
// image keeps its size, shrunk (keeping its aspect ratio) only where the
// button is smaller; disabled it is drawn faded. Without an image it looks
// like a plain CButton with its text. Clicks as CButton. Owned by its
// parent window; GUI thread.
class CImageButton : public CButton
{
public:
    CImageButton();
    explicit CImageButton(P<IImage> image);

    void setImage(P<IImage> image);
    P<IImage> getImage() const { return m_image; }

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;

private:
    P<IImage> m_image;
};

}  // namespace fenn::gui
