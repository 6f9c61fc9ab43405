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

// A straight course of the commanded rotation rate, from one rate to the other. The sign of the
// speed does not count: the course goes from its start to its end whichever of them is higher. At
// speed 0 it stays at its start for ever, unless it ends there.
struct RotationRamp {
  double start = 0;  // rpm
  double end = 0;    // rpm
  double speed = 0;  // rpm/s

  // Rounded to nearest, halves to even; clamped to 0 to 2^31 - 1.
  std::int32_t DurationMillis() const;
  // rpm, `millis` after the start (counted in hundredths of a second); runs on behind the end.
  double At(double millis) const;
  bool Reached(double rpm) const;
};

// Current (channel 1) against rotation rate (channel 4) at one potential, which the generator holds
// when there is one. The program turns the motor along a ramp, or a person turns it and the window
// records until a limit is exceeded or Stop is pressed.
//
// While idle the window is a live monitor. A run begins to record once the retain time is over
// (with the ramp) or the measured rate leaves the 5 rpm it had at the start (without), and stores
// the points in the target track. It works with the values it was started with, the method
// included, so that no click can make the motor jump; only title, target track and "Record Time"
// count as they are.
class frmMeasureRPMvsj : public MeasureForm {
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
  TextBox txtRetainTime{*this, "txtRetainTime"};
  TextBox txtSamplingrate{*this, "txtSamplingrate"};
  TextBox txtAccum{*this, "txtAccum"};
  TextBox txtDataNum{*this, "txtDataNum", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  TextBox txtTitle{*this, "txtTitle"};
  CheckBox chkRecordTime{*this, "chkRecordTime", "Record Time"};
  GraphView picVMon{*this, "picVMon", {360, 240}};
  Label lblVoltage{*this, "lblVoltage"};
  Button cmdClearVMon{*this, "cmdClearVMon", "Clear V Mon."};
  Label lblMode{*this, "lblMode"};
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  Timer RPjTimer{*this, "RPjTimer"};

  bool Load() override;
  Plan CurrentPlan() const override;
  LayoutNode Layout() override;

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void QuitRPMvsjMeasurement();
  void SelTrack(std::int32_t track) { target_.Select(track); }
  void DiskScale(double amperes_per_volt);  // 0 or less becomes 1e-5
  void Title(const std::string& title) { txtTitle.SetText(title); }
  void RetainTime(std::int32_t seconds);
  void SamplingRate(double hertz);          // 0 or less becomes 0.1
  void Accumlation(std::int32_t readings);  // 1 or more
  void StartMeasurement();
  void Potential(double volts);
  // 0 until the limit rate is exceeded, 1 until Stop, 2 along the ramp.
  void AppliedMeasuremode(std::int16_t mode);
  void SetRPMParameters(double start, double end, double speed);  // rpm, rpm, rpm/s

 protected:
  std::vector<RunParameter> Parameters() const override;
  void MonitorTick() override;
  void MeasureTick() override;
  void FinishRun() override;

 private:
  // What a run was started with.
  struct RatePlan {
    int mode = 0;
    double x_scale = 1;    // V/V
    double y_scale = 1;    // A/V
    double rpm_scale = 1;  // rpm/V
    double potential = 0;  // V
    double limit = 0;      // rpm
    RotationRamp ramp;
    double retain_seconds = 0;
    double rate = 1;  // Hz
    std::int32_t rounds = 1;
    bool generator = false;
  };
  // One averaged sample. Its time is the mean of the moments at which its rounds were read.
  struct Sample {
    double rpm = 0;
    double current = 0;  // A
    double millis = 0;   // since the run's time began
  };

  // The entries, in rpm_entries.cpp.
  SettingBoxes Boxes();
  void LeaveBox();
  void LimitEntries();
  void ShowSettings();
  void MakePlan();

  void Programme();
  void ShowEmptyGraph();
  void ReadInitialRate();
  std::optional<Sample> ReadSample();
  bool Began(const std::optional<Sample>& sample, double millis);
  bool FollowRamp(double millis);
  void Record(const Sample& sample);
  void DrawCurve();
  void Store();

  TargetTrack target_;
  VoltageMonitor monitor_;
  LivePlot plot_;
  RatePlan plan_;
  std::optional<double> initial_;  // rpm, a multiple of 5; none until a reading succeeds
  double time_zero_ = 0;           // ms of ReadTime() from which points count their time
};

}  // namespace zento
