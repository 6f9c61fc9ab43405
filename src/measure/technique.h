#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/run_log.h"
#include "core/run_state.h"
#include "core/track.h"
#include "core/workstation.h"
#include "graph/plot_range.h"
#include "measure/plan.h"

namespace zento {

class Run;

// What a person may still change while a run goes on. Everything else counts as it was at the
// start.
struct RunChoices {
  std::vector<std::string> titles;  // of the target tracks, in their order
  int target = 0;                   // 0 to 20, the first of them
  int method = 0;                   // index of the technique's ways to end
  bool variable_sampling = false;
  int record_time = 0;  // 0 or 1
};

// A kind of measurement: what it does to the cell, what a tick reads, when recording begins, when
// it is over, and what its tracks say of it. It is made of plain values as they were typed, puts
// those right that it cannot work with, and then lasts for one run. It knows no window and has no
// clock of its own; the run that it is handed is its way to instruments, time, points and log.
class Technique {
 public:
  virtual ~Technique() = default;
  Technique(const Technique&) = delete;
  Technique& operator=(const Technique&) = delete;

  // "Cyclic voltammetry"
  const std::string& name() const { return name_; }
  virtual Plan MakePlan(const RunChoices& choices, const Workstation& workstation) const = 0;
  // Everything the run is started with, as used by it and with units, title and target included.
  virtual std::vector<RunParameter> Parameters(const RunChoices& choices) const = 0;
  // Numbers a point has.
  virtual std::size_t Columns() const = 0;

  // Programmes the generator, sets the rotation, and reads what the cell is like before anything
  // happens. The timer rests meanwhile.
  virtual void Begin(Run& run) = 0;
  // A tick of a run without a stop request.
  virtual void Tick(Run& run) = 0;
  // The run is about to end, its devices are still on.
  virtual void Conclude(Run&) {}
  // Puts the points into tracks. Not called where there are none.
  virtual void Store(Run& run) = 0;

  // Adds what the technique knows of the run.
  virtual void Describe(RunState& state, const RunChoices& choices) const = 0;
  // Before it records it waits for a set time, not for something that may never come.
  virtual bool RestsForATime() const { return false; }

  // The rectangle of one of its curves: what an empty graph begins with, grown to hold every point
  // since. A track is shown with it.
  const PlotRange& Range(std::size_t curve = 0) const { return ranges_.at(curve); }

 protected:
  explicit Technique(std::string name) : name_(std::move(name)) {}

  // Returns `used`, and notes it where it is not what was asked for.
  double Adjusted(const char* what, double asked, double used, const char* why);
  // A plan of so many readings a second, with what was adjusted.
  Plan PlanOf(double sampling_rate, std::int64_t interval, std::int32_t rounds,
              const RunChoices& choices) const;
  static PlannedRate RateFor(const Workstation& workstation, double rpm);
  // Ends with the first tick later than `millis` of recording, or with the one at `millis`;
  // `first_tick` is the time of the first point in intervals.
  enum class LastTick { kAtEnd, kAfterEnd };
  static void EndByTime(Plan& plan, std::int64_t millis, LastTick last, int first_tick = 0);

  // Adds a curve whose graph begins with a range; the corners may come in any order.
  void AddCurve(const PlotRange& range);
  void Include(std::size_t curve, double x, double y) { Extend(ranges_[curve], x, y); }

 private:
  std::string name_;
  std::vector<Adjustment> adjusted_;
  std::vector<PlotRange> ranges_;
};

void SetRange(TrackRecord& record, const PlotRange& range);

// A timer's period in whole milliseconds, 1 to 2^31 - 1, for `rate` ticks a second. Techniques
// differ in whether they cut the fraction off or round it (halves to even).
std::int64_t PeriodCut(double rate);
std::int64_t PeriodRounded(double rate);

// `accumulation` as a number of reading rounds: whole, at least 1, and few enough that a tick comes
// back to the person within minutes whatever was typed.
std::int32_t AccumulationRounds(double accumulation);

// The whole seconds that the generator holds a potential: 0 to 999, three digits.
std::int32_t HoldableSeconds(double seconds);

// What becomes of numbers that nothing can be measured with.
inline double AtLeastOne(double number) {
  return number < 1 ? 1 : number;
}
inline double SomeRate(double hertz) {
  return hertz <= 0 ? 0.1 : hertz;
}

// A number with its unit, for Parameters.
std::string WithUnit(double number, const char* unit);
// "Sampling" of Parameters.
RunParameter SamplingParameter(double rate, std::int32_t rounds);

}  // namespace zento
