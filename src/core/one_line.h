#pragma once

#include <string>

namespace zento {

// The value of a key is one line, whatever a person or another program put into the text: line
// breaks become blanks.
inline std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return text;
}

}  // namespace zento
