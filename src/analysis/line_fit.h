#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace zento {

// y = slope x + intercept.
struct StraightLine {
  double slope = 0;
  double intercept = 0;
};

// Ordinary least squares over the first `count` points (Gauss 1809; P. R. Bevington, Data Reduction
// and Error Analysis for the Physical Sciences, 1969, eq. 6-12):
//   slope = (n Sxy - Sx Sy) / (n Sxx - Sx^2), intercept = (Sy - Sx slope) / n.
// Nothing with fewer than two points, when all abscissae are equal, and when the result is not
// finite. `count` above the number of points counts as that.
std::optional<StraightLine> FitLine(std::span<const double> x, std::span<const double> y,
                                    std::size_t count);

// Least squares through the origin over the first `count` points: slope = Sxy / Sxx. Nothing
// without points, when all abscissae are 0, and when the result is not finite.
std::optional<double> FitThroughOrigin(std::span<const double> x, std::span<const double> y,
                                       std::size_t count);

// How well a line describes its points.
struct LineQuality {
  std::size_t points = 0;
  StraightLine line;
  bool through_origin = false;
  // Share of the scatter of y that the line accounts for: about the mean of y, for a line through
  // the origin about 0. 1 where y does not scatter and the line meets it.
  double r_squared = 0;
  // Standard errors (Bevington, eqs. 6-15, 6-23). Nothing where no point is left over to tell the
  // scatter: two points on a line, one on a line through the origin.
  std::optional<double> slope_error;
  std::optional<double> intercept_error;  // nothing for a line through the origin
};

LineQuality QualityOf(std::span<const double> x, std::span<const double> y,
                      const StraightLine& line);
LineQuality QualityThroughOrigin(std::span<const double> x, std::span<const double> y,
                                 double slope);

}  // namespace zento
