#include "gui/sdl/CSDLClipboard.h"

#include <SDL.h>

namespace fenn::gui::sdl {

String CSDLClipboard::getText()
{
    char* text = SDL_GetClipboardText();
    if (!text) return String();
    const String copy = String::copyOf(text);
    SDL_free(text);
    return copy;
}

void CSDLClipboard::setText(const String& text)
{
    SDL_SetClipboardText(text.c_str());
}

}  // namespace fenn::gui::sdl
