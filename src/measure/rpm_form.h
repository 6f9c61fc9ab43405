#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/measure_form.h"

namespace zento {

// Current against rotation rate. While idle the window is a live monitor. A run works with the
// values it was started with, the method included; only title, target track and "Record Time" count
// as they are.
class frmMeasureRPMvsj : public CellForm {
 public:
  frmMeasureRPMvsj(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtXScale{*this, "txtXScale"};
  TextBox txtYScale{*this, "txtYScale"};
  TextBox txtRPMScale{*this, "txtRPMScale"};
  TextBox txtDiskXValue{*this, "txtDiskXValue"};
  OptionGroup opnRPMvsj{
      *this, "opnRPMvsj", {"RPM limitation (by measurement)", "button", "RPM Control"}, 0};
  TextBox txtLimitRPM{*this, "txtLimitRPM"};
  TextBox txtStartRPM{*this, "txtStartRPM"};
  TextBox txtEndRPM{*this, "txtEndRPM"};
  TextBox txtSpeed{*this, "txtSpeed"};
  TextBox txtSamplingrate{*this, "txtSamplingrate"};
  CheckBox chkRecordTime{*this, "chkRecordTime", "Record Time"};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Label lblVoltage{*this, "lblVoltage"};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V Mon."};
  Label lblMode{*this, "lblMode"};

  LayoutNode Layout() override;

  // What macros call besides.
  void QuitRPMvsjMeasurement() { Quit(); }
  void SamplingRate(double hertz) { Enter(txtSamplingrate, hertz); }  // above 0
  void Potential(double volts) { Enter(txtDiskXValue, volts); }
  // 0 until the limit rate is exceeded, 1 until Stop, 2 along the ramp.
  void AppliedMeasuremode(std::int16_t mode);
  void SetRPMParameters(double start, double end, double speed);  // rpm, rpm, rpm/s

 protected:
  std::vector<BoundBox> Boxes() override;
  TextBox& CurrentScale() override { return txtYScale; }
  void LimitBoxes() override;
  // The ramp waits as long as it is told, whatever the generator can hold.
  void LimitRetainTime() override {}
  std::unique_ptr<Technique> MakeTechnique() const override;
  RunChoices Choices() const override;

  std::int64_t MonitorInterval() const override { return PeriodRounded(NumberIn(txtSamplingrate)); }
  std::span<const std::uint8_t> MonitorChannels() const override;
  double MonitorAccumulation() const override { return settings().RPjAccum; }
  void ShowReadings(std::span<const double> volts) override;
  Label& ReadingLabel() override { return lblVoltage; }
  void ClearMonitor() override { monitor_.Clear(); }

  void ShowStart(const Technique& technique) override;
  void ShowRecording() override { lblMode.SetText("Recording"); }
  void ShowState(const RunState& state) override;
  void DrawPoint(std::int32_t index) override;
  void DrawAll() override { DrawCurve(points().size()); }
  void ShowIdle() override { lblMode.SetText("Monitor"); }

 private:
  void ShowRate(double rpm);
  void DrawCurve(std::int32_t count);

  VoltageMonitor monitor_;
  LivePlot plot_;
};

}  // namespace zento
