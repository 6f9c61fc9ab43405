#pragma once

#include <cstddef>

#include "analysis/avx2.h"

namespace zento {

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
