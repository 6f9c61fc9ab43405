#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/sweep_form.h"

namespace zento {

// Rotating ring-disk voltammetry. While idle the window monitors disk (channels 0, 1), ring (2, 3)
// and rotation rate (4).
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

  LayoutNode Layout() override;

  // What macros call besides.
  void RingScale(double amperes_per_volt);  // 0 or less becomes 1e-5
  void Repeat(std::int32_t cycles) { ShowNumber(txtCycleNum, cycles); }
  void SamplingRate(double hertz);  // above 0
  void QuitRDEMeasurement() { Quit(); }

 protected:
  std::vector<BoundBox> Boxes() override;
  TextBox& CurrentScale() override { return txtDiskYScale; }
  void ShowSettings() override;
  void StoreSettings() override;
  void LimitBoxes() override;
  std::unique_ptr<Technique> MakeTechnique() const override;

  std::span<const std::uint8_t> MonitorChannels() const override;
  double MonitorAccumulation() const override { return settings().RDEAccum; }
  void ShowReadings(std::span<const double> volts) override;
  Label& ReadingLabel() override { return lblRPM; }
  void ClearMonitor() override;

  void ShowStart(const Technique& technique) override;
  void ShowState(const RunState& state) override;
  void DrawPoint(std::int32_t index) override;
  void DrawAll() override;
  void ShowIdle() override;

 private:
  // The ring's column is 2, the disk's 1.
  void DrawCurve(LivePlot& plot, std::size_t column, std::int32_t count);
  void ShowRate(double rpm);

  VoltageMonitor disk_monitor_;
  VoltageMonitor ring_monitor_;
  LivePlot disk_plot_;
  LivePlot ring_plot_;
};

}  // namespace zento
