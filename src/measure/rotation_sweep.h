#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "measure/run.h"
#include "measure/technique.h"

namespace zento {

// A straight course of the commanded rotation rate, from one rate to the other. The sign of the
// speed does not count: the course goes from its start to its end whichever of them is higher. At
// speed 0 it stays at its start for ever, unless it ends there.
struct RotationRamp {
  double start = 0;  // rpm
  double end = 0;    // rpm
  double speed = 0;  // rpm/s

  // Rounded to nearest, halves to even; clamped to 0 to 2^31 - 1.
  std::int32_t DurationMillis() const;
  // rpm, `millis` after the start (counted in hundredths of a second); runs on behind the end.
  double At(double millis) const;
  bool Reached(double rpm) const;
};

// What a rotation-rate sweep is started with, as typed.
struct RotationSweepValues {
  int method = 0;
  double potential = 0;  // V
  double limit = 0;      // rpm
  RotationRamp ramp;
  double retain_seconds = 0;  // before the ramp
  double sampling_rate = 1;   // Hz
  double accumulation = 1;    // readings averaged a point
  double x_scale = 1;         // V/V
  double y_scale = 1;         // A/V
  double rpm_scale = 1;       // rpm/V
  bool generator = false;
};

// Current (channel 1) against rotation rate (channel 4) at one potential, which the generator holds
// when there is one. The program turns the motor along a ramp, or a person turns it and the run
// records until a limit is exceeded or Stop is pressed.
//
// A run begins to record once the retain time is over (with the ramp) or the measured rate leaves
// the 5 rpm it had at the start (without). The method is that of the start, so that no click can
// make the motor jump.
class RotationSweep : public Technique {
 public:
  enum Method { kByLimit, kUntilStopped, kRamp };

  explicit RotationSweep(const RotationSweepValues& values);

  Plan MakePlan(const RunChoices& choices, const Workstation& workstation) const override;
  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  // Rotation rate, current, time in ms.
  std::size_t Columns() const override { return 3; }
  void Begin(Run& run) override;
  void Tick(Run& run) override;
  void Store(Run& run) override;
  void Describe(RunState& state, const RunChoices& choices) const override;
  bool RestsForATime() const override { return values_.method == kRamp; }

 private:
  // One averaged sample. Its time is the mean of the moments at which its rounds were read.
  struct Sample {
    double rpm = 0;
    double current = 0;  // A
    double millis = 0;   // since the run's time began
  };

  void ReadInitialRate(Run& run);
  std::optional<Sample> ReadSample(Run& run);
  bool Began(const std::optional<Sample>& sample, double millis);
  bool FollowRamp(Run& run, double millis) const;
  void Record(Run& run, const Sample& sample);

  RotationSweepValues values_;
  std::int32_t rounds_ = 1;
  std::optional<double> initial_;  // rpm, a multiple of 5; none until a reading succeeds
  double time_zero_ = 0;           // ms of the run's time from which points count theirs
  std::optional<Sample> last_;
};

}  // namespace zento
