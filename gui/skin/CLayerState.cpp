#include "gui/skin/CLayerState.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "gui/CPainter.h"
#include "gui/image/CNinePatch.h"

namespace fenn::gui::skin {

namespace {

// Paints what draw paints at the layer's opacity.
template <class Draw> void withOpacity(CPainter& painter, double opacity, Draw draw)
{
    if (opacity <= 0.0) return;
    cairo_t* cr = painter.getCairo();
    if (opacity >= 1.0) {
        cairo_save(cr);
        draw(cr);
        cairo_restore(cr);
        return;
    }
    cairo_push_group(cr);
    draw(cr);
    cairo_pop_group_to_source(cr);
    cairo_paint_with_alpha(cr, opacity);
}

}  // namespace

// ---- CAnimationLayerState ----

CAnimationLayerState::CAnimationLayerState(P<const CAnimationLayer> layer, P<IAnimation> animation, int pixelRatio,
                                           const CRect& rect, std::int64_t now)
    : CLayerState(rect), m_layer(std::move(layer)), m_animation(std::move(animation)),
      m_pixelRatio(std::max(1, pixelRatio)), m_start(now)
{
}

bool CAnimationLayerState::update(std::int64_t now)
{
    if (!m_animation) return false;
    // Plays once and holds the last frame; a delay of 0 holds its frame too.
    const int count = m_animation->getFrameCount();
    std::int64_t frameEnd = m_start;
    int frame = 0;
    while (frame < count - 1) {
        const int delay = m_animation->getDelay(frame);
        if (delay <= 0) break;
        frameEnd += delay;
        if (now < frameEnd) break;
        ++frame;
    }
    if (frame == m_frame) return false;
    m_frame = frame;
    return true;
}

std::int64_t CAnimationLayerState::getEndTime() const
{
    if (!m_animation) return m_start;
    std::int64_t end = m_start;
    for (int frame = 0; frame < m_animation->getFrameCount(); ++frame) end += m_animation->getDelay(frame);
    return end;
}

std::int64_t CAnimationLayerState::getNextChangeTime() const
{
    if (!m_animation || m_frame >= m_animation->getFrameCount() - 1) return -1;
    std::int64_t end = m_start;
    for (int frame = 0; frame <= m_frame; ++frame) {
        const int delay = m_animation->getDelay(frame);
        if (delay <= 0) return -1;
        end += delay;
    }
    return end;
}

void CAnimationLayerState::paint(CPainter& painter)
{
    if (!m_animation) return;
    const CRect rect = getRect();
    if (rect.isEmpty()) return;
    const P<IImage> image = m_animation->getFrame(m_frame);
    const ImageOptions& options = m_layer->getOptions();
    const LayerGeometry& geometry = m_layer->getGeometry();
    const int ratio = m_pixelRatio;
    withOpacity(painter, geometry.opacity, [&](cairo_t* cr) {
        if (options.noScale) {
            const SkinMargins& margins = geometry.contentMargins;
            const CRect area = rect.inset(margins.left, margins.top, margins.right, margins.bottom);
            const CSize size{image->getWidth() / ratio, image->getHeight() / ratio};
            const CRect place = m_layer->alignContent(area, size);
            cairo_rectangle(cr, rect.x, rect.y, rect.width, rect.height);
            cairo_clip(cr);
            CNinePatch::drawScaled(cr, *image, place);
        } else if (options.scaleMargins) {
            // The margins are in 1x pixels: an @2x image is drawn at half
            // scale so that its borders keep their size on screen.
            const SkinMargins& m = *options.scaleMargins;
            const CNinePatch patch(image, {m.left * ratio, m.top * ratio, m.right * ratio, m.bottom * ratio});
            cairo_scale(cr, 1.0 / ratio, 1.0 / ratio);
            patch.draw(cr, {rect.x * ratio, rect.y * ratio, rect.width * ratio, rect.height * ratio});
        } else {
            CNinePatch::drawScaled(cr, *image, rect);
        }
    });
}

// ---- CTextLayerState ----

CTextLayerState::CTextLayerState(P<const CTextLayer> layer, P<ITextSource> source, const CRect& rect, std::int64_t now)
    : CLayerState(rect), m_layer(std::move(layer)), m_source(std::move(source)), m_start(now)
{
}

void CTextLayerState::paint(CPainter& painter)
{
    const String text = m_source->getText();
    if (text.isEmpty()) return;
    const LayerGeometry& geometry = m_layer->getGeometry();
    const TextOptions& options = m_layer->getTextOptions();
    const CRect rect = getRect();
    const SkinMargins& margins = geometry.contentMargins;
    const CRect area = rect.inset(margins.left, margins.top, margins.right, margins.bottom);
    if (area.isEmpty()) return;

    CTextLayout layout(m_layer->makeFont(m_source->getFont()), text);
    m_layer->styleLayout(layout);
    layout.setWidth(area.width, options.multiline ? TextWrap::wrap : TextWrap::ellipsis);
    layout.setAlignment(geometry.halign);
    const CSize size = layout.getSize();
    // The layout aligns each line inside the area's width; only the block's
    // vertical place is worked out here.
    const CRect place = m_layer->alignContent(area, {area.width, size.height});
    const CPoint origin{area.x, place.y};
    const CColor color = options.color.value_or(m_source->getTextColor());

    withOpacity(painter, geometry.opacity, [&](cairo_t* cr) {
        cairo_rectangle(cr, rect.x, rect.y, rect.width, rect.height);
        cairo_clip(cr);
        const auto draw = [&](CPoint at, CColor colour) {
            if (options.antialias) {
                painter.drawLayout(layout, at, colour);
                return;
            }
            // Glyphs drawn as text take their antialiasing from the font
            // options of the shared pango context; filled as outlines they
            // follow the cairo context's, which is set for this text alone.
            cairo_save(cr);
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
            cairo_move_to(cr, at.x, at.y);
            pango_cairo_layout_path(cr, layout.getPangoLayout());
            cairo_set_source_rgba(cr, colour.red() / 255.0, colour.green() / 255.0, colour.blue() / 255.0,
                                  colour.alpha() / 255.0);
            cairo_fill(cr);
            cairo_restore(cr);
        };
        if (options.halo) {
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    if (dx != 0 || dy != 0) draw({origin.x + dx, origin.y + dy}, *options.halo);
                }
            }
        }
        if (options.shadow) draw({origin.x + options.shadowX, origin.y + options.shadowY}, *options.shadow);
        draw(origin, color);
    });
}

}  // namespace fenn::gui::skin
