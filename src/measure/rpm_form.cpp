#include "measure/rpm_form.h"

#include <algorithm>
#include <array>

#include "core/palette.h"
#include "measure/rotation_sweep.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {4, 1};  // rotation, current
constexpr Colour kCurveColour = kLightRed;

constexpr MeasureWindow kWindow = {.name = "frmMeasureRPMvsj",
                                   .caption = "RPM vs. i",
                                   .timer = "RPjTimer",
                                   .board_message = "AD Board不良です",
                                   .bus_message = "GPIB Trouble!",
                                   .output_message = "DA Board Trouble!",
                                   .draws_below = 20,
                                   .ticks_follow_box = true};

const AxisLook kLook{"0", "0.0#e+00", "/rpm"};

}  // namespace

frmMeasureRPMvsj::frmMeasureRPMvsj(Workstation& workstation, Host& host, Instruments& instruments)
    : CellForm(workstation, host, instruments, kWindow),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  Watch(opnRPMvsj);
  LetClearMonitor(cmdClearVMon);
  chkRecordTime.on_click = [this](int) { HandDownChoices(); };
}

std::span<const std::uint8_t> frmMeasureRPMvsj::MonitorChannels() const {
  return kChannels;
}

void frmMeasureRPMvsj::ShowReadings(std::span<const double> volts) {
  monitor_.Add(volts[0], volts[1]);
  ShowRate(volts[0] * settings().RPjRPMScale);
}

void frmMeasureRPMvsj::ShowRate(double rpm) {
  lblVoltage.SetText(Format(rpm, "###0") + "rpm");
}

void frmMeasureRPMvsj::ShowStart(const Technique& technique) {
  plot_.Begin("RPM vs. j Plot", technique.Range(), kLook);
  lblMode.SetText("Waiting for the start");
}

void frmMeasureRPMvsj::ShowState(const RunState& state) {
  if (state.last.rpm) ShowRate(*state.last.rpm);
}

void frmMeasureRPMvsj::DrawPoint(std::int32_t index) {
  const double rpm = points().At(0, index);
  const double current = points().At(1, index);
  const bool changed = plot_.Include(rpm, current);
  if (!DrawsLive()) return;
  if (changed) DrawCurve(index);
  plot_.Point(rpm, current, kCurveColour);
}

void frmMeasureRPMvsj::DrawCurve(std::int32_t count) {
  plot_.Redraw(kLook);
  plot_.Curve(points().Column(0, count), points().Column(1, count), kCurveColour);
}

std::vector<BoundBox> frmMeasureRPMvsj::Boxes() {
  Settings& s = workstation().settings;
  return {{&txtXScale, &s.RPjXScale},        {&txtYScale, &s.RPjYScale},
          {&txtRPMScale, &s.RPjRPMScale},    {&txtDiskXValue, &s.RPjDiskPotential},
          {&txtLimitRPM, &s.RPjRPMLimit},    {&txtSamplingrate, &s.RPjSamplingRate},
          {&txtAccum, &s.RPjAccum},          {&txtStartRPM, &s.RPjStartRPM},
          {&txtEndRPM, &s.RPjEndRPM},        {&txtSpeed, &s.RPjSpeed},
          {&txtRetainTime, &s.RPjRetainTime}};
}

void frmMeasureRPMvsj::LimitBoxes() {
  LimitBox(txtAccum, AtLeastOne);
  LimitBox(txtSamplingrate, SomeRate);
}

RunChoices frmMeasureRPMvsj::Choices() const {
  RunChoices choices = CellForm::Choices();
  choices.record_time = chkRecordTime.value();
  return choices;
}

std::unique_ptr<Technique> frmMeasureRPMvsj::MakeTechnique() const {
  RotationSweepValues values;
  values.method = std::max(opnRPMvsj.selected(), 0);
  values.potential = NumberIn(txtDiskXValue);
  values.limit = NumberIn(txtLimitRPM);
  values.ramp = {NumberIn(txtStartRPM), NumberIn(txtEndRPM), NumberIn(txtSpeed)};
  values.retain_seconds = NumberIn(txtRetainTime);
  values.sampling_rate = NumberIn(txtSamplingrate);
  values.accumulation = NumberIn(txtAccum);
  values.x_scale = NumberIn(txtXScale);
  values.y_scale = NumberIn(txtYScale);
  values.rpm_scale = NumberIn(txtRPMScale);
  values.generator = HasGenerator();
  return std::make_unique<RotationSweep>(values);
}

void frmMeasureRPMvsj::AppliedMeasuremode(std::int16_t mode) {
  opnRPMvsj.Select(std::clamp<int>(mode, 0, 2));
  HandDownChoices();
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
