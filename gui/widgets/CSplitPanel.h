#pragma once

#include "gui/CWindow.h"
#include "gui/image/CNinePatch.h"
#include "gui/image/IImage.h"
#include "gui/layout/Orientation.h"

namespace fenn::gui {

// "horz" or "vert", in any case; throws CInvalidArgError for anything else.
Orientation parseOrientation(const String& text);

// Two panes with a divider between them that the mouse drags: side by side
// when horizontal, one above the other when vertical. The panes are the
// panel's first two children (setPanes, or children added in order by a
// layout file); with one child it fills the panel. The divider position is
// the first pane's extent along the orientation; it stays put when the
// panel is resized and is always kept where both panes get their minimum
// (the larger of the pane's own min size and the minimum set here). The
// divider is painted as a thin line with a grip, or by a back image
// stretched over the divider as a nine-patch (its margins keep their size,
// so a divider's end caps stay put) and a centre image centred on it.
// Listeners hear Notification::changed when a drag moves the divider.
// Owned by its parent window; GUI thread.
class CSplitPanel : public CWindow
{
public:
    explicit CSplitPanel(Orientation orientation = Orientation::horizontal);

    void setOrientation(Orientation orientation);
    Orientation getOrientation() const { return m_orientation; }
    // Replaces the panes (null leaves a pane out).
    void setPanes(const P<CWindow>& first, const P<CWindow>& second);
    // Pane 0 or 1; null when the panel has fewer children.
    CWindow* getPane(int index) const;

    // Before the first layout, an unset position takes the first pane's
    // preferred extent.
    void setDividerPosition(int position);
    int getDividerPosition() const { return m_position; }
    void setMinimumPaneSizes(int first, int second);
    // Where the divider lies, as of the last layout.
    CRect getDividerRect() const;
    // Null takes the image away; margins are in image pixels, and negative
    // ones throw CInvalidArgError.
    void setBackImage(P<IImage> image, CNinePatch::Margins margins = {});
    const P<CNinePatch>& getBackImage() const { return m_backImage; }
    void setCenterImage(P<IImage> image);

    void layoutChildren() override;
    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseLeave() override;
    bool onMouseDown(const CMouseEvent& event) override;
    bool onMouseUp(const CMouseEvent& event) override;
    bool onMouseMove(const CMouseEvent& event) override;

private:
    int along(CSize size) const { return m_orientation == Orientation::horizontal ? size.width : size.height; }
    int across(CSize size) const { return m_orientation == Orientation::horizontal ? size.height : size.width; }
    int along(CPoint point) const { return m_orientation == Orientation::horizontal ? point.x : point.y; }
    int minimumOf(int index) const;
    // position limited to where both panes get their minimum in the current size.
    int clampPosition(int position) const;

    Orientation m_orientation;
    // -1 until set or first laid out.
    int m_position = -1;
    int m_minimum[2] = {0, 0};
    bool m_hovered = false;
    bool m_dragging = false;
    int m_grabOffset = 0;
    P<CNinePatch> m_backImage;
    P<IImage> m_centerImage;
};

}  // namespace fenn::gui
