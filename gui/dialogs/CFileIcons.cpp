#include "gui/dialogs/CFileIcons.h"

#include <cmath>

#include "gui/CStyle.h"
#include "gui/image/CImage.h"

namespace fenn::gui {

namespace {

// Every icon is drawn on a grid of 16 units; lines of 1.3 units read as one
// pixel and a bit at the side column's size and stay crisp when doubled.
constexpr double kGrid = 16.0;
constexpr double kLineWidth = 1.3;

void roundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius)
{
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + width - radius, y + radius, radius, -M_PI / 2, 0);
    cairo_arc(cr, x + width - radius, y + height - radius, radius, 0, M_PI / 2);
    cairo_arc(cr, x + radius, y + height - radius, radius, M_PI / 2, M_PI);
    cairo_arc(cr, x + radius, y + radius, radius, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
}

void paintFolder(cairo_t* cr, CColor accent)
{
    // The back with its tab, then the lighter front panel over it.
    cairo_move_to(cr, 1.0, 3.6);
    cairo_arc(cr, 2.2, 3.6, 1.2, M_PI, 3 * M_PI / 2);
    cairo_line_to(cr, 5.6, 2.4);
    cairo_line_to(cr, 7.2, 4.0);
    cairo_line_to(cr, 13.8, 4.0);
    cairo_arc(cr, 13.8, 5.2, 1.2, -M_PI / 2, 0);
    cairo_line_to(cr, 15.0, 12.8);
    cairo_arc(cr, 13.8, 12.8, 1.2, 0, M_PI / 2);
    cairo_line_to(cr, 2.2, 14.0);
    cairo_arc(cr, 2.2, 12.8, 1.2, M_PI / 2, M_PI);
    cairo_close_path(cr);
    setSourceColor(cr, accent.mixedWith(CColor(0, 0, 0), 0.08));
    cairo_fill(cr);
    roundedRectangle(cr, 1.0, 5.6, 14.0, 8.4, 1.2);
    setSourceColor(cr, accent.mixedWith(CColor(255, 255, 255), 0.28));
    cairo_fill(cr);
}

void paintPage(cairo_t* cr)
{
    const CStyle& style = CStyle::get();
    // A sheet with its top right corner folded over.
    cairo_move_to(cr, 3.4, 1.6);
    cairo_line_to(cr, 9.6, 1.6);
    cairo_line_to(cr, 13.0, 5.0);
    cairo_line_to(cr, 13.0, 14.4);
    cairo_line_to(cr, 3.4, 14.4);
    cairo_close_path(cr);
    setSourceColor(cr, style.panelBackground);
    cairo_fill_preserve(cr);
    setSourceColor(cr, style.textSecondary.mixedWith(style.panelBackground, 0.25));
    cairo_set_line_width(cr, 1.0);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cr);
    cairo_move_to(cr, 9.6, 1.6);
    cairo_line_to(cr, 9.6, 5.0);
    cairo_line_to(cr, 13.0, 5.0);
    cairo_stroke(cr);
}

void paintNote(cairo_t* cr, double x, double y, double size)
{
    // Two eighth notes under one beam, in a box of side size at x, y.
    const double unit = size / 10.0;
    cairo_set_line_width(cr, unit * 1.1);
    cairo_move_to(cr, x + 3.6 * unit, y + 8.2 * unit);
    cairo_line_to(cr, x + 3.6 * unit, y + 1.6 * unit);
    cairo_line_to(cr, x + 9.2 * unit, y + 0.6 * unit);
    cairo_line_to(cr, x + 9.2 * unit, y + 7.2 * unit);
    cairo_stroke(cr);
    cairo_arc(cr, x + 2.2 * unit, y + 8.3 * unit, 1.7 * unit, 0, 2 * M_PI);
    cairo_fill(cr);
    cairo_arc(cr, x + 7.8 * unit, y + 7.3 * unit, 1.7 * unit, 0, 2 * M_PI);
    cairo_fill(cr);
}

void paintPlace(cairo_t* cr, FileIcon icon)
{
    cairo_set_line_width(cr, kLineWidth);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    switch (icon) {
    case FileIcon::home:
        cairo_move_to(cr, 1.8, 8.0);
        cairo_line_to(cr, 8.0, 2.2);
        cairo_line_to(cr, 14.2, 8.0);
        cairo_stroke(cr);
        cairo_move_to(cr, 3.6, 6.6);
        cairo_line_to(cr, 3.6, 14.0);
        cairo_line_to(cr, 12.4, 14.0);
        cairo_line_to(cr, 12.4, 6.6);
        cairo_stroke(cr);
        cairo_rectangle(cr, 6.6, 9.6, 2.8, 4.4);
        cairo_stroke(cr);
        break;
    case FileIcon::desktop:
        roundedRectangle(cr, 1.4, 2.4, 13.2, 8.8, 1.2);
        cairo_stroke(cr);
        cairo_move_to(cr, 8.0, 11.2);
        cairo_line_to(cr, 8.0, 13.8);
        cairo_move_to(cr, 4.8, 13.8);
        cairo_line_to(cr, 11.2, 13.8);
        cairo_stroke(cr);
        break;
    case FileIcon::music:
        paintNote(cr, 2.0, 2.6, 12.0);
        break;
    case FileIcon::drive:
        roundedRectangle(cr, 1.4, 4.4, 13.2, 7.2, 1.6);
        cairo_stroke(cr);
        cairo_move_to(cr, 1.4, 8.6);
        cairo_line_to(cr, 14.6, 8.6);
        cairo_stroke(cr);
        cairo_arc(cr, 11.9, 10.1, 0.75, 0, 2 * M_PI);
        cairo_fill(cr);
        break;
    case FileIcon::recent:
        cairo_arc(cr, 8.0, 8.0, 6.2, 0, 2 * M_PI);
        cairo_stroke(cr);
        cairo_move_to(cr, 8.0, 4.4);
        cairo_line_to(cr, 8.0, 8.0);
        cairo_line_to(cr, 10.6, 9.6);
        cairo_stroke(cr);
        break;
    default:
        break;
    }
}

}  // namespace

void setSourceColor(cairo_t* cr, CColor color)
{
    cairo_set_source_rgba(cr, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0, color.alpha() / 255.0);
}

void paintFileIcon(cairo_t* cr, FileIcon icon, double x, double y, double size, CColor accent)
{
    cairo_save(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, size / kGrid, size / kGrid);
    cairo_new_path(cr);
    switch (icon) {
    case FileIcon::folder:
        paintFolder(cr, accent);
        break;
    case FileIcon::file:
        paintPage(cr);
        break;
    case FileIcon::audioFile:
        paintPage(cr);
        setSourceColor(cr, accent);
        paintNote(cr, 5.0, 6.4, 6.0);
        break;
    default:
        setSourceColor(cr, accent);
        paintPlace(cr, icon);
        break;
    }
    cairo_restore(cr);
}

P<IImage> makeFileIconImage(FileIcon icon, int pixels, CColor accent)
{
    auto image = make<CImage>(CSize{pixels, pixels});
    cairo_t* cr = cairo_create(image->getSurface());
    paintFileIcon(cr, icon, 0, 0, pixels, accent);
    cairo_destroy(cr);
    cairo_surface_flush(image->getSurface());
    image->markDirty();
    return image;
}

}  // namespace fenn::gui
