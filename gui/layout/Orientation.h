#pragma once

namespace fenn::gui {

// The direction in which a grow layout lines up its items, and in which a
// slider, scroll bar or splitter runs.
enum class Orientation { horizontal, vertical };

}  // namespace fenn::gui
