#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/control.h"

namespace zento {

// The pieces of a script line.

// Takes the next word, up to a blank or tab, off the front of `rest`, with the blanks before it.
// Empty at the end.
std::string_view TakeWord(std::string_view& rest);

// What is left behind the last word as one text: without the one blank that separates it, other
// blanks included.
std::string_view RestAsText(std::string_view rest);

// "frmMeasureCV.txtVoltSetting(2)".
struct ControlAddress {
  std::string form;
  std::string control;
  int index = -1;  // -1: not an element of an array
};
std::optional<ControlAddress> ParseControlAddress(std::string_view text);

// "2.5s", "300ms", "10min" or "8h" in microseconds; a plain number is seconds. Nothing when it is
// no such duration, negative, or above a thousand years.
std::optional<std::int64_t> ParseDuration(std::string_view text);

std::optional<int> ParseIndex(std::string_view text);

// "Enter", "Escape", "Delete", "Backspace", "Up", "Down", "Left", "Right", "Tab" or one character.
std::optional<Key> ParseKey(std::string_view name);

// Presses a key while `control` has the focus, as it acts in a window: characters are typed, Enter
// in a box that does not handle it itself accepts the entry and presses the default button, Escape
// presses the cancel button, arrows step the up-down beside the box.
Status PressKey(Control& control, Key key);

}  // namespace zento
