#include "measure/step_form.h"

#include <algorithm>
#include <array>

#include "core/palette.h"
#include "measure/potential_step.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr int kVariable = 1;
constexpr Colour kCurveColour = kLightRed;

constexpr MeasureWindow kWindow = {.name = "frmPotentialStep",
                                   .caption = "Potential Step Measurement",
                                   .timer = "PSTimer",
                                   .board_message = "AD Board不良です",
                                   .bus_message = "GPIB不良",
                                   .output_message = "DA Board Trouble!",
                                   .draws_below = 50,
                                   .ticks_follow_box = true};

const AxisLook kLook{"0", "0.0#e+00", "/V"};

}  // namespace

frmPotentialStep::frmPotentialStep(Workstation& workstation, Host& host, Instruments& instruments)
    : CellForm(workstation, host, instruments, kWindow),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  Watch(opnPSMeas);
  LetClearMonitor(cmdClearVMon);
  opnSamplingMode.on_select = [this](int) { HandDownChoices(); };
  chkGraphOn.on_click = [this](int) { StoreSettings(); };
}

std::int64_t frmPotentialStep::MonitorInterval() const {
  return PeriodRounded(NumberIn(txtInitSamplingRate));
}

std::span<const std::uint8_t> frmPotentialStep::MonitorChannels() const {
  return kChannels;
}

void frmPotentialStep::ShowReadings(std::span<const double> volts) {
  monitor_.Add(volts[0], volts[1]);
  ShowPotential(volts[0]);
}

void frmPotentialStep::ShowPotential(double volts) {
  lblVoltage.SetText(Format(volts, "0.000000") + "V");
}

void frmPotentialStep::ShowStart(const Technique& technique) {
  plot_.Begin("I-t Graph", technique.Range(), kLook);
  curve_drawn_ = true;
  charge_before_ = 0;
  lblStatus.SetText("Waiting for the step");
}

void frmPotentialStep::ShowState(const RunState& state) {
  if (state.last.potential) ShowPotential(*state.last.potential);
  charge_before_ = state.charge.value_or(0);
}

void frmPotentialStep::DrawPoint(std::int32_t index) {
  const double millis = points().At(0, index);
  const double current = points().At(1, index);
  const bool changed = plot_.Include(millis, current);
  if (!DrawsLive() || chkGraphOn.value() == 0) {
    curve_drawn_ = false;
    return;
  }
  lblStatus.SetText(Format(charge_before_, "#0.00000") + "C " + Format(millis / 1000, "####0.0") +
                    "s");
  if (changed || !curve_drawn_) DrawCurve(index);
  plot_.Point(millis, current, kCurveColour);
}

void frmPotentialStep::DrawCurve(std::int32_t count) {
  plot_.Redraw(kLook);
  plot_.Curve(points().Column(0, count), points().Column(1, count), kCurveColour);
  curve_drawn_ = true;
}

void frmPotentialStep::ShowIdle() {
  if (points().size() == 0) lblStatus.SetText("");
}

std::vector<BoundBox> frmPotentialStep::Boxes() {
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

void frmPotentialStep::LimitBoxes() {
  LimitBox(txtAccum, AtLeastOne);
  LimitBox(txtInitSamplingRate, SomeRate);
}

void frmPotentialStep::ShowSettings() {
  chkGraphOn.SetValue(settings().PSGraphOn != 0 ? 1 : 0);
  CellForm::ShowSettings();
}

void frmPotentialStep::StoreSettings() {
  CellForm::StoreSettings();
  workstation().settings.PSGraphOn = chkGraphOn.value() != 0 ? 1 : 0;
}

RunChoices frmPotentialStep::Choices() const {
  RunChoices choices = CellForm::Choices();
  choices.variable_sampling = opnSamplingMode.selected() == kVariable;
  return choices;
}

std::unique_ptr<Technique> frmPotentialStep::MakeTechnique() const {
  StepValues values;
  values.first = NumberIn(txtVoltSetting[0]);
  values.second = NumberIn(txtVoltSetting[1]);
  values.retain_seconds = NumberIn(txtRetainTime);
  values.seconds = NumberIn(txtMaxTime);
  values.coulombs = NumberIn(txtCoulomb);
  values.sampling_rate = NumberIn(txtInitSamplingRate);
  values.division = NumberIn(txtSamplingDivision);
  values.accumulation = NumberIn(txtAccum);
  values.rpm = NumberIn(txtRPM);
  values.x_scale = NumberIn(txtXScale);
  values.y_scale = NumberIn(txtYScale);
  values.generator = HasGenerator();
  return std::make_unique<PotentialStep>(values);
}

void frmPotentialStep::SetVoltage(double first, double second) {
  ShowNumber(txtVoltSetting[0], first);
  ShowNumber(txtVoltSetting[1], second);
}

void frmPotentialStep::MeasMode(std::int16_t mode) {
  opnPSMeas.Select(std::clamp<int>(mode, 0, 2));
  HandDownChoices();
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
