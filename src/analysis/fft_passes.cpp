#include "analysis/fft_passes.h"

#include "analysis/fft_kernel.h"

namespace zento {

void FftPassesBaseline(double* re, double* im, const FftTables& tables, double factor) {
  AllPasses(re, im, tables, factor);
}

}  // namespace zento
