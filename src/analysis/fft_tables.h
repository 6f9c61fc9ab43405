#pragma once

#include <cstddef>
#include <vector>

namespace zento {

// The twiddles of one transform length, exp(i sign j theta) with theta = 6.2831853071796 / N.
struct FftTables {
  struct Twiddles {
    std::vector<double> c, s;
  };
  std::size_t points = 0;
  // Of block B in the passes with a half of 4 and more: j is B's bits reversed. It is the same for
  // all of them, as their blocks differ only in number. Length N/8.
  Twiddles block;
  // In the order of j, for the last pass, whose half is 1. Length N/2.
  Twiddles last;
  // Every second one of `last`, for the pass before it. Length N/4.
  Twiddles last_but_one;
};

// The number with the lowest `bits` bits of `value` in reverse order.
constexpr std::size_t ReversedBits(std::size_t value, int bits) {
  std::size_t reversed = 0;
  for (int i = 0; i < bits; ++i) {
    reversed = reversed << 1 | (value >> i & 1);
  }
  return reversed;
}

// For a power of two from 2 on. Valid until the thread ends.
const FftTables& TablesFor(std::size_t points, bool negative);

}  // namespace zento
