#pragma once

#include <span>
#include <string_view>

#include "cli/window_options.h"

namespace zento {

// A window that makes new points of a track, as a command: it calculates with cmdCalc and writes
// with one of two buttons.
struct TransformCommand {
  WindowCommand window;
  // Writes into the track that the window shows; empty when the window always asks for another.
  std::string_view update_button;
  // Writes into the track that `destination` names, under the title in `title`.
  std::string_view record_button;
  std::string_view destination;
  std::string_view title;
  // What the help says about where the result goes.
  std::string_view into_help;
};

std::span<const TransformCommand> TransformCommands();

}  // namespace zento
