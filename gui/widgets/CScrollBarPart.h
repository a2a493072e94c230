#pragma once

#include "gui/CColor.h"
#include "gui/Geometry.h"
#include "gui/layout/Orientation.h"

namespace fenn::gui {

class CPainter;

// The scroll bar of a scrolling widget (the scroll panel, the cell view):
// not a window of its own but a part its owner places, paints and feeds
// mouse events to, so that it stays put while the owner's content moves.
// It knows the length of the content and of the view on it, the position
// (pixels of content scrolled past), the track rectangle in the owner's
// coordinates and the hover and drag state that its look shows: a thin
// rounded thumb that widens and darkens under the pointer. Owned by value
// by its widget; GUI thread.
class CScrollBarPart
{
public:
    explicit CScrollBarPart(Orientation orientation);

    Orientation getOrientation() const { return m_orientation; }
    void setTrack(const CRect& track) { m_track = track; }
    const CRect& getTrack() const { return m_track; }
    // Lengths along the bar; the position is clamped to the new range.
    void setRange(int contentLength, int viewLength);
    int getContentLength() const { return m_contentLength; }
    int getViewLength() const { return m_viewLength; }
    // Whether the content is longer than the view, so there is anything to scroll.
    bool isNeeded() const { return m_contentLength > m_viewLength; }
    int getPosition() const { return m_position; }
    int getMaxPosition() const;
    // Clamps to 0..getMaxPosition(); true if the position changed.
    bool setPosition(int position);
    int clampPosition(int position) const;

    bool contains(CPoint point) const { return isNeeded() && m_track.contains(point); }
    CRect getThumbRect() const;
    // True if the hover state changed (the owner repaints the track).
    bool setHovered(bool hovered);
    bool isHovered() const { return m_hovered; }
    bool isDragging() const { return m_dragging; }

    // A press of the left button at point, inside the track: on the thumb it
    // starts a drag, elsewhere it pages toward the point. Returns the
    // position the owner should scroll to.
    int press(CPoint point);
    // The position for the pointer at point while the thumb is dragged.
    int drag(CPoint point) const;
    void release() { m_dragging = false; }

    void paint(CPainter& painter, CColor trackColor) const;

private:
    int along(CPoint point) const { return m_orientation == Orientation::vertical ? point.y : point.x; }
    int trackStart() const { return m_orientation == Orientation::vertical ? m_track.y : m_track.x; }
    int trackLength() const { return m_orientation == Orientation::vertical ? m_track.height : m_track.width; }
    int thumbLength() const;

    Orientation m_orientation;
    CRect m_track;
    int m_contentLength = 0;
    int m_viewLength = 0;
    int m_position = 0;
    bool m_hovered = false;
    bool m_dragging = false;
    // Where on the thumb the drag took hold, from the thumb's start.
    int m_grabOffset = 0;
};

}  // namespace fenn::gui
