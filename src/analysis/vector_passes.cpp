#include "analysis/vector_passes.h"

#include "analysis/vector_kernels.h"

namespace zento {

void FftPassesBaseline(double* re, double* im, const FftTables& tables, double factor) {
  AllPasses(re, im, tables, factor);
}

const SmoothingPasses& BaselineSmoothing() {
  static constexpr SmoothingPasses kPasses{Average, Weigh, Suppress};
  return kPasses;
}

}  // namespace zento
