#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/measure_form.h"

namespace zento {

// Chronoamperometry. While idle the window is a voltage monitor. A run works with the values it was
// started with; only the title, the target track, the method and the sampling mode count as they
// are.
class frmPotentialStep : public CellForm {
 public:
  frmPotentialStep(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtXScale{*this, "txtXScale"};
  TextBox txtYScale{*this, "txtYScale"};
  TextBox txtRPMScale{*this, "txtRPMScale"};
  ControlArray<TextBox, 2> txtVoltSetting{*this, "txtVoltSetting"};
  OptionGroup opnPSMeas{*this, "opnPSMeas", {"by time", "by button", "by Coulomb Number /C"}, 0};
  TextBox txtMaxTime{*this, "txtMaxTime"};
  TextBox txtCoulomb{*this, "txtCoulomb"};
  OptionGroup opnSamplingMode{*this, "opnSamplingMode", {"Constant", "Variable"}, 0};
  TextBox txtInitSamplingRate{*this, "txtInitSamplingRate"};
  TextBox txtSamplingDivision{*this, "txtSamplingDivision"};
  TextBox txtRPM{*this, "txtRPM"};
  CheckBox chkGraphOn{*this, "chkGraphOn", "Realtime Graph Draw mode"};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Label lblVoltage{*this, "lblVoltage"};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V. Mon"};
  Label lblStatus{*this, "lblStatus"};

  LayoutNode Layout() override;

  // What macros call besides.
  void rpm(const std::string& rpm) { EnterRpm(txtRPM, rpm); }
  void SetVoltage(double first, double second);
  void MeasMode(std::int16_t mode);  // 0 by time, 1 by button, 2 by charge
  void CoulombNumber(double coulombs) { ShowNumber(txtCoulomb, coulombs); }
  void MeasureTime(std::int32_t seconds) { ShowNumber(txtMaxTime, seconds); }
  void InitSamplingRate(double hertz) { Enter(txtInitSamplingRate, hertz); }  // above 0
  void QuitPSMeasurement() { Quit(); }

 protected:
  std::vector<BoundBox> Boxes() override;
  TextBox& CurrentScale() override { return txtYScale; }
  void ShowSettings() override;
  void StoreSettings() override;
  void LimitBoxes() override;
  std::unique_ptr<Technique> MakeTechnique() const override;
  RunChoices Choices() const override;

  std::int64_t MonitorInterval() const override;
  std::span<const std::uint8_t> MonitorChannels() const override;
  double MonitorAccumulation() const override { return settings().PSAccum; }
  void ShowReadings(std::span<const double> volts) override;
  Label& ReadingLabel() override { return lblVoltage; }
  void ClearMonitor() override { monitor_.Clear(); }

  void ShowStart(const Technique& technique) override;
  void ShowRecording() override { lblStatus.SetText("Recording"); }
  void ShowState(const RunState& state) override;
  void DrawPoint(std::int32_t index) override;
  void DrawAll() override { DrawCurve(points().size()); }
  void ShowIdle() override;

 private:
  void ShowPotential(double volts);
  void DrawCurve(std::int32_t count);

  VoltageMonitor monitor_;
  LivePlot plot_;
  double charge_before_ = 0;  // C, up to the point before the last one
  bool curve_drawn_ = false;  // all points but the newest are on the screen
};

}  // namespace zento
