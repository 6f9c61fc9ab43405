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

// Milliseconds that a sweep of a rotating electrode takes: from the first potential of `v` (V) to
// the second and the third, and `cycles` - 1 times back to the second and the third; a single cycle
// goes back to the first potential too. Limits as for SweepMillis.
std::int32_t PlannedRotatingSweepMillis(const std::array<double, 3>& v, double cycles,
                                        double scan_rate);

// Rotating ring-disk voltammetry: disk current (channel 1) and ring current (channel 3) against
// disk potential (channel 0) at a held rotation rate.
//
// While idle the window monitors disk (channels 0, 1), ring (2, 3) and rotation rate (4). While a
// run records, each point nudges the motor voltage by 0.5 mV towards a band of 10 rpm around the
// rate that was set. A rotation signal at the limit of the input board is only a lower bound of the
// rate: the voltage is not raised then.
class frmMeasureRDE : public SweepForm {
 public:
  frmMeasureRDE(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtDiskXScale{*this, "txtDiskXScale"};
  TextBox txtDiskYScale{*this, "txtDiskYScale", "1e-3"};
  TextBox txtRingXScale{*this, "txtRingXScale"};
  TextBox txtRingYScale{*this, "txtRingYScale", "1e-5"};
  OptionGroup opnRDEMeas{*this, "opnRDEMeas", {"by cycle num", "by button"}, 0};
  Label lblDataNum{*this, "lblDataNum", "Track"};
  GraphView picDiskVMon{*this, "picDiskVMon", {360, 160}};
  GraphView picRingVMon{*this, "picRingVMon", {360, 160}};
  Label lblRPM{*this, "lblRPM"};
  Button cmdClearMon{*this, "cmdClearMon", "Clear Monitor"};
  Timer RDETimer{*this, "RDETimer"};

  bool Load() override;
  LayoutNode Layout() override;

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  void SelTrack(std::int32_t track) { SelectTrack(track); }
  void Title(const std::string& title) { txtTitle.SetText(title); }
  void rpm(const std::string& rpm) { ShowRpm(rpm); }  // 0 to 10000
  void DiskScale(double amperes_per_volt);            // 0 or less becomes 1e-5
  void RingScale(double amperes_per_volt);            // 0 or less becomes 1e-5
  void SetVoltage(double first, double second, double third) { ShowVoltages(first, second, third); }
  void RetainTime(std::int32_t seconds);
  // Below 0 becomes 0.001.
  void scanrate(double millivolts_per_second) { ShowScanRate(millivolts_per_second); }
  void Repeat(std::int32_t cycles);
  void SamplingRate(double hertz);          // above 0
  void Accumlation(std::int32_t readings);  // 1 or more
  void StartMeasurement() { StartSweep(); }
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitRDEMeasurement();

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void FinishRun() override;

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
  // The rotation rate as measured during the run.
  struct Rotation {
    double volts = 0;  // raw, of the last point
    double rpm = 0;    // of the last point
    double sum = 0;    // rpm, of all recorded points
    bool held = false;
  };

  void HoldRotation();
  void LogHold();
  void LogRotation();
  void Draw(const AcquiredPoint& point);
  void DrawDisk();
  void DrawRing();
  PlotRange BothRanges() const;
  void ShowMeasured(double rpm);

  VoltageMonitor disk_monitor_;
  VoltageMonitor ring_monitor_;
  LivePlot disk_plot_;
  LivePlot ring_plot_;
  double rpm_scale_ = 1000;  // rpm/V, of the run
  double ring_x_scale_ = 1;  // V/V, of the run
  Rotation rotation_;
};

}  // namespace zento
