// What stands in the rotation-rate window's boxes: its settings, the limits, the operations that
// macros call, and the layout.

#include <algorithm>

#include "measure/rpm_form.h"
#include "text/number.h"

namespace zento {

SettingBoxes frmMeasureRPMvsj::Boxes() {
  Settings& s = workstation().settings;
  return {{&txtXScale, &s.RPjXScale},        {&txtYScale, &s.RPjYScale},
          {&txtRPMScale, &s.RPjRPMScale},    {&txtDiskXValue, &s.RPjDiskPotential},
          {&txtLimitRPM, &s.RPjRPMLimit},    {&txtSamplingrate, &s.RPjSamplingRate},
          {&txtAccum, &s.RPjAccum},          {&txtStartRPM, &s.RPjStartRPM},
          {&txtEndRPM, &s.RPjEndRPM},        {&txtSpeed, &s.RPjSpeed},
          {&txtRetainTime, &s.RPjRetainTime}};
}

void frmMeasureRPMvsj::LeaveBox() {
  LimitEntries();
  StoreBoxes(Boxes());
  if (!Measuring()) RPjTimer.SetInterval(PeriodRounded(NumberIn(txtSamplingrate)));
}

void frmMeasureRPMvsj::LimitEntries() {
  LimitToOneOrMore(txtAccum);
  LimitToSomeRate(txtSamplingrate);
}

void frmMeasureRPMvsj::ShowSettings() {
  ShowBoxes(Boxes());
  // A settings file may hold anything, or nothing.
  LimitEntries();
}

void frmMeasureRPMvsj::MakePlan() {
  target_.Commit();
  LimitEntries();
  StoreBoxes(Boxes());
  const Settings& s = settings();
  plan_.mode = std::max(opnRPMvsj.selected(), 0);
  plan_.x_scale = s.RPjXScale;
  plan_.y_scale = s.RPjYScale;
  plan_.rpm_scale = s.RPjRPMScale;
  plan_.potential = s.RPjDiskPotential;
  plan_.limit = s.RPjRPMLimit;
  plan_.ramp = {s.RPjStartRPM, s.RPjEndRPM, s.RPjSpeed};
  plan_.retain_seconds = std::max(s.RPjRetainTime, 0.0);
  plan_.rate = s.RPjSamplingRate;
  plan_.rounds = AccumulationRounds(s.RPjAccum);
  plan_.generator = s.GPIBControl > 0;
  time_zero_ = 0;
}

std::vector<RunParameter> frmMeasureRPMvsj::Parameters() const {
  const auto value = [](double number, const char* unit) { return PlainNumber(number) + unit; };
  const auto method = [&]() -> std::string {
    if (plan_.mode == 0) return "until the rate exceeds " + value(plan_.limit, " rpm");
    if (plan_.mode == 1) return "until stopped";
    return "ramp from " + value(plan_.ramp.start, " rpm to ") + value(plan_.ramp.end, " rpm at ") +
           value(plan_.ramp.speed, " rpm/s, ") + FormatDuration(plan_.ramp.DurationMillis()) +
           " planned, after " + value(plan_.retain_seconds, " s");
  };
  return {
      {"Title", txtTitle.text()},
      {"Target track", PlainNumber(target_.number())},
      {"Potential",
       value(plan_.potential, " V") + (plan_.generator ? ", held by the function generator" : "")},
      {"Method", method()},
      {"Rotation at the start", value(plan_.ramp.start, " rpm")},
      {"Sampling", value(plan_.rate, " Hz, ") + PlainNumber(plan_.rounds) + " readings a point"},
      {"Scales", value(plan_.x_scale, " V/V, ") + value(plan_.y_scale, " A/V, ") +
                     value(plan_.rpm_scale, " rpm/V")},
  };
}

void frmMeasureRPMvsj::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                               std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void frmMeasureRPMvsj::QuitRPMvsjMeasurement() {
  host().desktop.Unload(name());
}

void frmMeasureRPMvsj::DiskScale(double amperes_per_volt) {
  ShowNumber(txtYScale, LimitedScale(amperes_per_volt));
}

void frmMeasureRPMvsj::RetainTime(std::int32_t seconds) {
  ShowNumber(txtRetainTime, seconds);
}

void frmMeasureRPMvsj::SamplingRate(double hertz) {
  ShowNumber(txtSamplingrate, hertz);
  LeaveBox();
}

void frmMeasureRPMvsj::Accumlation(std::int32_t readings) {
  ShowNumber(txtAccum, readings);
  LeaveBox();
}

void frmMeasureRPMvsj::Potential(double volts) {
  ShowNumber(txtDiskXValue, volts);
  LeaveBox();
}

void frmMeasureRPMvsj::AppliedMeasuremode(std::int16_t mode) {
  opnRPMvsj.Select(std::clamp<int>(mode, 0, 2));
}

void frmMeasureRPMvsj::SetRPMParameters(double start, double end, double speed) {
  ShowNumber(txtStartRPM, start);
  ShowNumber(txtEndRPM, end);
  ShowNumber(txtSpeed, speed);
}

LayoutNode frmMeasureRPMvsj::Layout() {
  using namespace layout;
  return Columns({
      Rows({
          Group("Measurement Method",
                {Item(opnRPMvsj), Fields({Field("Limit /rpm", txtLimitRPM)}),
                 // One sentence from left to right.
                 Columns({Fields({Field("Start:", txtStartRPM)}),
                          Fields({Field("rpm  End:", txtEndRPM)}),
                          Fields({Field("rpm  Speed:", txtSpeed)}), Text("rpm/s")})}),
          Group("Potential", {Fields({Field("Disk /V", txtDiskXValue),
                                      Field("Retain Time /s", txtRetainTime)})}),
          Group("Scales", {Fields({Field("XScale V/V (ch 0)", txtXScale),
                                   Field("YScale A/V (ch 1)", txtYScale),
                                   Field("RPM /V (ch. 5)", txtRPMScale)})}),
          Stretch(),
      }),
      Rows({
          Group("Sampling", {Fields({Field("Sampling Rate/Hz", txtSamplingrate),
                                     Field("Accumlation  x", txtAccum)}),
                             Item(chkRecordTime)}),
          Group("Track",
                {Fields({Field("Track", txtDataNum, &UpDown1), Field("Title", txtTitle)})}),
          Stretch(),
      }),
      Rows(
          {
              Group("Monitor",
                    {Item(picVMon, 1), Columns({Item(lblVoltage), Stretch(), Item(cmdClearVMon)})},
                    1),
              Item(lblMode),
              Columns({Item(cmdStart), Item(cmdStop)}),
          },
          1),
  });
}

}  // namespace zento
