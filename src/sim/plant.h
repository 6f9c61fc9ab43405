#pragma once

#include <array>
#include <memory>
#include <vector>

#include "sim/cell.h"
#include "sim/command_generator.h"
#include "sim/parameters.h"
#include "sim/random.h"
#include "sim/rotor.h"

namespace zento::sim {

// What commands the cell's potential: the function generator while its output is on; else, if it
// is set to, the potentiostat's own programme, which has been running since the bench was switched
// on; else the rest potential.
class Potentiostat {
 public:
  explicit Potentiostat(const Parameters& parameters);

  CommandGenerator& generator() { return generator_; }
  const CommandGenerator& generator() const { return generator_; }

  void Advance(double dt);
  // Volts against the reference `dt` seconds from now.
  double VoltsAfter(double dt) const;
  // Seconds until the potential turns or jumps; may be infinite.
  double UntilCorner() const;

 private:
  CommandGenerator generator_;
  bool has_own_;
  double rest_;
  Player own_;
};

// The cell with everything that acts on it, carried through time in steps of its own choosing: 20
// us after a jump of the command and growing from there, never more than 1 ms or 0.4 mV of sweep
// while somebody watches, longer where nobody did. Steps end on the programme's corners.
//
// What is switched takes effect where the steps have arrived, at most 1 ms ahead of the last moment
// asked for.
class Plant {
 public:
  // The voltages at the inputs of the board. An array of cells has its own: 2 i the potential of
  // cell i, 2 i + 1 its current.
  static constexpr int kSignals = 20;
  enum Signal { kPotential, kDiskCurrent, kRingPotential, kRingCurrent, kRotation };

  Plant(const Parameters& parameters, Random& random);

  // Makes `seconds` since the start available to `VoltsAt`. Does not go back.
  void AdvanceTo(double seconds) {
    while (time_ < seconds) Step(seconds - time_);
  }
  // Where the steps have arrived, seconds since the start.
  double time() const { return time_; }
  // At a moment within the last step. 0 where nothing is connected.
  double VoltsAt(int signal, double seconds) const;
  // Disk current where the steps have arrived; of an array, its first cell's.
  double DiskAmperes() const { return now_[kDiskCurrent] * disk_range_; }

  Potentiostat& potentiostat() { return potentiostat_; }
  const Potentiostat& potentiostat() const { return potentiostat_; }
  const Rotor& rotor() const { return rotor_; }
  void SetMotorVolts(double volts);
  void SetMotorPower(bool on);

 private:
  double ChooseStep(double behind);
  void Step(double behind);
  void Connect(double command);

  double disk_range_, ring_range_, tach_scale_;
  Random& random_;
  Potentiostat potentiostat_;
  Rotor rotor_;
  std::vector<std::unique_ptr<Cell>> cells_;
  std::vector<Currents> currents_;
  double ring_volts_;  // 0 without a ring

  double time_ = 0.0;
  double step_;
  std::size_t connected_;  // signals
  bool ends_on_corner_ = false;
  double since_jump_ = 0.0;   // s, of the command
  double since_event_ = 0.0;  // s: jump, corner, change of rotation
  std::array<double, kSignals> last_{};
  std::array<double, kSignals> now_{};
};

}  // namespace zento::sim
