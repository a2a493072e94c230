#pragma once

namespace fenn::gui {

// The directions a size link or a size limit acts in.
enum class Directions { both, width, height };

constexpr bool actsOnWidth(Directions directions)
{
    return directions != Directions::height;
}

constexpr bool actsOnHeight(Directions directions)
{
    return directions != Directions::width;
}

}  // namespace fenn::gui
