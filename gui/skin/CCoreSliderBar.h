#pragma once

#include "gui/skin/CCoreWindow.h"
#include "gui/widgets/CSliderBar.h"

namespace fenn::gui::skin {

// A slider bar drawn by a slider bar skin, with CSliderBar's drags, clicks,
// keys and notifications. The skin is laid out for a horizontal bar: its
// own layers are the background; the static filler lies under the slider
// area (sliderareamargins), the scaling filler from the area's start to
// the slider's centre, tick marks every tick mark delta along the tick
// mark area, and the slider (as large as its layers ask) travels with its
// centre along the slider area. A vertical bar shows the same picture
// turned a quarter to the left, so that position 0 is at the bottom; only
// the slider itself stays upright. Owned by its parent; GUI thread.
class CCoreSliderBar : public CSliderBar
{
public:
    // Throws CError when parent is null or not inside a frame; the caller
    // adds the bar to parent.
    CCoreSliderBar(CWindow* parent, P<ISliderBarSkin> skin, Orientation orientation = Orientation::horizontal);

    // The background; the parts follow.
    CCoreWindow& getCore() { return *m_core; }
    CCoreWindow& getStaticFiller() { return *m_staticFiller; }
    CCoreWindow& getScalingFiller() { return *m_scalingFiller; }
    CCoreWindow& getSlider() { return *m_slider; }
    CCoreWindow& getTickMark() { return *m_tickMark; }

    // The states of the background and fillers, and of the slider.
    SliderBarState computeState() const;
    SliderBarState computeSliderState() const;

    // In the bar's own coordinates: the slider area, the part of it the
    // scaling filler covers now, and the tick marks' rectangles.
    CRect getSliderArea() const;
    CRect getScalingFillerRect() const;
    std::vector<CRect> getTickMarkRects() const;

    CRect getThumbRect() const override;
    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseEnter() override;
    void onMouseLeave() override;
    // Presses, drags and the pointer over the slider repaint through
    // CSliderBar, and paint picks up the parts' states.

protected:
    ThumbTravel getThumbTravel() const override;
    void onResized() override;
    void onFrameChanged() override;
    void onPropertyChanged(const String& name) override;

private:
    // The skin's horizontal layout: (length, thickness) of the bar.
    CSize getLayoutSize() const;
    // A rectangle or point of the horizontal layout in the bar's coordinates.
    CRect toWindow(const CRect& rect) const;
    CRect getLayoutSliderArea() const;
    CRect getLayoutTickArea() const;
    // Where the slider's centre is along the layout's length.
    double getLayoutCentre() const;
    std::vector<CRect> getLayoutTickRects() const;
    // Paints a part sized to rect (layout coordinates), turned for a
    // vertical bar.
    void paintPart(CPainter& painter, CCoreWindow& part, const CRect& rect) const;
    void updateStates();

    P<ISliderBarSkin> m_skin;
    P<CCoreWindow> m_core;
    P<CCoreWindow> m_staticFiller;
    P<CCoreWindow> m_scalingFiller;
    P<CCoreWindow> m_slider;
    P<CCoreWindow> m_tickMark;
};

}  // namespace fenn::gui::skin
