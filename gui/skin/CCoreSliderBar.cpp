#include "gui/skin/CCoreSliderBar.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "gui/CPainter.h"

namespace fenn::gui::skin {

namespace {

// The bar's length when nothing asks for more, as the plain slider's.
constexpr int kPreferredLength = 160;
// Closer tick marks than this blur into a band; then none are drawn.
constexpr double kMinTickDistance = 3.0;

CRect inset(const CRect& rect, const SkinMargins& margins)
{
    return rect.inset(margins.left, margins.top, margins.right, margins.bottom);
}

}  // namespace

CCoreSliderBar::CCoreSliderBar(CWindow* parent, P<ISliderBarSkin> skin, Orientation orientation)
    : CSliderBar(orientation), m_skin(std::move(skin))
{
    CCoreWindow::checkParent(parent);
    m_core = make<CCoreWindow>(*this, m_skin, sliderBarNormal);
    m_staticFiller = make<CCoreWindow>(*this, m_skin->getStaticFiller(), sliderBarNormal);
    m_scalingFiller = make<CCoreWindow>(*this, m_skin->getScalingFiller(), sliderBarNormal);
    m_slider = make<CCoreWindow>(*this, m_skin->getSlider(), sliderBarNormal);
    m_tickMark = make<CCoreWindow>(*this, m_skin->getTickMark(), sliderBarNormal);
}

SliderBarState CCoreSliderBar::computeState() const
{
    if (!isEnabled()) return sliderBarDisabled;
    if (isDragging()) return sliderBarDrag;
    if (isHovered()) return sliderBarHover;
    return sliderBarNormal;
}

SliderBarState CCoreSliderBar::computeSliderState() const
{
    if (!isEnabled()) return sliderBarDisabled;
    if (isDragging()) return sliderBarDrag;
    if (isThumbHovered()) return sliderBarHover;
    return sliderBarNormal;
}

CSize CCoreSliderBar::getLayoutSize() const
{
    const CSize size = getBounds().size();
    return getOrientation() == Orientation::horizontal ? size : CSize{size.height, size.width};
}

CRect CCoreSliderBar::toWindow(const CRect& rect) const
{
    if (getOrientation() == Orientation::horizontal) return rect;
    // Turned a quarter to the left: the layout's start is the bar's bottom.
    return {rect.y, getBounds().height - rect.x - rect.width, rect.height, rect.width};
}

CRect CCoreSliderBar::getLayoutSliderArea() const
{
    const CSize size = getLayoutSize();
    return inset({0, 0, size.width, size.height}, m_skin->getSliderAreaMargins());
}

CRect CCoreSliderBar::getLayoutTickArea() const
{
    const CSize size = getLayoutSize();
    return inset({0, 0, size.width, size.height}, m_skin->getTickMarkAreaMargins());
}

double CCoreSliderBar::getLayoutCentre() const
{
    const CRect area = getLayoutSliderArea();
    return area.x + area.width * static_cast<double>(getPosition()) / getMaxPosition();
}

std::vector<CRect> CCoreSliderBar::getLayoutTickRects() const
{
    std::vector<CRect> rects;
    const int delta = getTickMarkDelta();
    const CRect area = getLayoutTickArea();
    if (delta <= 0 || area.isEmpty()) return rects;
    if (static_cast<double>(area.width) * delta / getMaxPosition() < kMinTickDistance) return rects;
    const int width = m_tickMark->getPreferredSize({}).width;
    // 64-bit steps: a maximum near the largest int must not wrap the loop.
    for (std::int64_t position = 0; position <= getMaxPosition(); position += delta) {
        const int at = area.x + static_cast<int>(std::lround(static_cast<double>(area.width) *
                                                             static_cast<double>(position) / getMaxPosition()));
        rects.push_back({at - width / 2, area.y, width, area.height});
    }
    return rects;
}

CRect CCoreSliderBar::getSliderArea() const
{
    return toWindow(getLayoutSliderArea());
}

CRect CCoreSliderBar::getScalingFillerRect() const
{
    const CRect area = getLayoutSliderArea();
    const int centre = static_cast<int>(std::lround(getLayoutCentre()));
    return toWindow({area.x, area.y, std::max(0, centre - area.x), area.height});
}

std::vector<CRect> CCoreSliderBar::getTickMarkRects() const
{
    std::vector<CRect> rects = getLayoutTickRects();
    for (CRect& rect : rects) rect = toWindow(rect);
    return rects;
}

CRect CCoreSliderBar::getThumbRect() const
{
    const CSize size = m_slider->getPreferredSize({});
    const CRect area = getLayoutSliderArea();
    const int along = static_cast<int>(std::lround(getLayoutCentre()));
    const int across = area.y + area.height / 2;
    // The slider stays upright on a vertical bar: only its centre turns.
    if (getOrientation() == Orientation::horizontal)
        return {along - size.width / 2, across - size.height / 2, size.width, size.height};
    return {across - size.width / 2, getBounds().height - along - size.height / 2, size.width, size.height};
}

CSliderBar::ThumbTravel CCoreSliderBar::getThumbTravel() const
{
    const CRect area = getLayoutSliderArea();
    if (getOrientation() == Orientation::horizontal) return {double(area.x), double(area.x + area.width)};
    const double height = getBounds().height;
    return {height - area.x, height - area.x - area.width};
}

CSize CCoreSliderBar::computeSize(SizeType type)
{
    const bool horizontal = getOrientation() == Orientation::horizontal;
    const CSize thumb = m_slider->getPreferredSize({});
    const int thumbAlong = horizontal ? thumb.width : thumb.height;
    const int thumbAcross = horizontal ? thumb.height : thumb.width;
    const SkinMargins area = m_skin->getSliderAreaMargins();
    const SkinMargins ticks = m_skin->getTickMarkAreaMargins();

    // Across: the slider in its area, the layers of the background and the
    // fillers, and the tick marks in theirs when there are any.
    int across = thumbAcross + area.vertical();
    across = std::max(across, m_core->getPreferredSize({}).height);
    across = std::max(across, m_staticFiller->getPreferredSize({}).height + area.vertical());
    across = std::max(across, m_scalingFiller->getPreferredSize({}).height + area.vertical());
    if (getTickMarkDelta() > 0) across = std::max(across, m_tickMark->getPreferredSize({}).height + ticks.vertical());

    const int shortest = 2 * thumbAlong + area.horizontal();
    const int length = type == SizeType::min         ? shortest
                       : type == SizeType::preferred ? std::max(kPreferredLength, shortest)
                                                     : kUnboundedExtent;
    return horizontal ? CSize{length, across} : CSize{across, length};
}

void CCoreSliderBar::updateStates()
{
    const SliderBarState state = computeState();
    m_core->syncState(state);
    m_staticFiller->syncState(state);
    m_scalingFiller->syncState(state);
    m_tickMark->syncState(state);
    m_slider->syncState(computeSliderState());
}

void CCoreSliderBar::paintPart(CPainter& painter, CCoreWindow& part, const CRect& rect) const
{
    if (rect.isEmpty()) return;
    const CPainter::CSaved saved = painter.save();
    if (getOrientation() == Orientation::vertical) {
        cairo_t* cr = painter.getCairo();
        cairo_translate(cr, 0, getBounds().height);
        cairo_rotate(cr, -std::numbers::pi / 2);
    }
    painter.translate(rect.x, rect.y);
    painter.clip({0, 0, rect.width, rect.height});
    part.resize(rect.size());
    part.paint(painter);
}

void CCoreSliderBar::paint(CPainter& painter)
{
    updateStates();
    const CSize size = getLayoutSize();
    const CRect area = getLayoutSliderArea();
    paintPart(painter, *m_core, {0, 0, size.width, size.height});
    paintPart(painter, *m_staticFiller, area);
    const int centre = static_cast<int>(std::lround(getLayoutCentre()));
    paintPart(painter, *m_scalingFiller, {area.x, area.y, std::max(0, centre - area.x), area.height});
    for (const CRect& tick : getLayoutTickRects()) paintPart(painter, *m_tickMark, tick);

    const CRect thumb = getThumbRect();
    const CPainter::CSaved saved = painter.save();
    painter.translate(thumb.x, thumb.y);
    m_slider->resize(thumb.size());
    m_slider->paint(painter);
}

void CCoreSliderBar::onMouseEnter()
{
    m_core->setState(computeState());
}

void CCoreSliderBar::onMouseLeave()
{
    CSliderBar::onMouseLeave();
    m_core->setState(computeState());
}

void CCoreSliderBar::onResized()
{
    m_core->resize(getLayoutSize());
    CSliderBar::onResized();
}

void CCoreSliderBar::onFrameChanged()
{
    for (CCoreWindow* part :
         {m_core.get(), m_staticFiller.get(), m_scalingFiller.get(), m_slider.get(), m_tickMark.get()}) {
        part->reset();
    }
    CSliderBar::onFrameChanged();
}

void CCoreSliderBar::onPropertyChanged(const String& name)
{
    for (CCoreWindow* part :
         {m_core.get(), m_staticFiller.get(), m_scalingFiller.get(), m_slider.get(), m_tickMark.get()}) {
        part->propertyChanged(name);
    }
}

}  // namespace fenn::gui::skin
