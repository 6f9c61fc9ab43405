#include "analysis/smoothing_passes.h"

#ifdef ZENTO_AVX2

// Everything from here on is compiled for AVX2; the header above is not.
#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "analysis/smoothing_kernel.h"

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

namespace zento {

const SmoothingPasses& Avx2Smoothing() {
  static constexpr SmoothingPasses kPasses{Average, Weigh, Suppress};
  return kPasses;
}

}  // namespace zento

#endif
