#pragma once

#include <cmath>

namespace zento {

// The grid step of an axis from a to b: 1, 2 or 5 times a power of ten, so that the range is cut
// into 4 to 10 pieces. 1 for an empty range.
inline double TickStep(double a, double b) {
  const double half = std::fabs(b - a) / 2;
  if (!(half > 0) || !std::isfinite(half)) return 1;
  double step = std::pow(10.0, std::floor(std::log10(half)));
  if (half / step > 5) step = 2 * step;
  if (half / step < 2) step = step / 2;
  return step;
}

}  // namespace zento
