#pragma once

#include "foundation/CObject.h"
#include "gui/skin/CLayer.h"

namespace fenn::gui::skin {

// The shared part of live layers: the rectangle and the layer it came from.
class CLayerState : public CObject, public virtual ILayerState
{
public:
    explicit CLayerState(const CRect& rect) : m_rect(rect) {}

    CRect getRect() const override { return m_rect; }
    void setRect(const CRect& rect) override { m_rect = rect; }

private:
    CRect m_rect;
};

// An image layer live on one window: the animation it plays (the @2x one
// when the frame is scaled 1.5 or more and there is one), when it started
// and which frame shows.
class CAnimationLayerState : public CLayerState
{
public:
    // animation may be null (a window property without a readable image):
    // the state then draws nothing. pixelRatio is 2 for an @2x animation.
    CAnimationLayerState(P<const CAnimationLayer> layer, P<IAnimation> animation, int pixelRatio, const CRect& rect,
                         std::int64_t now);

    int getFrameIndex() const { return m_frame; }
    const P<IAnimation>& getAnimation() const { return m_animation; }

    void paint(CPainter& painter) override;
    bool update(std::int64_t now) override;
    std::int64_t getEndTime() const override;
    std::int64_t getNextChangeTime() const override;

private:
    P<const CAnimationLayer> m_layer;
    P<IAnimation> m_animation;
    int m_pixelRatio = 1;
    std::int64_t m_start = 0;
    int m_frame = 0;
};

// A text layer live on one window.
class CTextLayerState : public CLayerState
{
public:
    CTextLayerState(P<const CTextLayer> layer, P<ITextSource> source, const CRect& rect, std::int64_t now);

    void paint(CPainter& painter) override;
    bool update(std::int64_t) override { return false; }
    std::int64_t getEndTime() const override { return m_start; }
    std::int64_t getNextChangeTime() const override { return -1; }

private:
    P<const CTextLayer> m_layer;
    P<ITextSource> m_source;
    std::int64_t m_start = 0;
};

}  // namespace fenn::gui::skin
