#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace zento {

// Fourier transform of a column of a track, with zeros behind its points. The lists hold indexes 0
// to N; index N, which a column of N points does not reach, is always 0.
struct Spectrum {
  std::vector<double> re, im;     // in the column's unit, not divided by N
  std::vector<double> magnitude;  // sqrt(re^2 + im^2)

  std::size_t Length() const { return re.empty() ? 0 : re.size() - 1; }  // N
};

// The power of two above `points`: 1000 points take 1024, 1024 points take 2048.
std::size_t TransformLength(std::size_t points);

// Empty for no values.
Spectrum SpectrumOf(std::span<const double> values);

inline constexpr double kNoCutOff = std::numeric_limits<double>::infinity();

// The first `points` values of the column whose spectrum is given without what oscillates with
// `cut_off` or faster. `df` is the distance of two bins, in the unit of `cut_off` (Hz). The zeros
// behind the points take part, so the ends of a column that is not near 0 there are bent.
std::vector<double> LowPass(const Spectrum& spectrum, double df, double cut_off,
                            std::size_t points);

}  // namespace zento
