#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "measure/run.h"
#include "measure/technique.h"

namespace zento {

// What a potential step is started with, as typed.
struct StepValues {
  double first = 0;           // V
  double second = 0;          // V
  double retain_seconds = 0;  // at the first potential
  double seconds = 0;         // of recording, by time
  double coulombs = 0;        // C, by charge
  double sampling_rate = 1;   // Hz, of the first points
  double division = 1;        // of the rate after each point, with variable sampling
  double accumulation = 1;    // readings averaged a point
  double rpm = 0;
  double x_scale = 1;  // V/V
  double y_scale = 1;  // A/V
  bool generator = false;
};

// Chronoamperometry: current (channel 1) against time after a potential step that the generator, or
// without one the potentiostat itself, makes.
//
// A run rests at the first potential until the readings of channel 0 show the step, and records
// from there on: time 0 is the end of the tick that saw it, so the real step lies before time 0 by
// up to one sampling period and a tick's readings. It ends by time, by charge or by the Stop
// button. With variable sampling the rate is divided after every point.
class PotentialStep : public Technique {
 public:
  enum Method { kByTime, kUntilStopped, kByCharge };

  explicit PotentialStep(const StepValues& values);

  Plan MakePlan(const RunChoices& choices, const Workstation& workstation) const override;
  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  // Time in ms, current.
  std::size_t Columns() const override { return 2; }
  void Begin(Run& run) override;
  void Tick(Run& run) override;
  void Conclude(Run& run) override;
  void Store(Run& run) override;
  void Describe(RunState& state, const RunChoices& choices) const override;

 private:
  struct Sample {
    double volts = 0;  // raw
    double potential = 0;
    double current = 0;
  };
  // The track whose first potentials were set when the step was seen, and what they were before.
  struct Marked {
    int track = 0;
    double before[2] = {};
    double after[2] = {};
  };

  void ReadReference(Run& run);
  std::optional<Sample> ReadSample(Run& run);
  bool StepSeen(const Sample& sample, std::int64_t elapsed);
  void LogStep(Run& run, double potential);
  void MarkTrack(Run& run, double potential);
  void Record(Run& run, const Sample& sample, std::int64_t elapsed);
  void AddCharge(const RunPoints& points);
  void CheckEnd(Run& run, std::int64_t elapsed);
  void ThinOut(Run& run, std::int64_t elapsed);

  StepValues values_;
  std::int32_t retain_ = 0;  // s
  std::int32_t rounds_ = 1;
  std::int32_t planned_ = 0;         // ms, by time
  std::optional<double> reference_;  // V, raw, to one decimal; none until a reading succeeds
  // When the potential was last seen resting, ms since the start.
  std::optional<std::int64_t> resting_at_;
  std::optional<Marked> marked_;
  std::optional<Sample> last_;
  double rate_ = 1;               // Hz, now
  double point_rate_ = 1;         // Hz, at which the last point was taken
  double charge_ = 0;             // C
  std::int64_t limit_ = 0;        // ms; what is stored as the run's time
  std::int64_t last_sample_ = 0;  // ms
};

}  // namespace zento
