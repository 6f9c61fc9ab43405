#pragma once

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

}  // namespace zento::sim
