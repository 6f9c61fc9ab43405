#pragma once

#include <cstddef>

#include "analysis/avx2.h"
#include "analysis/fft_tables.h"

namespace zento {

// All passes of a transform of at least 16 points and the reordering behind them; what comes out is
// multiplied by `factor`. Both do the same operations on the same numbers.
using FftPasses = void (*)(double* re, double* im, const FftTables& tables, double factor);
void FftPassesBaseline(double* re, double* im, const FftTables& tables, double factor);

#ifdef ZENTO_AVX2
void FftPassesAvx2(double* re, double* im, const FftTables& tables, double factor);
#endif

}  // namespace zento
