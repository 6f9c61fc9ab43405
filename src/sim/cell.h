#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "sim/parameters.h"

namespace zento::sim {

inline constexpr double kFaraday = 96485.33212;  // C/mol
inline constexpr double kGas = 8.314462618;      // J/(mol K)

// What the potentiostat and the rotor impose on a cell at the end of a step.
struct Drive {
  double volts = 0.0;  // commanded disk potential against the reference
  double omega = 0.0;  // rad/s
};

// What flows then. Anodic currents are positive.
struct Currents {
  double disk = 0.0;  // A
  double ring = 0.0;  // A; 0 in a cell without a ring
};

// An electrochemical cell as the potentiostat sees it. It keeps no clock: each call carries it on
// by `dt` seconds (greater than 0) to the moment at which `drive` holds. Between calls the command
// is taken as a straight line, except that a change of more than `kJump` in one step is a step of
// the command, which the caller places at the beginning of a short `dt`.
class Cell {
 public:
  static constexpr double kJump = 2e-3;  // V

  virtual ~Cell() = default;
  virtual Currents Step(double dt, const Drive& drive) = 0;
};

// The cells of the bench at rest at `volts`: one, or the ten of an array. An array's cell i has the
// couple's formal potential moved by (i - 4.5) times the spacing; nothing rotates in it.
std::vector<std::unique_ptr<Cell>> MakeCells(const Parameters& parameters, double volts);

// The electrode's side of a cell: an uncompensated resistance R_u in series with the double layer
// C_dl and, beside it, the reaction. One equation gives the potential E at the interface:
//   (E_cmd - E)/R_u = C_dl dE/dt + I(E),
// where I(E), the faradaic current, never falls as E rises. The double layer is integrated by
// backward Euler, which loses no charge.
class Interface {
 public:
  // Farads and ohms of the whole electrode. At rest at `volts`.
  Interface(double capacitance, double resistance, double volts)
      : capacitance_(capacitance), resistance_(resistance), command_(volts), volts_(volts) {}

  // The faradaic current at a potential: A, and A/V.
  struct Faradaic {
    double amperes, slope;
  };
  struct Flow {
    double faradaic, charging;  // A
  };
  // Carries on by `dt` seconds to the command `volts`. `law` takes a potential and returns the
  // Faradaic current that would flow there at the step's end.
  template <typename Law>
  Flow Step(double dt, double volts, const Law& law);

  double command() const { return command_; }
  double volts() const { return volts_; }

 private:
  struct Root {
    double volts, amperes;
  };
  template <typename Law>
  Root Solve(double dt, double volts, const Law& law) const;

  double capacitance_, resistance_;
  double command_;
  double volts_;
};

// e^x, finite at any potential that a person can type.
inline double BoundedExp(double x) {
  return std::exp(std::clamp(x, -300.0, 300.0));
}

// Both sides are monotonic in the interface potential, so the root is the only one. Newton's method
// starts where the interface would be if it followed the command; where it would leave the bracket
// (a step of a volt), the bracket is halved. The last correction is small enough to be linear.
template <typename Law>
Interface::Root Interface::Solve(double dt, double volts, const Law& law) const {
  if (resistance_ <= 0.0) return {volts, law(volts).amperes};
  constexpr double kLinear = 1e-8;  // V
  const double conductance = 1.0 / resistance_;
  const double charging = capacitance_ / dt;
  double low = -1e3;
  double high = 1e3;
  double e = volts_ + (volts - command_);
  for (int i = 0; i < 200; ++i) {
    const Faradaic flow = law(e);
    const double residual = (volts - e) * conductance - charging * (e - volts_) - flow.amperes;
    // The residual falls as e rises: where it is positive, the root lies above.
    (residual > 0.0 ? low : high) = e;
    const double slope = conductance + charging + std::max(flow.slope, 0.0);
    double correction = residual / slope;
    if (std::abs(correction) < kLinear) {
      return {e + correction, flow.amperes + flow.slope * correction};
    }
    if (!(e + correction > low && e + correction < high)) correction = 0.5 * (low + high) - e;
    e += correction;
  }
  return {e, law(e).amperes};
}

template <typename Law>
Interface::Flow Interface::Step(double dt, double volts, const Law& law) {
  const Root root = Solve(dt, volts, law);
  const double charging = capacitance_ * (root.volts - volts_) / dt;
  volts_ = root.volts;
  command_ = volts;
  return {root.amperes, charging};
}

}  // namespace zento::sim
