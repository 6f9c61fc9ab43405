#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/live_plot.h"
#include "measure/run.h"
#include "measure/voltage_monitor.h"

namespace zento {

// The multichannel monitor: up to ten electrodes against time, each a pair of display channels (2i
// the potential, 2i + 1 the current of electrode i) that any analog input can feed. For long, slow
// runs of several cells or of a multi-electrode potentiostat; no generator, no motor.
//
// A run keeps its points to itself and puts them into tracks 0 to 9 when it ends, so that what the
// tracks held is whole until then; tracks that stand in no file are written to one in the home
// before. It works with the inputs, scales and rates it was started with; titles, the method and
// "Current Monitor" count as they are at the moment.
class frmMultipotentiostat : public MeasureForm {
 public:
  static constexpr std::size_t kElectrodes = 10;
  static constexpr std::size_t kChannels = 2 * kElectrodes;

  frmMultipotentiostat(Workstation& workstation, Host& host, Instruments& instruments);

  ControlArray<TextBox, kElectrodes> txtTitle{*this, "txtTitle"};
  ControlArray<ComboBox, kChannels> cbxADCh{*this, "cbxADCh"};
  ControlArray<TextBox, kChannels> txtScale{*this, "txtScale"};
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
  Label lblMode;
  Label lblNotice{*this, "lblNotice"};
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  Timer MMTimer{*this, "MMTimer"};

  bool Load() override;
  Plan CurrentPlan() const override;
  LayoutNode Layout() override;

  void StartMeasurement();
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitMMMeasurement();

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void MeasureTick() override;
  void FinishRun() override;

 private:
  enum Method { kByTime, kByButton, kSampling };

  // Which inputs are read, and what each display channel makes of them.
  struct Wiring {
    std::vector<std::uint8_t> inputs;             // in use, each once, rising
    std::array<std::uint8_t, kChannels> input{};  // of each channel
    std::array<std::size_t, kChannels> place{};   // of the channel's input in `inputs`
    std::array<double, kChannels> scale{};
  };
  // What a run was started with.
  struct MonitorPlan {
    Wiring wiring;
    double sampling_rate = 0;
    std::int32_t rounds = 0;  // 0: ticks do nothing
    std::int64_t limit = 0;   // ms
  };
  // One round of readings, averaged over the accumulation.
  using Readings = std::array<double, kChannels>;

  // The entries, in multi_entries.cpp.
  void WireBoxes();
  void RestoreEntries();
  void StoreEntries();
  void LeaveSamplingRate();
  void MapInput(std::size_t channel, int input);
  void TakeScale(std::size_t channel);
  void UpdateWiring();
  std::int32_t Rounds() const;

  Method CurrentMethod() const { return static_cast<Method>(opnMMMeas.selected()); }
  bool KeepOldTracks();
  void ShowEmptyGraph();
  // False when a reading failed; nothing is shown or kept then.
  bool Read(const Wiring& wiring, std::int32_t rounds, Readings& volts);
  bool Scale(const Readings& volts, Readings& values);
  void ShowCurrents(const Readings& values);
  void SetPoint(double time, const Readings& values);
  void DrawPoint(double time, const Readings& values);
  void DrawCurves();
  void ClickSampling();
  void ClickStop();
  void ShowProgress();
  void CheckTime(std::int64_t elapsed);
  void Store();

  VoltageMonitor monitor_;
  LivePlot plot_;
  Wiring wiring_;
  MonitorPlan plan_;
  std::int64_t elapsed_ = 0;  // ms, of the last tick
  bool fresh_ = false;        // the slot of the next point holds a reading
  std::vector<double> time_;  // ms
  std::array<std::vector<double>, kChannels> values_;
};

}  // namespace zento
