#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "measure/run.h"
#include "measure/technique.h"

namespace zento {

// What a sweep is started with, as typed.
struct SweepValues {
  std::array<double, 3> v{};  // V, the vertices
  double scan_rate = 50;      // mV/s
  double cycles = 1;
  double retain_seconds = 0;  // at the first vertex
  double rpm = 0;
  std::int32_t ref = 0;      // index into RefName
  double sampling_rate = 1;  // Hz
  double accumulation = 1;   // readings averaged a point
  double x_scale = 1;        // V of disk potential per V
  double disk_scale = 1;     // A per V
  double ring_scale = 0;     // A per V; 0 without a ring
  bool generator = false;    // makes the sweep; else the potentiostat does by itself
};

// Milliseconds that a path (V) takes at a scan rate (mV/s): rounded to nearest, halves to even;
// clamped to 0 to 2^31 - 1, the longest for a sweep that never ends.
std::int32_t SweepMillis(double path, double scan_rate);

// Measurements that record while the potential (channel 0) sweeps between three vertices, driven by
// the generator or, without one, by the potentiostat itself.
//
// A run waits for the sweep to begin (the retain time with a generator; without one, until the
// potential leaves the step it rests in), records until the planned time is over, Stop is pressed
// or the buffer is full, and stores the points in the target track.
class Sweep : public Technique {
 public:
  enum Method { kByCycles, kUntilStopped };

  Plan MakePlan(const RunChoices& choices, const Workstation& workstation) const override;
  std::vector<RunParameter> Parameters(const RunChoices& choices) const override;
  // Potential, disk current, ring current.
  std::size_t Columns() const override { return 3; }
  void Begin(Run& run) override;
  void Tick(Run& run) final;
  void Describe(RunState& state, const RunChoices& choices) const override;
  bool RestsForATime() const override { return values_.generator; }

 protected:
  // The potential's resting value is known to 1 / `steps_per_volt` V.
  Sweep(std::string name, SweepValues values, double steps_per_volt);
  // To be called once `values_` are right; the planned duration in ms.
  void SetDuration(std::int32_t millis) { planned_ = millis; }

  // Reads `point_`; false, and a gap in the run, when that failed. `elapsed` becomes the point's
  // time in ms.
  virtual bool Read(Run& run, std::int64_t& elapsed) = 0;
  // The point that was read is about to be kept.
  virtual void Take(Run& run, std::int64_t elapsed) = 0;
  // For Read: false, and a gap in the run, when the point holds what is no number.
  bool CheckPoint(Run& run);
  // The rectangle that an empty graph begins with, for a current of `scale` A/V.
  PlotRange EmptyRange(double scale, const RunChoices& choices) const;
  // The points as the target track, with all header fields that a sweep knows.
  void StoreSweep(Run& run, Mode mode, std::initializer_list<std::size_t> columns,
                  const PlotRange& range) const;

  SweepValues values_;
  std::int32_t rounds_ = 1;
  std::array<double, 3> point_{};  // the last one
  std::int32_t applied_rpm_ = 0;   // after the calibration's limits

 private:
  double Step(double potential) const;
  void ReadRestingPotential(Run& run);
  bool SweepBegan(std::int64_t elapsed, bool read);
  void CheckPlannedTime(Run& run, std::int64_t elapsed);
  int CycleAt(std::int64_t elapsed) const;

  double steps_per_volt_;
  std::int32_t retain_ = 0;        // s
  std::int64_t planned_ = 0;       // ms; until stopped it follows the elapsed time
  std::optional<double> resting_;  // V, a whole step; none until a reading succeeds
  bool measured_ = false;          // `point_` holds a reading
};

}  // namespace zento
