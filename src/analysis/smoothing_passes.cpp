#include "analysis/smoothing_passes.h"

#include "analysis/smoothing_kernel.h"

namespace zento {

const SmoothingPasses& BaselineSmoothing() {
  static constexpr SmoothingPasses kPasses{Average, Weigh, Suppress};
  return kPasses;
}

}  // namespace zento
