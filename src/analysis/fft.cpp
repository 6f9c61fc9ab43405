#include "analysis/fft.h"

#include <bit>
#include <utility>

#include "analysis/fft_passes.h"
#include "analysis/fft_tables.h"

namespace zento {
namespace {

FftPasses BestPasses() {
#ifdef ZENTO_AVX2
  if (HasAvx2()) return FftPassesAvx2;
#endif
  return FftPassesBaseline;
}

// Transforms too short for the passes that take four points at a time.
void ShortTransform(double* re, double* im, const FftTables& tables, double factor) {
  const std::size_t points = tables.points;
  const int bits = std::countr_zero(points);
  for (std::size_t half = points / 2; half >= 1; half /= 2) {
    for (std::size_t block = 0; block < points / (2 * half); ++block) {
      const std::size_t j = ReversedBits(block, bits - 1);
      const double c = tables.last.c[j];
      const double s = tables.last.s[j];
      for (std::size_t i = 2 * half * block; i < 2 * half * block + half; ++i) {
        const std::size_t k = i + half;
        const double tr = c * re[k] - s * im[k];
        const double ti = s * re[k] + c * im[k];
        re[k] = re[i] - tr;
        im[k] = im[i] - ti;
        re[i] = re[i] + tr;
        im[i] = im[i] + ti;
      }
    }
  }
  for (std::size_t i = 0; i < points; ++i) {
    re[i] *= factor;
    im[i] *= factor;
  }
  for (std::size_t i = 0; i < points; ++i) {
    const std::size_t j = ReversedBits(i, bits);
    if (i >= j) continue;
    std::swap(re[i], re[j]);
    std::swap(im[i], im[j]);
  }
}

}  // namespace

void FFT(double* re, double* im, std::size_t N, double sign) {
  if (N < 2 || !std::has_single_bit(N)) return;
  static const FftPasses passes = BestPasses();
  const bool negative = sign < 0;
  // 1/N is exact, so that multiplying by it rounds as dividing by N does.
  const double factor = negative ? 1 / static_cast<double>(N) : 1;
  const FftTables& tables = TablesFor(N, negative);
  if (N < 16) {
    ShortTransform(re, im, tables, factor);
  } else {
    passes(re, im, tables, factor);
  }
}

}  // namespace zento
