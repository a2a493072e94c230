#include "gui/sdl/SDLInput.h"

namespace fenn::gui::sdl {

std::uint32_t translateModifiers(std::uint16_t sdlModifiers)
{
    std::uint32_t modifiers = modifierNone;
    if (sdlModifiers & KMOD_SHIFT) modifiers |= modifierShift;
    if (sdlModifiers & KMOD_CTRL) modifiers |= modifierControl;
    if (sdlModifiers & KMOD_ALT) modifiers |= modifierAlt;
    return modifiers;
}

MouseButton translateButton(std::uint8_t sdlButton)
{
    switch (sdlButton) {
    case SDL_BUTTON_LEFT:
        return MouseButton::left;
    case SDL_BUTTON_MIDDLE:
        return MouseButton::middle;
    case SDL_BUTTON_RIGHT:
        return MouseButton::right;
    default:
        return MouseButton::none;
    }
}

CKeyEvent translateKey(const SDL_KeyboardEvent& event)
{
    CKeyEvent key;
    key.modifiers = translateModifiers(event.keysym.mod);
    key.repeat = event.repeat != 0;
    const SDL_Keycode code = event.keysym.sym;
    switch (code) {
    case SDLK_RETURN:
    case SDLK_KP_ENTER:
        key.key = Key::enter;
        break;
    case SDLK_ESCAPE:
        key.key = Key::escape;
        break;
    case SDLK_TAB:
        key.key = Key::tab;
        break;
    case SDLK_BACKSPACE:
        key.key = Key::backspace;
        break;
    case SDLK_DELETE:
        key.key = Key::deleteKey;
        break;
    case SDLK_INSERT:
        key.key = Key::insert;
        break;
    case SDLK_LEFT:
        key.key = Key::left;
        break;
    case SDLK_RIGHT:
        key.key = Key::right;
        break;
    case SDLK_UP:
        key.key = Key::up;
        break;
    case SDLK_DOWN:
        key.key = Key::down;
        break;
    case SDLK_HOME:
        key.key = Key::home;
        break;
    case SDLK_END:
        key.key = Key::end;
        break;
    case SDLK_PAGEUP:
        key.key = Key::pageUp;
        break;
    case SDLK_PAGEDOWN:
        key.key = Key::pageDown;
        break;
    case SDLK_SPACE:
        key.key = Key::space;
        break;
    case SDLK_MENU:
    case SDLK_APPLICATION:
        key.key = Key::menu;
        break;
    default:
        if (code >= SDLK_F1 && code <= SDLK_F12) {
            key.key = static_cast<Key>(static_cast<int>(Key::f1) + (code - SDLK_F1));
        } else if (code >= 0x20 && code < SDLK_SCANCODE_MASK) {
            // SDL key codes of printable keys are their (lower-case) characters.
            key.key = Key::character;
            key.character = static_cast<char32_t>(code);
        }
        break;
    }
    return key;
}

}  // namespace fenn::gui::sdl
