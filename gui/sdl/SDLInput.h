#pragma once

#include <SDL.h>

#include "gui/Events.h"

namespace fenn::gui::sdl {

// SDL's key codes and modifier states in the toolkit's terms.
CKeyEvent translateKey(const SDL_KeyboardEvent& event);
std::uint32_t translateModifiers(std::uint16_t sdlModifiers);
MouseButton translateButton(std::uint8_t sdlButton);

}  // namespace fenn::gui::sdl
