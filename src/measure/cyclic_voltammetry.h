#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "measure/sweep.h"

namespace zento {

// Milliseconds that a cyclic sweep through `v` (V) takes at `scan_rate` (mV/s): from the first
// potential to the second and the third, `cycles` - 1 times back to the second and the third, and
// to the first again. Limits as for SweepMillis.
std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate);

// Potential (channel 0) against current (channel 1). The resting potential is known to 2.5 mV.
class CyclicVoltammetry : public Sweep {
 public:
  // `setting` is the number and the name of the values, for the log.
  CyclicVoltammetry(const SweepValues& values, std::string setting, const RunChoices& choices);

  // What becomes of numbers that no sweep can be made of.
  static double LimitedScanRate(double millivolts_per_second);
  static double LimitedSamplingRate(double hertz);

  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  void Describe(RunState& state, const RunChoices& choices) const override;
  void Store(Run& run) override;

 protected:
  bool Read(Run& run, std::int64_t& elapsed) override;
  void Take(Run& run, std::int64_t elapsed) override;

 private:
  std::string setting_;
  double path_ = 0;       // V travelled
  double scan_rate_ = 0;  // mV/s, as measured
};

}  // namespace zento
