#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "measure/sweep.h"

namespace zento {

// Milliseconds that a sweep of a rotating electrode takes: from the first potential of `v` (V) to
// the second and the third, and `cycles` - 1 times back to the second and the third; a single cycle
// goes back to the first potential too. Limits as for SweepMillis.
std::int32_t PlannedRotatingSweepMillis(const std::array<double, 3>& v, double cycles,
                                        double scan_rate);

// Disk current (channel 1) and ring current (channel 3) against disk potential (channel 0) at a
// held rotation rate (channel 4). The resting potential is known to 2 mV.
//
// While a run records, each point nudges the motor voltage by 0.5 mV towards a band of 10 rpm
// around the rate that was set. A rotation signal at the limit of the input board is only a lower
// bound of the rate: the voltage is not raised then.
class RingDiskVoltammetry : public Sweep {
 public:
  // What a ring and a rotor need besides.
  struct Electrode {
    double rpm_scale = 1000;  // rpm/V
    double ring_x_scale = 1;  // V/V
  };
  RingDiskVoltammetry(const SweepValues& values, const Electrode& electrode,
                      const RunChoices& choices);

  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  void Conclude(Run& run) override;
  void Store(Run& run) override;
  void Describe(RunState& state, const RunChoices& choices) const override;

 protected:
  bool Read(Run& run, std::int64_t& elapsed) override;
  void Take(Run& run, std::int64_t elapsed) override;

 private:
  // The rotation rate as measured during the run.
  struct Rotation {
    bool measured = false;
    double volts = 0;  // raw, of the last point
    double rpm = 0;    // of the last point
    double sum = 0;    // rpm, of all recorded points
    bool held = false;
  };

  void HoldRotation(Run& run);
  void LogHold(Run& run);

  Electrode electrode_;
  Rotation rotation_;
};

}  // namespace zento
