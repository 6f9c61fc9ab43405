#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

namespace zento {

// A sum of which terms can be taken away again without leaving a trace: in fixed point, to 2^-100
// of the largest term. For sums over windows that move along many points.
class ExactSum {
 public:
  // Terms are to be among `values`, each at most once in the sum at a time; all are finite.
  explicit ExactSum(std::span<const double> values) {
    double most = 0;
    for (const double value : values) most = std::max(most, std::fabs(value));
    int exponent = 0;
    std::frexp(most, &exponent);
    const int room = kBits - static_cast<int>(std::bit_width(values.size())) - exponent;
    scale_ = std::ldexp(1.0, std::min(room, kMostExponent));
  }
  void Add(double term) { sum_ += Fixed(term); }
  void Subtract(double term) { sum_ -= Fixed(term); }
  void Clear() { sum_ = 0; }
  double value() const { return static_cast<double>(sum_) / scale_; }

 private:
  __extension__ using Int128 = __int128;
  static constexpr int kBits = 125;
  static constexpr int kMostExponent = 1000;  // of a scale that is still a double
  Int128 Fixed(double term) const { return static_cast<Int128>(term * scale_); }

  double scale_ = 1;
  Int128 sum_ = 0;
};

}  // namespace zento
