#pragma once

#include <cstddef>

#include "analysis/fft_tables.h"

namespace zento {

// All passes of a transform of at least 16 points and the reordering behind them; what comes out is
// multiplied by `factor`. Both do the same operations on the same numbers.
using FftPasses = void (*)(double* re, double* im, const FftTables& tables, double factor);
void FftPassesBaseline(double* re, double* im, const FftTables& tables, double factor);

// AVX2 needs functions compiled for it and a processor that has it. Elsewhere, and on Windows,
// where the compiler does not align the stack for it (GCC bug 54412), the baseline works alone.
#if defined(__x86_64__) && !defined(_WIN32)
#define ZENTO_FFT_AVX2
void FftPassesAvx2(double* re, double* im, const FftTables& tables, double factor);
#endif

}  // namespace zento
