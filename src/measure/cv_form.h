#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/entries.h"
#include "measure/live_plot.h"
#include "measure/sweep_form.h"
#include "measure/voltage_monitor.h"

namespace zento {

struct CVPreset;

// Milliseconds that a cyclic sweep through `v` (V) takes at `scan_rate` (mV/s): from the first
// potential to the second and the third, `cycles` - 1 times back to the second and the third, and
// to the first again. Limits as for SweepMillis.
std::int32_t PlannedSweepMillis(const std::array<double, 3>& v, std::int32_t cycles,
                                double scan_rate);

// Cyclic voltammetry: potential (channel 0) against current (channel 1) while the generator, or
// without one the potentiostat itself, sweeps the potential between three vertices.
//
// While idle the window is a voltage monitor. The resting potential is known to 2.5 mV.
class frmMeasureCV : public SweepForm {
 public:
  frmMeasureCV(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtCVNum{*this, "txtCVNum", "0"};
  UpDown UpDown2{*this, "UpDown2"};
  TextBox txtCVTitle{*this, "txtCVTitle"};
  TextBox txtXScale{*this, "txtXScale"};
  TextBox txtYScale{*this, "txtYScale", "1e-3"};
  OptionGroup OpnCVMeas{*this, "OpnCVMeas", {"by cycle num.", "button"}, 0};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Label lblVoltage{*this, "lblVoltage"};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V mon."};
  Timer CVTimer{*this, "CVTimer"};

  bool Load() override;
  LayoutNode Layout() override;

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  void SelTrack(std::int32_t track) { SelectTrack(track); }
  void Title(const std::string& title) { txtTitle.SetText(title); }
  void rpm(const std::string& rpm) { ShowRpm(rpm); }  // 0 to 10000
  void SettingNum(const std::string& number);         // 0 to 5; its values are loaded
  void DiskScale(double amperes_per_volt);            // 0 or less becomes 1e-5
  void SetVoltage(double first, double second, double third) { ShowVoltages(first, second, third); }
  void RetainTime(std::int32_t seconds);  // 0 or more
  // Below 0 becomes 0.001.
  void scanrate(double millivolts_per_second) { ShowScanRate(millivolts_per_second); }
  void Repeat(std::int32_t cycles);         // 1 or more
  void SamplingRate(double hertz);          // above 0, at most 1000
  void Accumlation(std::int32_t readings);  // 1 or more
  void StartMeasurement() { StartSweep(); }
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitCVMeasurement();

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void FinishRun() override;

  // Those of the setting that is chosen.
  SettingBoxes Boxes();
  void ShowSettings() override;
  void StoreSettings() override;
  void LimitEntries() override;
  std::int32_t CompletePlan(SweepPlan& plan) override;
  void ShowEmptyGraphs() override;
  bool ReadPoint(std::int64_t& elapsed) override;
  void Record(std::int64_t elapsed) override;
  void ShowRemaining(std::int32_t seconds) override;

 private:
  // How far the sweep has come.
  struct Progress {
    std::int32_t shown_remaining = 0;  // s
    double path = 0;                   // V travelled
    double scan_rate = 0;              // mV/s, as measured
  };

  void LimitSamplingRate();
  CVPreset& CurrentPreset();
  void SelectPreset(std::int32_t number);
  void StepPreset(int direction);
  void DrawCurve();

  VoltageMonitor monitor_;
  LivePlot plot_;
  Progress progress_;
  std::string setting_;  // number and name of the run's
};

}  // namespace zento
