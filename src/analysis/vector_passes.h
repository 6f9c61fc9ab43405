#pragma once

#include <cstddef>
#include <vector>

// The inner loops of the transform and of the filters, compiled once for every processor and once
// for those with AVX2. Both do the same operations on the same numbers.

// AVX2 needs functions compiled for it and a processor that has it. Elsewhere, and on Windows,
// where the compiler does not align the stack for it (GCC bug 54412), the baseline works alone.
#if defined(__x86_64__) && !defined(_WIN32)
#define ZENTO_AVX2
#endif

namespace zento {

// Of this processor.
inline bool HasAvx2() {
#ifdef ZENTO_AVX2
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has;
#else
  return false;
#endif
}

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

// All passes of a transform of at least 16 points and the reordering behind them; what comes out is
// multiplied by `factor`. Both do the same operations on the same numbers.
using FftPasses = void (*)(double* re, double* im, const FftTables& tables, double factor);
void FftPassesBaseline(double* re, double* im, const FftTables& tables, double factor);

#ifdef ZENTO_AVX2
void FftPassesAvx2(double* re, double* im, const FftTables& tables, double factor);
#endif

// The filters on `blocks` times kSmoothedAtOnce points. `y` begins `half` values before the first
// point and goes on for `half` values behind the last; `out` does not overlap it.
inline constexpr std::size_t kSmoothedAtOnce = 16;

struct SmoothingPasses {
  void (*average)(const double* y, double* out, std::size_t blocks, std::size_t half);
  // `a` holds the centre coefficient and those of the offsets 1 to `half`.
  void (*weigh)(const double* y, double* out, std::size_t blocks, std::size_t half, const double* a,
                double divisor);
  void (*suppress)(const double* y, double* out, std::size_t blocks, std::size_t half, double w);
};

// Both do the same operations on the same numbers.
const SmoothingPasses& BaselineSmoothing();
#ifdef ZENTO_AVX2
const SmoothingPasses& Avx2Smoothing();
#endif

}  // namespace zento
