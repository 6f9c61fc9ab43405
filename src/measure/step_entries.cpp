// What stands in the potential step window's boxes: its settings, the limits, the operations that
// macros call, and the layout.

#include <algorithm>

#include "measure/step_form.h"
#include "text/number.h"

namespace zento {
namespace {

// The generator holds the first potential for at most three digits of seconds.
constexpr std::int32_t kLongestRetainTime = 999;

}  // namespace

SettingBoxes frmPotentialStep::Boxes() {
  Settings& s = workstation().settings;
  return {{&txtXScale, &s.PSXScale},
          {&txtYScale, &s.PSYScale},
          {&txtRPMScale, &s.PSRPMScale},
          {&txtVoltSetting[0], &s.PSV0},
          {&txtVoltSetting[1], &s.PSV1},
          {&txtRetainTime, &s.PSRetainTime},
          {&txtMaxTime, &s.PSMaxTime},
          {&txtCoulomb, &s.PSCoulomb},
          {&txtInitSamplingRate, &s.PSInitSamplingRate},
          {&txtSamplingDivision, &s.PSSamplinDivision},
          {&txtAccum, &s.PSAccum},
          {&txtRPM, &s.PSRPM}};
}

void frmPotentialStep::LeaveBox() {
  LimitEntries();
  StoreSettings();
  if (!Measuring()) PSTimer.SetInterval(PeriodRounded(NumberIn(txtInitSamplingRate)));
}

void frmPotentialStep::LimitEntries() {
  LimitToOneOrMore(txtAccum);
  LimitToSomeRate(txtInitSamplingRate);
}

void frmPotentialStep::ShowSettings() {
  ShowBoxes(Boxes());
  chkGraphOn.SetValue(settings().PSGraphOn != 0 ? 1 : 0);
  // A settings file may hold anything, or nothing.
  LimitEntries();
}

void frmPotentialStep::StoreSettings() {
  StoreBoxes(Boxes());
  workstation().settings.PSGraphOn = chkGraphOn.value() != 0 ? 1 : 0;
}

void frmPotentialStep::MakePlan() {
  target_.Commit();
  LimitEntries();
  plan_.generator = settings().GPIBControl > 0;
  const std::int32_t retain = ToLong(NumberIn(txtRetainTime));
  plan_.retain_seconds = std::clamp(retain, 0, kLongestRetainTime);
  if (plan_.generator && plan_.retain_seconds != retain) {
    ShowNumber(txtRetainTime, plan_.retain_seconds);
  }
  StoreSettings();
  plan_.first = NumberIn(txtVoltSetting[0]);
  plan_.second = NumberIn(txtVoltSetting[1]);
  plan_.limit = std::max(ToLong(NumberIn(txtMaxTime) * 1000), 0);
  plan_.coulombs = NumberIn(txtCoulomb);
  plan_.rate = NumberIn(txtInitSamplingRate);
  // Nothing can be divided by 0 or less: the rate stays as it is then.
  const double division = NumberIn(txtSamplingDivision);
  plan_.division = division > 0 ? division : 1;
  plan_.rounds = AccumulationRounds(NumberIn(txtAccum));
  plan_.rpm = NumberIn(txtRPM);
  plan_.x_scale = NumberIn(txtXScale);
  plan_.y_scale = NumberIn(txtYScale);
  resting_at_.reset();
  marked_.reset();
  rate_ = plan_.rate;
  charge_ = 0;
  limit_ = plan_.limit;
  last_sample_ = 0;
}

std::vector<RunParameter> frmPotentialStep::Parameters() const {
  const auto value = [](double number, const char* unit) { return PlainNumber(number) + unit; };
  const auto method = [&]() -> std::string {
    if (opnPSMeas.selected() == 1) return "until stopped";
    if (opnPSMeas.selected() == 2) return "by charge, " + value(plan_.coulombs, " C");
    return "by time, " + FormatDuration(plan_.limit);
  };
  const bool variable = opnSamplingMode.selected() == 1;
  return {
      {"Title", txtTitle.text()},
      {"Target track", PlainNumber(target_.number())},
      {"Potentials", value(plan_.first, " V, ") + value(plan_.second, " V")},
      {"Method", method()},
      {"Step from", plan_.generator ? "the function generator, held at the first potential for " +
                                          PlainNumber(plan_.retain_seconds) + " s"
                                    : std::string("the potentiostat")},
      {"Rotation", value(plan_.rpm, " rpm")},
      {"Sampling",
       value(plan_.rate, " Hz") +
           (variable ? ", divided by " + PlainNumber(plan_.division) + " a point, " : ", ") +
           PlainNumber(plan_.rounds) + " readings a point"},
      {"Scales", value(plan_.x_scale, " V/V, ") + value(plan_.y_scale, " A/V")},
  };
}

void frmPotentialStep::rpm(const std::string& rpm) {
  txtRPM.SetText(LimitedRpm(rpm));
}

void frmPotentialStep::DiskScale(double amperes_per_volt) {
  ShowNumber(txtYScale, LimitedScale(amperes_per_volt));
}

void frmPotentialStep::SetVoltage(double first, double second) {
  ShowNumber(txtVoltSetting[0], first);
  ShowNumber(txtVoltSetting[1], second);
}

void frmPotentialStep::MeasMode(std::int16_t mode) {
  opnPSMeas.Select(std::clamp<int>(mode, 0, 2));
}

void frmPotentialStep::RetainTime(std::int32_t seconds) {
  ShowNumber(txtRetainTime, seconds);
}

void frmPotentialStep::CoulombNumber(double coulombs) {
  ShowNumber(txtCoulomb, coulombs);
}

void frmPotentialStep::MeasureTime(std::int32_t seconds) {
  ShowNumber(txtMaxTime, seconds);
}

void frmPotentialStep::InitSamplingRate(double hertz) {
  ShowNumber(txtInitSamplingRate, hertz);
  LeaveBox();
}

void frmPotentialStep::Accumlation(std::int32_t readings) {
  ShowNumber(txtAccum, readings);
  LeaveBox();
}

void frmPotentialStep::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                               std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void frmPotentialStep::QuitPSMeasurement() {
  host().desktop.Unload(name());
}

LayoutNode frmPotentialStep::Layout() {
  using namespace layout;
  return Columns({
      Rows({
          Group("Potentials",
                {Fields({Field("1st /V", txtVoltSetting[0]), Field("2nd /V", txtVoltSetting[1]),
                         Field("1st retainment time /s", txtRetainTime)})}),
          Group("Measurement Method",
                {Item(opnPSMeas), Fields({Field("Measure time /s", txtMaxTime),
                                          Field("Coulomb Number /C", txtCoulomb)})}),
          Group("Scales", {Fields({Field("XScale V/V (ch 0)", txtXScale),
                                   Field("YScale A/V (ch 1)", txtYScale),
                                   Field("RPM /V (ch. 5)", txtRPMScale)})}),
          Stretch(),
      }),
      Rows({
          Group("Sampling", {Item(opnSamplingMode),
                             Fields({Field("Initial Value/Hz", txtInitSamplingRate),
                                     Field("Division", txtSamplingDivision),
                                     Field("Accumlation  x", txtAccum), Field("RPM:", txtRPM)})}),
          Group("Track",
                {Fields({Field("Track", txtDataNum, &UpDown1), Field("Title", txtTitle)})}),
          Item(chkGraphOn),
          Stretch(),
      }),
      Rows(
          {
              Group("Voltage Monitor /V",
                    {Item(picVMon, 1), Columns({Item(lblVoltage), Stretch(), Item(cmdClearVMon)})},
                    1),
              Item(lblStatus),
              Columns({Item(cmdStart), Item(cmdStop)}),
          },
          1),
  });
}

}  // namespace zento
