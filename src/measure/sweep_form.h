#pragma once

#include <cstdint>
#include <string>

#include "measure/measure_form.h"
#include "measure/sweep.h"

namespace zento {

// What the windows share whose runs sweep the potential between three vertices. After a run the
// target track moves on by one. A run works with the values it was started with, whatever is typed
// meanwhile; only the title, the target track and the method count as they are.
class SweepForm : public CellForm {
 public:
  ControlArray<TextBox, 3> txtVoltSetting{*this, "txtVoltSetting", {"-0.2", "1.2", "0.6"}};
  TextBox txtScanrate{*this, "txtScanrate"};
  TextBox txtCycleNum{*this, "txtCycleNum"};
  ComboBox cbxReference{*this, "cbxReference"};
  TextBox txtRPM{*this, "txtRPM"};
  TextBox txtRPMScale{*this, "txtRPMScale", "1000"};
  TextBox txtSamplingrate{*this, "txtSamplingrate"};
  Label lblMode{*this, "lblMode"};
  Label lblTimeRemain{*this, "lblTimeRemain"};

  bool Load() override;

  void rpm(const std::string& rpm) { EnterRpm(txtRPM, rpm); }
  void SetVoltage(double first, double second, double third);
  void scanrate(double millivolts_per_second);  // below 0 becomes 0.001
  void Accumlation(std::int32_t readings);      // 1 or more

 protected:
  using CellForm::CellForm;

  // What stands in the boxes that both windows have.
  SweepValues Values() const;
  // The index of the reference electrode that is chosen. One from a file that stands for nothing
  // shows as no choice, and is kept.
  std::int32_t ChosenReference(std::int32_t kept) const;
  // Whole seconds until the planned end, below 0 after it; nothing while that is not known.
  std::optional<std::int32_t> Remaining(const RunState& state) const;

  std::int64_t MonitorInterval() const override { return PeriodCut(NumberIn(txtSamplingrate)); }
  void ShowStart(const Technique& technique) override;
  void ShowRecording() override { lblMode.SetText("Recording"); }
  void ShowIdle() override { lblMode.SetText("Voltage Monitor"); }
  void PointsStored() override { target_.Advance(); }
};

}  // namespace zento
