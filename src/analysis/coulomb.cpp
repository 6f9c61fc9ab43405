#include "analysis/coulomb.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zento {
namespace {

constexpr double kMostUneven = 3;

using Values = std::span<const double>;

bool FitsParabola(double h0, double h1) {
  return std::min(h0, h1) > 0 && std::max(h0, h1) <= kMostUneven * std::min(h0, h1);
}

double Trapezoid(double h, double f0, double f1) {
  return (f0 + f1) * h / 2;
}

// The parabola through (0, f0), (h0, f1), (h0 + h1, f2), integrated over its first step. The
// second one is the first one of the mirror image.
double FirstStep(double h0, double h1, double f0, double f1, double f2) {
  return f0 * h0 * (2 * h0 + 3 * h1) / (6 * (h0 + h1)) + f1 * h0 * (h0 + 3 * h1) / (6 * h1) -
         f2 * h0 * h0 * h0 / (6 * h1 * (h0 + h1));
}

// Over step p, between the points p and p + 1; the parabola starts at point `from`, p or p - 1.
double SimpsonStep(Values steps, Values y, std::size_t p, std::size_t from) {
  const double h0 = steps[from];
  const double h1 = steps[from + 1];
  if (!FitsParabola(h0, h1)) return Trapezoid(steps[p], y[p], y[p + 1]);
  return from == p ? FirstStep(h0, h1, y[p], y[p + 1], y[p + 2])
                   : FirstStep(h1, h0, y[p + 1], y[p], y[p - 1]);
}

}  // namespace

bool HasCharge(std::int32_t mode) {
  return XIsTime(mode) || IsSweep(mode);
}

std::vector<double> StepTimes(std::int32_t mode, Values x, double scan_rate) {
  std::vector<double> steps;
  for (std::size_t p = 1; p < x.size(); ++p) {
    const double step = std::abs(x[p] - x[p - 1]);
    steps.push_back(XIsTime(mode) ? step : step / scan_rate * 1000);
  }
  return steps;
}

std::vector<double> RunningIntegral(IntegrationRule rule, Values steps, Values y) {
  std::vector<double> sum(y.size());
  for (std::size_t p = 0; p + 1 < y.size(); ++p) {
    double part = 0;
    if (rule == IntegrationRule::kTrapezoid || steps.size() < 2) {
      part = Trapezoid(steps[p], y[p], y[p + 1]);
    } else {
      const bool first_of_pair = p % 2 == 0 && p + 1 < steps.size();
      part = SimpsonStep(steps, y, p, first_of_pair ? p : p - 1);
    }
    sum[p + 1] = sum[p] + part;
  }
  return sum;
}

std::optional<BaseLine> LineBetweenEnds(Values x, Values y) {
  if (x.empty() || x.back() == x.front()) return std::nullopt;
  return BaseLine{x.front(), y.front(), (y.back() - y.front()) / (x.back() - x.front())};
}

}  // namespace zento
