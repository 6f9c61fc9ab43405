#pragma once

#include <cstdint>

namespace zento {

// An opaque colour, components 0 to 255.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Colour&, const Colour&) = default;
};

}  // namespace zento
