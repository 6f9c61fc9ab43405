#include "sim/diffusion.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zento::sim {
namespace {

const double kGrowth = std::log(1.25);
constexpr double kShortestStep = 2e-5;  // s: resolved by the grid's first interval
constexpr double kLongestHold = 1e5;    // s: diffusion without rotation does not reach the end
constexpr int kOmegaAge = 50;           // steps for which a slightly wrong rotation rate is kept
constexpr double kOutermostPhi = 20.0;  // e^-20 of the gradient is left there

// The integral of e^(-s^3) from 0 to s, for s from 0 to 3: cubic Hermite interpolation of a table
// (the derivative is known), good to 1e-11.
class CubeIntegral {
 public:
  CubeIntegral() {
    for (int i = 1; i <= kSteps; ++i) {
      const double from = (i - 1) * kStep;
      value_[i] = value_[i - 1] + Simpson(from, kStep);
    }
  }

  double operator()(double s) const {
    const double position = std::min(s, kEnd) / kStep;
    const int i = std::min(static_cast<int>(position), kSteps - 1);
    const double t = position - i;
    const double d0 = kStep * Slope(i * kStep);
    const double d1 = kStep * Slope((i + 1) * kStep);
    const double rise = value_[i + 1] - value_[i];
    return value_[i] + t * (d0 + t * (3 * rise - 2 * d0 - d1 + t * (d0 + d1 - 2 * rise)));
  }

 private:
  static constexpr double kEnd = 3.0;
  static constexpr int kSteps = 768;
  static constexpr double kStep = kEnd / kSteps;

  static double Slope(double s) { return std::exp(-s * s * s); }
  // Composite over 8 subintervals.
  static double Simpson(double from, double width) {
    const double h = width / 8;
    double sum = Slope(from) + Slope(from + width);
    for (int i = 1; i < 8; ++i) sum += (i % 2 == 1 ? 4 : 2) * Slope(from + i * h);
    return sum * h / 3;
  }

  std::array<double, kSteps + 1> value_{};
};

const CubeIntegral kCubeIntegral;

}  // namespace

DiffusionLayer::DiffusionLayer(double diffusion, double bulk, double viscosity)
    : diffusion_(diffusion), bulk_(bulk), viscosity_(viscosity) {
  BuildGrid();
  BuildConductances();
}

void DiffusionLayer::BuildGrid() {
  // x_1 = a (e^g - 1) = a / 4 is half a diffusion length of the shortest step. At six lengths
  // sqrt(D t) of the longest hold, erfc(3) = 2e-5 of a change at the electrode has arrived.
  const double a = 0.5 * std::sqrt(diffusion_ * kShortestStep) / 0.25;
  const double end = 6.0 * std::sqrt(diffusion_ * kLongestHold);
  nodes_ = static_cast<int>(std::ceil(std::log1p(end / a) / kGrowth));
  const auto place = [&](double j) { return a * std::expm1(kGrowth * j); };
  for (int j = 0; j <= nodes_; ++j) x_.push_back(place(j));
  // From face to face; the first volume begins at the electrode.
  for (int j = 0; j < nodes_; ++j) {
    volume_.push_back(place(j + 0.5) - (j == 0 ? 0.0 : place(j - 0.5)));
  }
  now_.assign(nodes_ + 1, bulk_);
  before_ = now_;
  for (auto* row : {&left_, &right_, &inner_, &outer_, &now_weight_, &before_weight_, &q_}) {
    row->assign(nodes_ + 1, 0.0);
  }
}

// Between two nodes the steady flux F = -D e^phi dc/dx is the same everywhere, so that it is
// D (c_j - c_(j+1)) over the integral of e^(-phi) between them. Seen from node i it is weighted
// with the e^(-phi_i) in front of the self-adjoint form, which makes the conductance to the right
// of j and the one to the left of j+1 two numbers over the same integral.
void DiffusionLayer::BuildConductances() {
  // In units of the convective length, phi is the cube of the distance.
  const double length =
      std::cbrt(3.0 * diffusion_ * std::sqrt(viscosity_) / (0.51023 * std::pow(omega_, 1.5)));
  const double reach = std::isfinite(length) ? length * std::cbrt(kOutermostPhi) : x_.back();
  active_ = 0;
  while (active_ < nodes_ && (active_ == 0 || x_[active_] < reach)) ++active_;
  double phi_here = 0.0;
  for (int j = 0; j < active_; ++j) {
    const double s = x_[j + 1] / length;
    const double phi_next = s * s * s;
    const double span = omega_ > 0.0 ? length * (kCubeIntegral(s) - kCubeIntegral(x_[j] / length))
                                     : x_[j + 1] - x_[j];
    right_[j] = diffusion_ / (span * std::exp(phi_here));
    if (j + 1 < active_) left_[j + 1] = diffusion_ / (span * std::exp(phi_next));
    phi_here = phi_next;
  }
  for (int j = active_; j <= nodes_; ++j) now_[j] = before_[j] = bulk_;
  factored_dt_ = 0.0;
}

void DiffusionLayer::SetRotation(double omega) {
  // Below a thousandth of a turn per second, diffusion is faster than any run is long.
  if (omega < 6e-3) omega = 0.0;
  ++omega_age_;
  const double patience = omega_age_ < kOmegaAge ? 1e-3 : 1e-7;
  if (std::abs(omega - omega_) <= patience * omega_) return;
  omega_ = omega;
  omega_age_ = 0;
  BuildConductances();
}

// Node j balances storage and exchange, V the volume, L and R the conductances:
//   V/dt (w0 c_j - w1 c_j^now + w2 c_j^before) = L (c_(j-1) - c_j) + R (c_(j+1) - c_j).
// With c_(j+1) = inner_(j+1) c_j + q_(j+1) from its outer neighbour (inner = 0 in the bulk) it
// takes the same form itself. This computes what does not depend on the concentrations, which
// serves all steps of one length. At the electrode L is 0 and the flux J comes in its place, so c_0
// = q_0 - beta J with the last inverse as beta.
void DiffusionLayer::Factor(double dt, double weight0, double weight1, double weight2) {
  double inner_next = 0.0;
  for (int j = active_ - 1; j >= 0; --j) {
    const double storage = volume_[j] / dt;
    const double inverse =
        1.0 / (weight0 * storage + (j == 0 ? 0.0 : left_[j]) + right_[j] * (1.0 - inner_next));
    inner_[j] = j == 0 ? 0.0 : left_[j] * inverse;
    outer_[j] = right_[j] * inverse;
    now_weight_[j] = weight1 * storage * inverse;
    before_weight_[j] = weight2 * storage * inverse;
    inner_next = inner_[j];
    beta_ = inverse;
  }
}

DiffusionLayer::Surface DiffusionLayer::Begin(double dt) {
  const double ratio = first_order_steps_ > 0 ? 0.0 : dt / last_dt_;
  if (dt != factored_dt_ || ratio != factored_ratio_) {
    // Backward differences of second order with steps in the ratio r (Hairer, Norsett and Wanner,
    // Solving Ordinary Differential Equations I, 2nd ed. 1993, section III.5); r = 0 leaves the
    // first order.
    Factor(dt, (1 + 2 * ratio) / (1 + ratio), 1 + ratio, ratio * ratio / (1 + ratio));
    factored_dt_ = dt;
    factored_ratio_ = ratio;
  }
  step_ = dt;
  double q = bulk_;
  for (int j = active_ - 1; j >= 0; --j) {
    q = now_weight_[j] * now_[j] - before_weight_[j] * before_[j] + outer_[j] * q;
    q_[j] = q;
  }
  return {q, beta_};
}

// Back from the electrode to the bulk. The older profile's memory takes the new one.
void DiffusionLayer::Finish(double flux) {
  now_.swap(before_);
  double c = q_[0] - beta_ * flux;
  now_[0] = c;
  for (int j = 1; j < active_; ++j) {
    c = inner_[j] * c + q_[j];
    now_[j] = c;
  }
  last_dt_ = step_;
  if (first_order_steps_ > 0) --first_order_steps_;
}

}  // namespace zento::sim
