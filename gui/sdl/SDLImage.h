#pragma once

#include <SDL.h>

#include <memory>

#include "gui/image/IImage.h"

namespace fenn::gui::sdl {

struct SDLSurfaceDeleter
{
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SDLSurfacePointer = std::unique_ptr<SDL_Surface, SDLSurfaceDeleter>;

// A copy of image as an SDL surface in SDL_PIXELFORMAT_ARGB8888, which has
// the same 32-bit words as the image but straight colours: SDL blends and
// hands icons to the desktop unpremultiplied. Throws CError when SDL cannot
// make the surface. Any thread.
SDLSurfacePointer toSDLSurface(const IImage& image);

}  // namespace fenn::gui::sdl
