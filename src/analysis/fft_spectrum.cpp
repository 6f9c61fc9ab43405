#include "analysis/fft_spectrum.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "analysis/fft.h"

namespace zento {

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
