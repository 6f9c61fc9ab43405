#include "analysis/fft.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <memory>
#include <utility>

#include "analysis/vector_passes.h"

namespace zento {
namespace {

FftTables::Twiddles EverySecond(const FftTables::Twiddles& all) {
  FftTables::Twiddles some;
  for (std::size_t j = 0; j < all.c.size(); j += 2) {
    some.c.push_back(all.c[j]);
    some.s.push_back(all.s[j]);
  }
  return some;
}

FftTables MakeTables(std::size_t points, bool negative) {
  const double sign = negative ? -1 : 1;
  const double theta = 6.2831853071796 / static_cast<double>(points);
  FftTables tables;
  tables.points = points;
  for (std::size_t j = 0; j < points / 2; ++j) {
    tables.last.c.push_back(std::cos(static_cast<double>(j) * theta));
    tables.last.s.push_back(std::sin(sign * static_cast<double>(j) * theta));
  }
  tables.last_but_one = EverySecond(tables.last);
  const int bits = std::countr_zero(points / 2);
  for (std::size_t b = 0; b < points / 8; ++b) {
    const std::size_t j = ReversedBits(b, bits);
    tables.block.c.push_back(tables.last.c[j]);
    tables.block.s.push_back(tables.last.s[j]);
  }
  return tables;
}

FftPasses BestPasses() {
#ifdef ZENTO_AVX2
  if (HasAvx2()) return FftPassesAvx2;
#endif
  return FftPassesBaseline;
}

// Transforms too short for the passes that take four points at a time: the definition, with the
// twiddle of block b that of b's bits reversed.
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

const FftTables& TablesFor(std::size_t points, bool negative) {
  constexpr std::size_t kBits = 8 * sizeof(std::size_t);
  thread_local std::array<std::unique_ptr<FftTables>, 2 * kBits> kept;
  const auto power = static_cast<std::size_t>(std::countr_zero(points));
  std::unique_ptr<FftTables>& tables = kept[2 * power + (negative ? 1 : 0)];
  if (tables == nullptr) tables = std::make_unique<FftTables>(MakeTables(points, negative));
  return *tables;
}

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

std::size_t TransformLength(std::size_t points) {
  return points == 0 ? 0 : std::bit_ceil(points + 1);
}

Spectrum SpectrumOf(std::span<const double> values) {
  Spectrum spectrum;
  if (values.empty()) return spectrum;
  const std::size_t length = TransformLength(values.size());
  spectrum.re.assign(values.begin(), values.end());
  spectrum.re.resize(length + 1);
  spectrum.im.resize(length + 1);
  FFT(spectrum.re.data(), spectrum.im.data(), length, +1);
  spectrum.magnitude.resize(length + 1);
  for (std::size_t k = 0; k <= length; ++k) {
    spectrum.magnitude[k] =
        std::sqrt(spectrum.re[k] * spectrum.re[k] + spectrum.im[k] * spectrum.im[k]);
  }
  return spectrum;
}

std::vector<double> LowPass(const Spectrum& spectrum, double df, double cut_off,
                            std::size_t points) {
  const std::size_t length = spectrum.Length();
  std::vector<double> re = spectrum.re;
  std::vector<double> im = spectrum.im;
  for (std::size_t k = 0; k <= length / 2 && length > 0; ++k) {
    if (!(static_cast<double>(k) * df >= cut_off)) continue;
    re[k] = im[k] = 0;
    re[length - k] = im[length - k] = 0;
  }
  FFT(re.data(), im.data(), length, -1);
  re.resize(std::min(points, re.size()));
  return re;
}

}  // namespace zento
