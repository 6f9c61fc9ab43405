#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graph/plot_range.h"
#include "measure/run.h"

namespace zento {

// What a sweep was started with.
struct SweepPlan {
  std::array<double, 3> v{};  // V, the vertices
  double scan_rate = 0;       // mV/s
  double cycles = 1;
  std::int32_t retain_seconds = 0;  // at the first vertex
  double rpm = 0;                   // as typed
  std::int32_t ref = 0;             // index into RefName
  double sampling_rate = 1;         // Hz
  std::int32_t rounds = 1;          // readings averaged a point
  double x_scale = 1;               // V of disk potential per V
  double disk_scale = 1;            // A per V
  double ring_scale = 0;            // A per V; 0 without a ring
  bool generator = false;           // makes the sweep; else the potentiostat does by itself
};

// Milliseconds that a path (V) takes at a scan rate (mV/s): rounded to nearest, halves to even;
// clamped to 0 to 2^31 - 1, the longest for a sweep that never ends.
std::int32_t SweepMillis(double path, double scan_rate);

// The whole seconds that the generator holds the first potential: 0 to 999, three digits.
std::int32_t HoldableSeconds(double seconds);

// What the windows share that record while the potential (channel 0) sweeps between three vertices,
// driven by the generator or, without one, by the potentiostat itself.
//
// A run waits for the sweep to begin (the retain time with a generator; without one, until the
// potential leaves the step it rests in), records until the planned time is over, Stop is pressed
// or the buffer is full, and stores the points in the target track, which then moves on by one. A
// run works with the values it was started with, whatever is typed meanwhile; only the title, the
// target track and the method count as they are.
class SweepForm : public MeasureForm {
 public:
  Plan CurrentPlan() const override;

  ControlArray<TextBox, 3> txtVoltSetting{*this, "txtVoltSetting", {"-0.2", "1.2", "0.6"}};
  TextBox txtScanrate{*this, "txtScanrate"};
  TextBox txtCycleNum{*this, "txtCycleNum"};
  TextBox txtRetainTime{*this, "txtRetainTime"};
  ComboBox cbxReference{*this, "cbxReference"};
  TextBox txtRPM{*this, "txtRPM"};
  TextBox txtRPMScale{*this, "txtRPMScale", "1000"};
  TextBox txtSamplingrate{*this, "txtSamplingrate"};
  TextBox txtAccum{*this, "txtAccum"};
  TextBox txtDataNum{*this, "txtDataNum", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  TextBox txtTitle{*this, "txtTitle"};
  Label lblMode{*this, "lblMode"};
  Label lblTimeRemain{*this, "lblTimeRemain"};
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdStop{*this, "cmdStop", "Stop"};

 protected:
  // `run` is the run as a person calls it. The potential's resting value is known to 1 /
  // `steps_per_volt` V.
  SweepForm(Workstation& workstation, Host& host, Instruments& instruments, std::string name,
            std::string caption, std::string run, double steps_per_volt);

  // Once the window's controls exist. The method is 0 by cycles, 1 until stopped.
  void AttachSweep(Timer& timer, const OptionGroup& method);
  // What macros call of both windows, each under its window's name for it.
  void SelectTrack(std::int32_t track) { target_.Select(track); }
  void ShowRpm(const std::string& rpm);  // 0 to 10000
  void ShowVoltages(double first, double second, double third);
  void ShowScanRate(double millivolts_per_second);  // below 0 becomes 0.001
  void StartSweep();

  // Shows the settings in the boxes and begins to monitor; false when a device did not open.
  bool LoadSweep(const OpenMessages& messages);

  const SweepPlan& SweepValues() const { return plan_; }
  bool ByButton() const { return method_->selected() == 1; }
  // What every sweep is started with, for the log.
  std::vector<RunParameter> SweepParameters() const;

  // Puts entries out of range right and makes the entries the settings.
  void LeaveBox();

  // Puts a reading into the slot of the next point. False, and a gap in the run, when it holds what
  // is no number.
  bool TakePoint(const AcquiredPoint& point);
  // The rectangle that an empty graph of this run begins with, for a current of `scale` A/V.
  PlotRange EmptyRange(double scale) const;
  // Stores the points in the target track with all of its header fields that a sweep knows, shows
  // it, and moves the target on. `range` is what the track's plot begins with.
  void StoreSweep(Mode mode, int columns, const PlotRange& range);

  virtual void ShowSettings() = 0;
  virtual void StoreSettings() = 0;
  virtual void LimitEntries() = 0;
  // Fills in what is the window's own (cycles, reference, scales) from the settings just stored,
  // and returns the duration of the cycles in ms.
  virtual std::int32_t CompletePlan(SweepPlan& plan) = 0;
  virtual void ShowEmptyGraphs() = 0;
  // Reads one point, to be taken with TakePoint; false when that failed. `elapsed` becomes the
  // point's time in ms.
  virtual bool ReadPoint(std::int64_t& elapsed) = 0;
  // Draws the point that was taken and keeps it.
  virtual void Record(std::int64_t elapsed) = 0;
  // Whole seconds until the planned end; below 0 after it.
  virtual void ShowRemaining(std::int32_t seconds) = 0;

  void MeasureTick() final;

  // The rate that the motor was set to for the run, after the calibration's limits.
  std::int32_t AppliedRpm() const { return applied_rpm_; }
  int Target() const { return target_.number(); }
  void ShowIdle() { lblMode.SetText("Voltage Monitor"); }

 private:
  void MakePlan();
  void LimitRetainTime();
  void Programme();
  double Step(double potential) const;
  std::optional<double> RestingPotential();
  bool SweepBegan(std::int64_t elapsed, bool read);
  void CheckPlannedTime(std::int64_t elapsed);

  const std::string run_;
  const double steps_per_volt_;
  TargetTrack target_;
  Timer* timer_ = nullptr;
  const OptionGroup* method_ = nullptr;
  SweepPlan plan_;
  std::int32_t applied_rpm_ = 0;
  std::int64_t planned_ = 0;       // ms; follows the elapsed time in button mode
  std::optional<double> resting_;  // V, a whole step; none until a reading succeeds
};

}  // namespace zento
