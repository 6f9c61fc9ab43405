#include "analysis/koutecky_levich.h"

#include <cmath>

namespace zento {

std::optional<double> WindowMean(std::span<const double> x, std::span<const double> y,
                                 const PotentialWindow& window) {
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!window.Holds(x[i])) continue;
    sum += y[i];
    ++count;
  }
  if (count == 0) return std::nullopt;
  return sum / static_cast<double>(count);
}

std::optional<Point> LevichPoint(LevichMethod method, double rpm, double current, double area) {
  const double root = std::sqrt(rpm / 60);
  if (method == LevichMethod::kLevich) {
    if (!(rpm >= 0)) return std::nullopt;
    return Point{root, std::abs(current / area)};
  }
  if (!(rpm > 0) || current == 0) return std::nullopt;
  return Point{1 / root, area / std::abs(current)};
}

double& LevichQuantities::Of(LevichUnknown unknown) {
  switch (unknown) {
    case LevichUnknown::kViscosity:
      return viscosity;
    case LevichUnknown::kDiffusion:
      return diffusion;
    case LevichUnknown::kConcentration:
      return concentration;
    case LevichUnknown::kElectrons:
      break;
  }
  return electrons;
}

std::optional<double> SolveLevich(LevichMethod method, LevichUnknown unknown,
                                  LevichQuantities known, double slope) {
  // What stands for the unknown does not count.
  known.Of(unknown) = 1;
  const auto& [n, nu, d, c] = known;
  if (!(n > 0 && nu > 0 && d > 0 && c > 0 && slope > 0)) return std::nullopt;
  // Both plots give B: one as slope, the other as its inverse.
  const double b = method == LevichMethod::kLevich ? slope : 1 / slope;
  const double ratio = b / (kLevichFactor * n * std::pow(d, 2.0 / 3) * std::pow(nu, -1.0 / 6) * c);
  double solved = ratio;
  if (unknown == LevichUnknown::kViscosity) solved = std::pow(1 / ratio, 6);
  if (unknown == LevichUnknown::kDiffusion) solved = std::pow(ratio, 1.5);
  if (!std::isfinite(solved) || !(solved > 0)) return std::nullopt;
  return solved;
}

double LevichErrorFactor(LevichUnknown unknown) {
  switch (unknown) {
    case LevichUnknown::kViscosity:
      return 6;
    case LevichUnknown::kDiffusion:
      return 1.5;
    default:
      return 1;
  }
}

}  // namespace zento
