#include "gui/image/CNinePatch.h"

#include <cmath>

#include "foundation/CObjectError.h"

namespace fenn::gui {

namespace {

// The lengths of the two fixed ends of one direction. When they do not fit
// into length together, they share it in proportion to their sizes.
struct Ends
{
    int first = 0;
    int last = 0;
};

Ends fitEnds(int length, int first, int last)
{
    if (first + last <= length) return {first, last};
    const int shrunkFirst = static_cast<int>(std::lround(static_cast<double>(length) * first / (first + last)));
    return {shrunkFirst, length - shrunkFirst};
}

// The start and the length of the three parts of one direction.
struct Parts
{
    int start[3];
    int length[3];
};

Parts splitInThree(int start, int length, Ends ends)
{
    return {{start, start + ends.first, start + length - ends.last},
            {ends.first, length - ends.first - ends.last, ends.last}};
}

// Paints source of surface stretched to destination. The sub-surface makes
// EXTEND_PAD repeat the patch's own border pixels where the filter reaches
// beyond it, instead of the neighbouring patch's.
void paintPart(cairo_t* context, cairo_surface_t* surface, const CRect& source, const CRect& destination,
               cairo_filter_t filter, bool wholeSurface)
{
    if (source.isEmpty() || destination.isEmpty()) return;
    cairo_surface_t* part =
        wholeSurface ? cairo_surface_reference(surface)
                     : cairo_surface_create_for_rectangle(surface, source.x, source.y, source.width, source.height);
    cairo_pattern_t* pattern = cairo_pattern_create_for_surface(part);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern, filter);
    // The pattern matrix maps user space to the part's pixels.
    cairo_matrix_t matrix;
    cairo_matrix_init_scale(&matrix, static_cast<double>(source.width) / destination.width,
                            static_cast<double>(source.height) / destination.height);
    cairo_matrix_translate(&matrix, -destination.x, -destination.y);
    cairo_pattern_set_matrix(pattern, &matrix);

    cairo_save(context);
    cairo_set_source(context, pattern);
    cairo_rectangle(context, destination.x, destination.y, destination.width, destination.height);
    cairo_fill(context);
    cairo_restore(context);
    cairo_pattern_destroy(pattern);
    cairo_surface_destroy(part);
}

}  // namespace

CNinePatch::CNinePatch(P<IImage> image, Margins margins)
    : CNinePatch(image, image ? CRect{0, 0, image->getWidth(), image->getHeight()} : CRect{}, margins)
{
}

CNinePatch::CNinePatch(P<IImage> image, const CRect& source, Margins margins)
    : m_image(std::move(image)), m_source(source), m_margins(margins)
{
    if (!m_image) throw CInvalidArgError(this, "CNinePatch", "image");
    const CRect bounds{0, 0, m_image->getWidth(), m_image->getHeight()};
    if (source.isEmpty() || source.intersected(bounds) != source) throw CInvalidArgError(this, "CNinePatch", "source");
    if (margins.left < 0 || margins.top < 0 || margins.right < 0 || margins.bottom < 0) {
        throw CInvalidArgError(this, "CNinePatch", "margins");
    }
    const Ends across = fitEnds(source.width, margins.left, margins.right);
    const Ends down = fitEnds(source.height, margins.top, margins.bottom);
    m_margins = {across.first, down.first, across.last, down.last};
}

void CNinePatch::draw(cairo_t* context, const CRect& destination, cairo_filter_t filter) const
{
    if (destination.isEmpty()) return;
    const Parts sourceColumns = splitInThree(m_source.x, m_source.width, {m_margins.left, m_margins.right});
    const Parts sourceRows = splitInThree(m_source.y, m_source.height, {m_margins.top, m_margins.bottom});
    const Parts columns =
        splitInThree(destination.x, destination.width, fitEnds(destination.width, m_margins.left, m_margins.right));
    const Parts rows =
        splitInThree(destination.y, destination.height, fitEnds(destination.height, m_margins.top, m_margins.bottom));
    cairo_surface_t* surface = m_image->getSurface();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const CRect source{sourceColumns.start[column], sourceRows.start[row], sourceColumns.length[column],
                               sourceRows.length[row]};
            const CRect target{columns.start[column], rows.start[row], columns.length[column], rows.length[row]};
            paintPart(context, surface, source, target, filter, false);
        }
    }
}

void CNinePatch::drawScaled(cairo_t* context, const IImage& image, const CRect& destination, cairo_filter_t filter)
{
    paintPart(context, image.getSurface(), {0, 0, image.getWidth(), image.getHeight()}, destination, filter, true);
}

void CNinePatch::drawScaled(cairo_t* context, const IImage& image, const CRect& source, const CRect& destination,
                            cairo_filter_t filter)
{
    const CRect bounds{0, 0, image.getWidth(), image.getHeight()};
    if (source.intersected(bounds) != source) throw CInvalidArgError(CObjectDescription(), "drawScaled", "source");
    paintPart(context, image.getSurface(), source, destination, filter, source == bounds);
}

}  // namespace fenn::gui
