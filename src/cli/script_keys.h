#pragma once

#include <optional>
#include <string_view>

#include "host/control.h"

namespace zento {

// "Enter", "Escape", "Delete", "Backspace", "Up", "Down", "Left", "Right", "Tab" or one character.
std::optional<Key> ParseKey(std::string_view name);

// Presses a key while `control` has the focus, as it acts in a window: characters are typed, Enter
// in a box that does not handle it itself accepts the entry and presses the default button, Escape
// presses the cancel button, arrows step the up-down beside the box.
Status PressKey(Control& control, Key key);

}  // namespace zento
