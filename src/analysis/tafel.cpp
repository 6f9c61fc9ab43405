#include "analysis/tafel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

// CODATA 2018.
constexpr double kFaraday = 96485.33212;      // C/mol
constexpr double kGasConstant = 8.314462618;  // J/(mol K)
constexpr double kTemperature = 298.15;       // K
constexpr double kVoltsPerDecade = std::numbers::ln10 * kGasConstant * kTemperature / kFaraday;

Status CheckSigns(std::span<const double> currents) {
  const auto negative = static_cast<std::size_t>(
      std::count_if(currents.begin(), currents.end(), [](double i) { return i < 0; }));
  const std::size_t positive = currents.size() - negative;
  if (negative == 0 || positive == 0) return {};
  return Status::Failure("The chosen points have currents of both signs (" + PlainNumber(positive) +
                         " positive, " + PlainNumber(negative) +
                         " negative). Please choose points of one branch.");
}

void KeepPoints(std::span<const double> potential, std::span<const double> current,
                double redox_potential, TafelFit& fit) {
  const std::size_t points = std::min(potential.size(), current.size());
  for (std::size_t p = 0; p < points; ++p) {
    if (current[p] == 0) continue;
    fit.overpotential.push_back(potential[p] - redox_potential);
    fit.current.push_back(current[p]);
    fit.log_current.push_back(std::log10(std::fabs(current[p])));
  }
  fit.left_out = points - fit.current.size();
}

template <typename Scale>
std::optional<double> Scaled(const std::optional<double>& error, Scale scale) {
  return error ? std::optional<double>(*error * scale) : std::nullopt;
}

}  // namespace

Result<TafelFit> FitTafel(std::span<const double> potential, std::span<const double> current,
                          double redox_potential, double area) {
  TafelFit fit;
  KeepPoints(potential, current, redox_potential, fit);
  const Status signs = CheckSigns(fit.current);
  if (!signs.ok()) return signs;
  const auto line = FitLine(fit.overpotential, fit.log_current, fit.current.size());
  if (!line) {
    return Status::Failure(
        "No line can be drawn: at least two points with current at different potentials are "
        "needed.");
  }
  // The slope of equal currents is 0 only up to rounding.
  const auto [least, most] = std::minmax_element(fit.log_current.begin(), fit.log_current.end());
  if (*least == *most || line->slope == 0) {
    return Status::Failure("The current does not change with the potential.");
  }

  fit.quality = QualityOf(fit.overpotential, fit.log_current, *line);
  fit.branch = line->slope > 0 ? TafelBranch::kAnodic : TafelBranch::kCathodic;
  fit.unusual_sign = (fit.current.front() > 0) != (line->slope > 0);
  fit.alpha_n = std::fabs(line->slope) * kVoltsPerDecade;
  fit.alpha_n_error = Scaled(fit.quality.slope_error, kVoltsPerDecade);
  fit.log_i0 = line->intercept;
  fit.log_i0_error = fit.quality.intercept_error;
  fit.i0_density = std::pow(10.0, line->intercept) / area;
  fit.i0_density_error = Scaled(fit.log_i0_error, std::numbers::ln10 * fit.i0_density);
  if (!std::isfinite(fit.i0_density) || fit.i0_density == 0) {
    return Status::Failure(
        "The line reaches the redox potential at no possible current (log i0 = " +
        PlainNumber(fit.log_i0, 4) + "). Please check the redox potential.");
  }
  return fit;
}

}  // namespace zento
