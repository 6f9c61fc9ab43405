#include "analysis/vector_passes.h"

#ifdef ZENTO_AVX2

// Everything from here on is compiled for AVX2; the headers above are not, so that nothing of the
// standard library that needs it can reach a processor without it.
#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

#include "analysis/vector_kernels.h"

namespace zento {

void FftPassesAvx2(double* re, double* im, const FftTables& tables, double factor) {
  AllPasses(re, im, tables, factor);
}

const SmoothingPasses& Avx2Smoothing() {
  static constexpr SmoothingPasses kPasses{Average, Weigh, Suppress};
  return kPasses;
}

}  // namespace zento

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
