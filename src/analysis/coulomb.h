#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/track.h"

namespace zento {

enum class IntegrationRule { kTrapezoid = 0, kSimpson = 1 };

// Whether a track of the mode has a charge: potential steps and sweeps do.
bool HasCharge(std::int32_t mode);

// The time in s from each point to the next, one entry fewer than points: of potential steps the
// difference of the times x (s), of sweeps |dE| over the scan rate (mV/s, above 0), which runs on
// over a turning point.
std::vector<double> StepTimes(std::int32_t mode, std::span<const double> x, double scan_rate);

// The integral of y from the first point to each point, 0 at the first one; `steps` as StepTimes
// gives them, one entry fewer than y.
//
// Simpson's rule on uneven steps: the parabola through each three neighbouring points (N. Shklov,
// Amer. Math. Monthly 67 (1960) 1022), its part up to the middle point included, so that every
// point has its charge. A last single step takes the parabola of the last three points. Where the
// two steps of a parabola differ more than threefold, as at repeated abscissae, it would follow the
// noise; there the trapezoid stands.
std::vector<double> RunningIntegral(IntegrationRule rule, std::span<const double> steps,
                                    std::span<const double> y);

// A straight line in the plane of potential and current, V and A.
struct BaseLine {
  double x0 = 0, y0 = 0;
  double slope = 0;
  double At(double x) const { return (x - x0) * slope + y0; }
};

// Through the first and the last point; nothing when both have one potential.
std::optional<BaseLine> LineBetweenEnds(std::span<const double> x, std::span<const double> y);

}  // namespace zento
