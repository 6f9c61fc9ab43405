#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace zento {

// Radix-2 Fourier transform in place (Cooley, Tukey, Math. Comput. 19 (1965) 297, decimation in
// frequency's order of blocks with the twiddles in front):
//
//   X(k) = sum over n of x(n) exp(i sign 2 pi n k / N),  k = 0 to N - 1
//
// and, with sign -1, all of it divided by N, so that a transform with +1 is undone by one with -1.
// `re` and `im` hold N values each and do not overlap; N is a power of two (others, and 0, leave
// both arrays as they are); `sign` is +1 or -1.
//
// The result is defined to the last bit: theta = 6.2831853071796 / N, twiddles cos(j theta) and
// sin(sign j theta) with j in bit-reversed order, butterflies
//   t = (c re[k] - s im[k], s re[k] + c im[k]),  x[k] = x[i] - t,  x[i] = x[i] + t
// for half = N/2, N/4, ... 1, without fused multiply-adds. It is the same on every machine whose
// sine and cosine are.
//
// Twiddles are computed when a size is first met and kept by the thread: 14 bytes a point and sign.
// No other memory is taken.
void FFT(double* re, double* im, std::size_t N, double sign);

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
