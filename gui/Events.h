#pragma once

#include <cstdint>

#include "foundation/String.h"
#include "gui/Geometry.h"

namespace fenn::gui {

// The input events of the toolkit, already translated from the window
// system's own. Positions are in the receiving window's coordinates.

enum class MouseButton
{
    none,
    left,
    middle,
    right,
};

// Modifier keys held during an event, as bits.
enum Modifier : std::uint32_t
{
    modifierNone = 0,
    modifierShift = 1,
    modifierControl = 2,
    modifierAlt = 4,
};

struct CMouseEvent
{
    CPoint position;
    MouseButton button = MouseButton::none;
    // 1 for a single press, 2 for the second press of a double click.
    int clicks = 1;
    std::uint32_t modifiers = modifierNone;
};

struct CWheelEvent
{
    CPoint position;
    // Lines (notches) scrolled; positive is down and right.
    int deltaX = 0;
    int deltaY = 0;
    std::uint32_t modifiers = modifierNone;
};

// The keys the toolkit gives a meaning to; every other key arrives as
// Key::character with its character, or as Key::other.
enum class Key
{
    other,
    character,
    enter,
    escape,
    tab,
    backspace,
    deleteKey,
    insert,
    left,
    right,
    up,
    down,
    home,
    end,
    pageUp,
    pageDown,
    space,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    menu,
};

struct CKeyEvent
{
    Key key = Key::other;
    // The key's character, lower-case, for Key::character ("a" for the A key
    // whatever the shift state); 0 otherwise.
    char32_t character = 0;
    std::uint32_t modifiers = modifierNone;
    bool repeat = false;
};

// Text typed, after the keyboard layout and the input method: one or more
// characters to insert.
struct CTextInputEvent
{
    String text;
};

// Text the input method is composing and has not committed yet; an empty
// text ends the composition.
struct CTextEditingEvent
{
    String text;
    int cursor = 0;
};

}  // namespace fenn::gui
