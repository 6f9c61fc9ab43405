#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/sweep_form.h"

namespace zento {

// Cyclic voltammetry, with six numbered settings. While idle the window is a voltage monitor.
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

  LayoutNode Layout() override;

  // What macros call besides.
  void SettingNum(const std::string& number);  // 0 to 5; its values are loaded
  void RetainTime(std::int32_t seconds);       // 0 or more
  void Repeat(std::int32_t cycles);            // 1 or more
  void SamplingRate(double hertz);             // above 0, at most 1000
  void QuitCVMeasurement() { Quit(); }

 protected:
  std::vector<BoundBox> Boxes() override;  // those of the setting that is chosen
  TextBox& CurrentScale() override { return txtYScale; }
  void ShowSettings() override;
  void StoreSettings() override;
  void LimitBoxes() override;
  std::unique_ptr<Technique> MakeTechnique() const override;

  std::span<const std::uint8_t> MonitorChannels() const override;
  double MonitorAccumulation() const override { return CurrentPreset().CVAccum; }
  void ShowReadings(std::span<const double> volts) override;
  Label& ReadingLabel() override { return lblVoltage; }
  void ClearMonitor() override { monitor_.Clear(); }

  void ShowStart(const Technique& technique) override;
  void ShowState(const RunState& state) override;
  void DrawPoint(std::int32_t index) override;
  void DrawAll() override { DrawCurve(points().size()); }

 private:
  std::size_t PresetIndex() const;
  CVPreset& CurrentPreset();
  const CVPreset& CurrentPreset() const { return settings().CV[PresetIndex()]; }
  void SelectPreset(std::int32_t number);
  void StepPreset(int direction);
  void DrawCurve(std::int32_t count);

  VoltageMonitor monitor_;
  LivePlot plot_;
  std::int32_t shown_remaining_ = 0;  // s
};

}  // namespace zento
