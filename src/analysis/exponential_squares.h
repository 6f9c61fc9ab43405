#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "analysis/gauss_newton_log.h"

namespace zento {

// p1 ... p5 of v(t) = p3 - p1 exp(-t/p2) - p4 exp(-t/p5).
using ExponentialParameters = std::array<double, 5>;

// Start values for fitting a relaxation that rises over 0 <= t <= 1: the best, by the squares in v,
// of a grid of time constants from 0.005 to 5. For given ones the other parameters are a linear
// least-squares problem (Golub and Pereyra 1973, SIAM J. Numer. Anal. 10, 413). Takes every so many
// points of a long set. `parameters` is 3 or 5; where only one exponential can be told, two start
// from its halves. Nothing when no time constant gives a positive amplitude.
std::optional<ExponentialParameters> EstimateExponential(std::span<const double> t,
                                                         std::span<const double> v, int parameters);

// Sums over points of the products of the model's slopes dy/dp with each other and with
// y - model, counted from 1.
struct ExponentialSums {
  SSVGaussNewtonLog::Matrix curvature{};
  SSVGaussNewtonLog::Vector gradient{};
  double squares = 0;
};

// For y = p3 - sign (p1 exp(-x/p2) + p4 exp(-x/p5)).
ExponentialSums SumSlopes(std::span<const double> x, std::span<const double> y,
                          std::span<const double> p, int sign);

// The parameters of least squares in v (sign 1) near `p`, by damped Gauss-Newton steps (Marquardt
// 1963, J. Soc. Indust. Appl. Math. 11, 431), with all but p3 kept positive. Never worse than `p`.
// `converged` says whether a minimum was reached.
std::vector<double> RefineExponential(std::span<const double> t, std::span<const double> v,
                                      std::vector<double> p, bool& converged);

}  // namespace zento
