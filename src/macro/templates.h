#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zento {

// A block of commands that the editor inserts ready to be filled in.
struct MacroTemplate {
  std::string_view control;  // the menu entry's name
  std::string_view caption;
  std::string_view block;  // every line ends with "\r\n"
};

// In the order of the menu.
std::span<const MacroTemplate> MacroTemplates();

}  // namespace zento
