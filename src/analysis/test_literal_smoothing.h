#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "analysis/smoothing.h"

namespace zento {

// The filters as they are defined, one sum a point. For tests and as a peer of benchmarks.
inline std::vector<double> LiteralSmooth(const std::vector<double>& y, const Smoothing& s) {
  const auto end = static_cast<long>(y.size()) - 1;
  const auto at = [&](long q) { return y[static_cast<std::size_t>(std::clamp(q, 0L, end))]; };
  const long half = s.points / 2;
  std::vector<double> out(y.size());
  for (long p = 0; p <= end; ++p) {
    double& result = out[static_cast<std::size_t>(p)];
    double sum = 0;
    if (s.method == SmoothingMethod::kMovingAverage) {
      for (long k = -half; k <= half; ++k) sum += at(p + k);
      result = sum / s.points;
    } else if (s.method == SmoothingMethod::kSavitzkyGolay) {
      sum = s.row.a[0] * at(p);
      for (long k = 1; k <= half; ++k) {
        sum += s.row.a[static_cast<std::size_t>(k)] * (at(p - k) + at(p + k));
      }
      result = sum / s.row.divisor;
    } else if (p == 0) {
      result = at(p);
    } else {
      for (long k = -half; k <= half; ++k) {
        if (k != 0) sum += at(p + k);
      }
      const double m = sum / (s.points - 1);
      const double d = std::fabs(at(p) - m);
      result = s.w + d == 0 ? m : s.w / (s.w + d) * (at(p) - m) + m;
    }
  }
  for (long p = 0; p <= end && s.skip > 0; ++p) {
    if (p <= s.skip || p >= end - s.skip) out[static_cast<std::size_t>(p)] = at(p);
  }
  return out;
}

}  // namespace zento
