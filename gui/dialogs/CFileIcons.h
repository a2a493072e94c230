#pragma once

#include <cairo.h>

#include "foundation/P.h"
#include "gui/CColor.h"
#include "gui/Geometry.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// The small pictures of the file dialog: folders, files and the places of
// its side column, drawn as paths so that they stay sharp at any scale.
enum class FileIcon {
    folder,
    file,
    audioFile,
    home,
    desktop,
    music,
    drive,
    recent,
};

// Draws icon into the square of side size at x, y with cr's current
// transformation; accent is the colour of the icon's coloured parts.
// Leaves cr's state as it found it. Any thread for a cr of its own.
void paintFileIcon(cairo_t* cr, FileIcon icon, double x, double y, double size, CColor accent);

// Makes color cr's source.
void setSourceColor(cairo_t* cr, CColor color);

// The icon as an image of side pixels, for a cell view model; the caller
// keeps it. Images are drawn larger than they show (cell views scale them
// down), so that they stay sharp on scaled screens.
P<IImage> makeFileIconImage(FileIcon icon, int pixels, CColor accent);

}  // namespace fenn::gui
