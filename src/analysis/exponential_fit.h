#pragma once

#include <span>
#include <vector>

#include "analysis/gauss_newton_log.h"
#include "text/status_fwd.h"

namespace zento {

struct ExponentialFitOptions {
  // p1, p2, p3 (p4, p5), in the units of the data; amplitudes and time constants positive. Empty:
  // estimated from the data, and should that lead nowhere, random.
  std::vector<double> start;
  // One for each point, not negative; multiplies the residual of the point's logarithm, which is
  // then all that is minimised. Empty: least squares of y.
  std::vector<double> weights;
  // Random starts that are tried where no other led anywhere; the best one counts.
  int attempts = 10;
  // Numbers in [0, 1). Empty: the same ones for every fit.
  SSVGaussNewtonLog::Uniform random;
};

// y(x) = p3 - s (p1 exp(-x/p2) [+ p4 exp(-x/p5)]), see SSVGaussNewtonLog.
struct ExponentialFit {
  int direction = 0;               // s: 1 rising, -1 falling
  std::vector<double> parameters;  // p1 ... p3 or p1 ... p5, p2 <= p5
  // Standard errors of the parameters, in the same units, from the scatter of y about the fit and
  // the model's slopes (P. R. Bevington, Data Reduction and Error Analysis for the Physical
  // Sciences, 1969, eq. 11-28). Empty with weights, where no point is left over to tell the
  // scatter, and where the parameters cannot be told apart. They take every point's error as equal
  // and independent.
  std::vector<double> errors;
  std::vector<double> fitted;  // one for each point
  double chi_square = 0;       // sum of (y - fitted)^2, in the unit of y squared
  int iterations = 0;          // SSVGaussNewtonLog's, in the rounds that led here
  bool converged = false;      // a minimum was reached
  int attempts = 0;            // starts that were tried
  int divergences = 0;         // of these, how many ran away
};

// Fits a relaxation with SSVGaussNewtonLog, in rounds: each goes on from the last one's result,
// with data that are scaled to one and shifted so that the final value lies near 0 (the class steps
// p3 by a share of itself), and with weights that follow the model. Points that have passed the
// final value have no logarithm and weigh nothing. Logarithms of noisy points lean to one side, and
// near the final value noise is all there is; so, unless weights are given, least squares of y
// itself take over from what the rounds found.
//
// Refuses, saying why: other than 3 or 5 parameters, fewer points than parameters or more than
// SSVGaussNewtonLog::kMaxPoints, numbers that are not finite, x that does not rise from the first
// point to the last, equal first and last y (the data neither rise nor fall), unusable start values
// or weights, data that no start could fit, and data that do not level off.
Result<ExponentialFit> FitExponential(std::span<const double> x, std::span<const double> y,
                                      int parameters, const ExponentialFitOptions& options = {});

}  // namespace zento
