#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "measure/entries.h"
#include "measure/live_plot.h"
#include "measure/run.h"
#include "measure/voltage_monitor.h"

namespace zento {

// Chronoamperometry: current (channel 1) against time after a potential step that the generator, or
// without one the potentiostat itself, makes.
//
// While idle the window is a voltage monitor. A run rests at the first potential until the readings
// of channel 0 show the step, and records from there on: time 0 is the end of the tick that saw it,
// so the real step lies before time 0 by up to one sampling period and a tick's readings. It ends
// by time, by charge or by the Stop button, and stores the points in the target track. With
// variable sampling the rate is divided after every point.
//
// A run works with the values it was started with; only the title, the target track, the method and
// the sampling mode count as they are.
class frmPotentialStep : public MeasureForm {
 public:
  frmPotentialStep(Workstation& workstation, Host& host, Instruments& instruments);

  TextBox txtXScale{*this, "txtXScale"};
  TextBox txtYScale{*this, "txtYScale"};
  TextBox txtRPMScale{*this, "txtRPMScale"};
  ControlArray<TextBox, 2> txtVoltSetting{*this, "txtVoltSetting"};
  TextBox txtRetainTime{*this, "txtRetainTime"};
  OptionGroup opnPSMeas{*this, "opnPSMeas", {"by time", "by button", "by Coulomb Number /C"}, 0};
  TextBox txtMaxTime{*this, "txtMaxTime"};
  TextBox txtCoulomb{*this, "txtCoulomb"};
  OptionGroup opnSamplingMode{*this, "opnSamplingMode", {"Constant", "Variable"}, 0};
  TextBox txtInitSamplingRate{*this, "txtInitSamplingRate"};
  TextBox txtSamplingDivision{*this, "txtSamplingDivision"};
  TextBox txtAccum{*this, "txtAccum"};
  TextBox txtRPM{*this, "txtRPM"};
  TextBox txtDataNum{*this, "txtDataNum", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  TextBox txtTitle{*this, "txtTitle"};
  CheckBox chkGraphOn{*this, "chkGraphOn", "Realtime Graph Draw mode"};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Label lblVoltage{*this, "lblVoltage"};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V. Mon"};
  Label lblStatus{*this, "lblStatus"};
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  Timer PSTimer{*this, "PSTimer"};

  bool Load() override;
  Plan CurrentPlan() const override;
  LayoutNode Layout() override;

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  void SelTrack(std::int32_t track) { target_.Select(track); }
  void rpm(const std::string& rpm);         // 0 to 10000
  void DiskScale(double amperes_per_volt);  // 0 or less becomes 1e-5
  void Title(const std::string& title) { txtTitle.SetText(title); }
  void SetVoltage(double first, double second);
  void MeasMode(std::int16_t mode);  // 0 by time, 1 by button, 2 by charge
  void RetainTime(std::int32_t seconds);
  void CoulombNumber(double coulombs);
  void MeasureTime(std::int32_t seconds);
  void InitSamplingRate(double hertz);      // 0 or less becomes 0.1
  void Accumlation(std::int32_t readings);  // 1 or more
  void StartMeasurement();
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitPSMeasurement();

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void MeasureTick() override;
  void FinishRun() override;

 private:
  // What a run was started with.
  struct StepPlan {
    double first = 0;                 // V
    double second = 0;                // V
    std::int32_t retain_seconds = 0;  // as the generator is told
    std::int32_t limit = 0;           // ms, by time
    double coulombs = 0;              // C, by charge
    double rate = 1;                  // Hz, of the first points
    double division = 1;              // above 0
    std::int32_t rounds = 1;
    double rpm = 0;      // as typed
    double x_scale = 1;  // V/V
    double y_scale = 1;  // A/V
    bool generator = false;
  };
  struct Sample {
    double volts = 0;  // raw
    double potential = 0;
    double current = 0;
  };
  // The track whose first potentials were set when the step was seen, and what they were before.
  struct Marked {
    int track = 0;
    double before[2] = {};
    double after[2] = {};
  };

  // The entries, in step_entries.cpp.
  SettingBoxes Boxes();
  void LeaveBox();
  void LimitEntries();
  void ShowSettings();
  void StoreSettings();
  void MakePlan();

  void Programme();
  void ShowEmptyGraph();
  void ReadReference();
  std::optional<Sample> ReadSample();
  bool StepSeen(const Sample& sample, std::int64_t elapsed);
  void LogStep(double potential);
  void MarkTrack(double potential);
  void Record(const Sample& sample, std::int64_t elapsed);
  void Draw(double millis, double current);
  void DrawCurve();
  void AddCharge();
  void CheckEnd(std::int64_t elapsed);
  void ThinOut(std::int64_t elapsed);
  void Store();

  TargetTrack target_;
  VoltageMonitor monitor_;
  LivePlot plot_;
  StepPlan plan_;
  std::optional<double> reference_;  // V, raw, to one decimal; none until a reading succeeds
  // When the potential was last seen resting, ms since the start.
  std::optional<std::int64_t> resting_at_;
  std::optional<Marked> marked_;
  double rate_ = 1;               // Hz, now
  double charge_ = 0;             // C
  std::int64_t limit_ = 0;        // ms; what is stored as the run's time
  std::int64_t last_sample_ = 0;  // ms
  bool curve_drawn_ = false;      // all points but the newest are on the screen
};

}  // namespace zento
