#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "analysis/line_fit.h"
#include "text/status_fwd.h"

namespace zento {

// Which reaction limits the current, told by the slope: the anodic current grows in size towards
// positive potentials, the cathodic one towards negative potentials. This holds whichever of them a
// potentiostat calls positive.
enum class TafelBranch { kAnodic, kCathodic };

// The rate law of a charge transfer far from equilibrium, where the reaction back and mass
// transport do not count (J. Tafel, Z. physik. Chem. 50 (1905) 641; A. J. Bard, L. R. Faulkner,
// Electrochemical Methods, 2nd ed. 2001, eqs. 3.4.15 and 3.4.16):
//   log10|i| = log10 i0 + (1 - alpha) n F eta / (2.303 R T)  on the anodic branch,
//   log10|i| = log10 i0 - alpha n F eta / (2.303 R T)        on the cathodic branch,
// with eta = E - E_redox in V, i and i0 in A, T = 298.15 K.
struct TafelFit {
  // The points with current, in their order.
  std::vector<double> overpotential;  // V
  std::vector<double> current;        // A
  std::vector<double> log_current;    // log10 of its absolute value in A

  LineQuality quality;  // of the line of log_current against overpotential
  TafelBranch branch = TafelBranch::kAnodic;
  double alpha_n = 0;     // cathodic alpha n, anodic (1 - alpha) n; above 0 on both
  double log_i0 = 0;      // log10 of i0 in A: the line's value at eta = 0
  double i0_density = 0;  // A/cm2, i0 over the area
  // Standard errors; nothing where the line has none.
  std::optional<double> alpha_n_error, log_i0_error, i0_density_error;
  std::size_t left_out = 0;  // points without current
  // The current's sign is not the usual one of its branch (anodic positive): the potentiostat
  // counts the other way, or the current falls again, as behind a peak.
  bool unusual_sign = false;
};

// Fits the line to potentials (V, against the same reference as `redox_potential`) and currents
// (A); `area` in cm2, above 0. Points without current are left out. Fails, with a text for a
// person, when currents of both signs are among the points, when there is no line through them
// (fewer than two, all at one potential), when the line is level, and when i0 is beyond a double.
Result<TafelFit> FitTafel(std::span<const double> potential, std::span<const double> current,
                          double redox_potential, double area);

}  // namespace zento
