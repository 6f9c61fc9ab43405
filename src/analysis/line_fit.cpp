#include "analysis/line_fit.h"

#include <algorithm>
#include <cmath>

namespace zento {
namespace {

using Values = std::span<const double>;

std::size_t Count(Values x, Values y, std::size_t count) {
  return std::min({count, x.size(), y.size()});
}

double Mean(Values values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

// Sum of the squared distances from `centre`.
double SquaresAbout(Values values, double centre) {
  double sum = 0;
  for (const double value : values) sum += (value - centre) * (value - centre);
  return sum;
}

double SquaredResiduals(Values x, Values y, const StraightLine& line) {
  double sum = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double residual = y[i] - (line.slope * x[i] + line.intercept);
    sum += residual * residual;
  }
  return sum;
}

double ShareExplained(double residuals, double scatter) {
  if (scatter > 0) return 1 - residuals / scatter;
  return residuals > 0 ? 0 : 1;
}

}  // namespace

std::optional<StraightLine> FitLine(Values x, Values y, std::size_t count) {
  const std::size_t n = Count(x, y, count);
  if (n < 2) return std::nullopt;
  // The determinant of equal abscissae is 0 only up to rounding.
  const auto [least, most] = std::minmax_element(x.begin(), x.begin() + static_cast<long>(n));
  if (*least == *most) return std::nullopt;
  double sx = 0, sy = 0, sxx = 0, sxy = 0;
  for (std::size_t i = 0; i < n; ++i) {
    sx += x[i];
    sy += y[i];
    sxx += x[i] * x[i];
    sxy += x[i] * y[i];
  }
  const auto points = static_cast<double>(n);
  const double slope = (points * sxy - sx * sy) / (points * sxx - sx * sx);
  const double intercept = (sy - sx * slope) / points;
  if (!std::isfinite(slope) || !std::isfinite(intercept)) return std::nullopt;
  return StraightLine{slope, intercept};
}

std::optional<double> FitThroughOrigin(Values x, Values y, std::size_t count) {
  double sxx = 0, sxy = 0;
  for (std::size_t i = 0; i < Count(x, y, count); ++i) {
    sxx += x[i] * x[i];
    sxy += x[i] * y[i];
  }
  const double slope = sxy / sxx;
  if (!(sxx > 0) || !std::isfinite(slope)) return std::nullopt;
  return slope;
}

LineQuality QualityOf(Values x, Values y, const StraightLine& line) {
  const std::size_t n = std::min(x.size(), y.size());
  LineQuality quality{n, line, false, 0, {}, {}};
  if (n == 0) return quality;
  const Values abscissae = x.first(n);
  const Values ordinates = y.first(n);
  const double residuals = SquaredResiduals(abscissae, ordinates, line);
  quality.r_squared = ShareExplained(residuals, SquaresAbout(ordinates, Mean(ordinates)));
  const double mean = Mean(abscissae);
  const double spread = SquaresAbout(abscissae, mean);
  if (n < 3 || !(spread > 0)) return quality;
  const double variance = residuals / static_cast<double>(n - 2);
  quality.slope_error = std::sqrt(variance / spread);
  quality.intercept_error =
      std::sqrt(variance * (1 / static_cast<double>(n) + mean * mean / spread));
  return quality;
}

LineQuality QualityThroughOrigin(Values x, Values y, double slope) {
  const std::size_t n = std::min(x.size(), y.size());
  const StraightLine line{slope, 0};
  LineQuality quality{n, line, true, 0, {}, {}};
  if (n == 0) return quality;
  const double residuals = SquaredResiduals(x.first(n), y.first(n), line);
  quality.r_squared = ShareExplained(residuals, SquaresAbout(y.first(n), 0));
  const double spread = SquaresAbout(x.first(n), 0);
  if (n < 2 || !(spread > 0)) return quality;
  quality.slope_error = std::sqrt(residuals / static_cast<double>(n - 1) / spread);
  return quality;
}

}  // namespace zento
