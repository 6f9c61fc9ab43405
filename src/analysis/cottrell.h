#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "analysis/line_fit.h"

// The current after a potential step into the limiting region at a plane electrode in a solution
// at rest (F. G. Cottrell, Z. Phys. Chem. 42, 385, 1903):
//   i = n F A C sqrt(D / (pi t)),
// so that i against 1/sqrt(t) is a straight line of slope a, and
//   D = (sqrt(pi) a / (n F A C))^2.

namespace zento {

// What a Cottrell plot shows: 1/sqrt(t) in s^-1/2 against the current in A.
struct CottrellPoints {
  std::vector<double> x;
  std::vector<double> y;
};

// Times in s and currents in A of one length. Points at time 0 or without current have no place in
// the plot; so have points before the step, at negative times.
CottrellPoints MakeCottrellPoints(std::span<const double> time, std::span<const double> current);

enum class CottrellLine { kThroughOrigin = 0, kWithIntercept = 1 };

// Nothing where the points give no line.
std::optional<LineQuality> FitCottrell(const CottrellPoints& points, CottrellLine line);

// cm2/s, of a slope in A s^1/2; electrons, area (cm2) and concentration (mol/cm3) above 0.
double ApparentDiffusion(double slope, double electrons, double area, double concentration);

}  // namespace zento
