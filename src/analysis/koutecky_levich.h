#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "host/surface.h"

// The rotation-rate dependence of the current at a rotating disk electrode, with the rotation
// frequency f in Hz and the current density j in A/cm2:
//   Levich:            j   = B sqrt(f)                (V. G. Levich, Acta Physicochim. URSS 17,
//                                                      257, 1942)
//   Koutecky-Levich:   1/j = 1/jk + 1/(B sqrt(f))     (J. Koutecky and V. G. Levich, Zh. Fiz. Khim.
//                                                      32, 1565, 1958)
//   (A. J. Bard and L. R. Faulkner, Electrochemical Methods, 2nd ed., 2001, eqs. 9.3.22, 9.3.39)
//   B = 1.554 F n D^(2/3) nu^(-1/6) C
// 1.554 is 0.620 sqrt(2 pi) as it is usually rounded; the exact factor is 1.5552, so that n comes
// out 0.08 % high for that reason.

namespace zento {

inline constexpr double kLevichFactor = 1.554 * 96485;  // C/mol, f in Hz

// Low edge included, high edge excluded, in V.
struct PotentialWindow {
  double low = 0;
  double high = 0;
  bool Holds(double x) const { return low <= x && x < high; }
};

// The mean of y over the points whose x lies inside the window; nothing when none does. The columns
// are of one length.
std::optional<double> WindowMean(std::span<const double> x, std::span<const double> y,
                                 const PotentialWindow& window);

enum class LevichMethod { kKouteckyLevich = 0, kLevich = 1 };

// One point of the plot: (1/sqrt(f), 1/j) or (sqrt(f), j), in Hz and cm2/A or A/cm2. `rpm` is the
// rotation rate, `current` in A, of either sign, `area` in cm2 and above 0. Nothing where the
// point has no place in the plot: turning backwards, and for Koutecky-Levich standing still or
// without current.
std::optional<Point> LevichPoint(LevichMethod method, double rpm, double current, double area);

enum class LevichUnknown {
  kElectrons = 0,
  kViscosity = 1,
  kDiffusion = 2,
  kConcentration = 3,
};

struct LevichQuantities {
  double electrons = 0;
  double viscosity = 0;      // kinematic, cm2/s
  double diffusion = 0;      // cm2/s
  double concentration = 0;  // mol/cm3
  double& Of(LevichUnknown unknown);
};

// Solves the slope of the plot for one quantity, given the other three. Nothing unless those three
// and the slope are above 0 and the result is a finite number above 0.
std::optional<double> SolveLevich(LevichMethod method, LevichUnknown unknown,
                                  LevichQuantities known, double slope);

// The relative standard error of a solved quantity over that of the slope: the power in which the
// slope enters it (1, 6, 3/2, 1).
double LevichErrorFactor(LevichUnknown unknown);

}  // namespace zento
