#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/run.h"
#include "measure/voltage_monitor.h"

namespace zento {

// Milliseconds that a cyclic sweep through `v` (V) takes at `scan_rate` (mV/s): from the first
// potential to the second and the third, `cycles` - 1 times back to the second and the third, and
// to the first again. Rounded to nearest, halves to even; clamped to 0 to 2^31 - 1, the longest for
// a sweep that never ends.
std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate);

// Cyclic voltammetry: potential (channel 0) against current (channel 1) while the generator, or
// without one the potentiostat itself, sweeps the potential between three vertices.
//
// While idle the window is a voltage monitor. A run waits for the sweep to begin (the retain time
// with a generator; without one, until the potential leaves the 2.5 mV step it rests in), records
// until the planned time is over, Stop is pressed or the buffer is full, and stores the points in
// the target track, which then moves on by one. A run works with the values it was started with,
// whatever is typed meanwhile; only the title, the target track and the method count as they are.
class frmMeasureCV : public MeasureForm {
 public:
  frmMeasureCV(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtCVNum;
  UpDown UpDown2;
  TextBox txtCVTitle;
  TextBox txtXScale;
  TextBox txtYScale;
  TextBox txtRPMScale;
  ControlArray<TextBox, 3> txtVoltSetting;
  TextBox txtScanrate;
  TextBox txtCycleNum;
  TextBox txtRetainTime;
  ComboBox cbxReference;
  TextBox txtRPM;
  TextBox txtSamplingrate;
  TextBox txtAccum;
  OptionGroup OpnCVMeas;
  TextBox txtDataNum;
  UpDown UpDown1;
  TextBox txtTitle;
  GraphView picVMon;
  Label lblVoltage;
  Button cmdClearVMon;
  Label lblMode;
  Label lblTimeRemain;
  Button cmdStart;
  Button cmdStop;
  Timer CVTimer;

  bool Load() override;
  LayoutNode Layout() override;

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  void SelTrack(std::int32_t track) { target_.Select(track); }
  void Title(const std::string& title) { txtTitle.SetText(title); }
  void rpm(const std::string& rpm);            // 0 to 10000
  void SettingNum(const std::string& number);  // 0 to 5; its values are loaded
  void DiskScale(double amperes_per_volt);     // 0 or less becomes 1e-5
  void SetVoltage(double first, double second, double third);
  void RetainTime(std::int32_t seconds);        // 0 or more
  void scanrate(double millivolts_per_second);  // below 0 becomes 0.001
  void Repeat(std::int32_t cycles);             // 1 or more
  void SamplingRate(double hertz);              // above 0, at most 1000
  void Accumlation(std::int32_t readings);      // 1 or more
  void StartMeasurement();
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitCVMeasurement();

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void MeasureTick() override;
  void FinishRun() override;

 private:
  // What a run was started with.
  struct Plan {
    CVPreset preset;
    double rpm = 0;  // as typed
    bool generator = false;
    std::int32_t rounds = 1;
  };
  // How far the sweep has come.
  struct Progress {
    std::int32_t shown_remaining = 0;  // s
    double path = 0;                   // V travelled
    double scan_rate = 0;              // mV/s, as measured
  };

  // The entries, in cv_entries.cpp.
  void WireBoxes();
  void LeaveBox();
  void LimitEntries();
  void LimitSamplingRate();
  void LimitRetainTime();
  CVPreset& CurrentPreset();
  void SelectPreset(std::int32_t number);
  void StepPreset(int direction);
  void ShowPreset();
  void StorePreset();

  bool ByButton() const;
  void MakePlan();
  void ShowEmptyGraph();
  std::optional<double> RestingPotential();
  bool ReadPoint();
  bool SweepBegan(std::int64_t elapsed, bool read);
  void Record(std::int64_t elapsed);
  void DrawCurve();
  void CheckPlannedTime(std::int64_t elapsed);
  void Store();

  TargetTrack target_;
  VoltageMonitor monitor_;
  LivePlot plot_;
  Plan plan_;
  Progress progress_;
  std::int64_t planned_ = 0;       // ms; follows the elapsed time in button mode
  std::optional<double> resting_;  // V, a multiple of 2.5 mV; none until a reading succeeds
};

}  // namespace zento
