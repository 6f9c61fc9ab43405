#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/measure_form.h"
#include "measure/multichannel_monitor.h"

namespace zento {

// Up to ten electrodes against time. A run works with the inputs, scales and rates it was started
// with; titles, the method and "Current Monitor" count as they are at the moment.
class frmMultipotentiostat : public MeasureForm {
 public:
  frmMultipotentiostat(Workstation& workstation, Host& host, Instruments& instruments);

  ControlArray<TextBox, kElectrodes> txtTitle{*this, "txtTitle"};
  ControlArray<ComboBox, kDisplayChannels> cbxADCh{*this, "cbxADCh"};
  ControlArray<TextBox, kDisplayChannels> txtScale{*this, "txtScale"};
  ControlArray<Label, kElectrodes> lblCurrent{*this, "lblCurrent"};
  CheckBox chkiMon{*this, "chkiMon", "Current Monitor"};
  TextBox txtSamplingrate{*this, "txtSamplingrate", "0.5"};
  TextBox txtAccum{*this, "txtAccum", "100"};
  TextBox txtMaxTime{*this, "txtMaxTime", "100"};
  OptionGroup opnMMMeas{
      *this, "opnMMMeas", {"Stop by time ", "Stop by button", "Sampling by button"}, 0};
  Button cmdSampling{*this, "cmdSampling", "Sampling"};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V. Mon"};
  Label lblMode{*this, "lblMode"};
  Label lblNotice{*this, "lblNotice"};

  bool Load() override;
  LayoutNode Layout() override;
  void QuitMMMeasurement() { Quit(); }

 protected:
  void ShowSettings() override;
  std::int64_t MonitorInterval() const override { return PeriodRounded(NumberIn(txtSamplingrate)); }
  void MonitorTick() override;
  void ClearMonitor() override { monitor_.Clear(); }

  bool MayStart() override;
  void TakeBoxes() override { StoreBoxes(); }
  std::unique_ptr<Technique> MakeTechnique() const override;
  RunChoices Choices() const override;

  void ShowStart(const Technique& technique) override;
  void ShowRecording() override;
  void ShowIdle() override;
  void ShowState(const RunState& state) override;
  void DrawPoint(std::int32_t index) override;
  void DrawAll() override { DrawCurves(points().size()); }
  void PointsStored() override;

 private:
  void StoreBoxes();
  void LeaveSamplingRate();
  void MapInput(std::size_t channel, int input);
  void TakeScale(std::size_t channel);
  void UpdateWiring();
  void ClickSampling();
  void ClickStop();
  void ShowCurrents(const DisplayValues& values);
  void DrawCurves(std::int32_t count);

  VoltageMonitor monitor_;
  LivePlot plot_;
  InputWiring wiring_;
  bool reads_nothing_ = false;  // of the run: its accumulation is below 1
};

}  // namespace zento
