#pragma once

#include "gui/CWindow.h"
#include "gui/layout/Orientation.h"

namespace fenn::gui {

// A slider: a thumb on a rounded track for a whole number in 0..maximum,
// left to right or (vertical) bottom to top, the track filled with the
// accent colour up to the thumb. Positions snap to multiples of the step
// size; tick marks may stand every tick mark delta positions beside the
// track. The track's thickness is the bar height factor times the lane the
// thumb runs in (the window's thickness less the tick marks).
//
// The user drags the thumb (the slider holds the mouse capture meanwhile),
// clicks on the track to move a page toward the click, or uses the arrow
// keys (a step), Page Up and Page Down (a page: a tenth of the range, at
// least a step), Home and End. Changes by the user tell listeners
// Notification::changed with the new position as index; setPosition does
// not. Owned by its parent window; GUI thread.
class CSliderBar : public CWindow
{
public:
    static constexpr double kDefaultBarHeightFactor = 0.2;

    explicit CSliderBar(Orientation orientation = Orientation::horizontal);

    void setOrientation(Orientation orientation);
    Orientation getOrientation() const { return m_orientation; }
    // A maximum below 1 counts as 1; the position snaps into the new range.
    void setMaxPosition(int maximum);
    int getMaxPosition() const { return m_maximum; }
    // A step below 1 counts as 1; the position snaps to the new steps.
    void setStepSize(int step);
    int getStepSize() const { return m_step; }
    // Positions between tick marks; 0 shows none.
    void setTickMarkDelta(int delta);
    int getTickMarkDelta() const { return m_tickDelta; }
    // Clamped to 0.05..1.0.
    void setBarHeightFactor(double factor);
    double getBarHeightFactor() const { return m_barHeightFactor; }
    // Snapped to the steps and clamped to the range; no listener hears it.
    void setPosition(int position);
    int getPosition() const { return m_position; }
    // The step a page key or a click on the track moves by.
    int getPageSize() const;

    // The thumb, in the slider's coordinates.
    virtual CRect getThumbRect() const;
    bool isDragging() const;
    // The pointer rests on the thumb (not while dragging).
    bool isThumbHovered() const { return m_thumbHovered; }

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    void onMouseLeave() override;
    bool onKeyDown(const CKeyEvent& event) override;

protected:
    // Where the thumb's centre lies along the slider at position 0 (first)
    // and at the maximum (last); a vertical slider's first lies below its
    // last. A slider drawn another way overrides this with getThumbRect.
    struct ThumbTravel
    {
        double first = 0.0;
        double last = 0.0;
    };
    virtual ThumbTravel getThumbTravel() const;

private:
    int snap(double position) const;
    void changeByUser(int position);
    // Extents along and across the slider.
    int getLength() const;
    int getLaneExtent() const;
    int getTickArea() const;
    // Along the slider: where the thumb's centre is for a position, and the
    // position (unsnapped) for a point along the track.
    double thumbCentreFor(int position) const;
    double positionAt(double along) const;
    double along(CPoint point) const;

    Orientation m_orientation;
    int m_maximum = 100;
    int m_step = 1;
    int m_tickDelta = 0;
    double m_barHeightFactor = kDefaultBarHeightFactor;
    int m_position = 0;
    bool m_dragging = false;
    // Where on the thumb the drag took hold, from its centre along the slider.
    double m_grabOffset = 0.0;
    bool m_thumbHovered = false;
};

}  // namespace fenn::gui
