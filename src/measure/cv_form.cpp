#include "measure/cv_form.h"

#include <algorithm>
#include <array>

#include "core/palette.h"
#include "measure/cyclic_voltammetry.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 2> kChannels = {0, 1};  // potential, current
constexpr Colour kCurveColour = kLightRed;

constexpr MeasureWindow kWindow = {.name = "frmMeasureCV",
                                   .caption = "CV Meaurement",
                                   .timer = "CVTimer",
                                   .board_message = "AD Board Trouble!",
                                   .bus_message = "GPIB Trouble!",
                                   .output_message = "DA Board Trouble!",
                                   .draws_below = 20,
                                   .ticks_follow_box = false};

const AxisLook kEmptyLook{"0.0", "0.00e+0", "/V"};
const AxisLook kCurveLook{"0.00", "0.0e+0", "/V"};

}  // namespace

frmMeasureCV::frmMeasureCV(Workstation& workstation, Host& host, Instruments& instruments)
    : SweepForm(workstation, host, instruments, kWindow),
      monitor_(picVMon, kCurveColour),
      plot_(host.desktop, "Graph1") {
  Watch(OpnCVMeas);
  LetClearMonitor(cmdClearVMon);
  txtCVTitle.on_commit = [this] { LeaveBox(); };
  txtCVNum.on_commit = [this] { SettingNum(txtCVNum.text()); };
  UpDown2.on_up = [this] { StepPreset(1); };
  UpDown2.on_down = [this] { StepPreset(-1); };
}

std::span<const std::uint8_t> frmMeasureCV::MonitorChannels() const {
  return kChannels;
}

void frmMeasureCV::ShowReadings(std::span<const double> volts) {
  monitor_.Add(volts[0], volts[1]);
  lblVoltage.SetText(Format(volts[0], "0.000000") + "V");
}

void frmMeasureCV::ShowStart(const Technique& technique) {
  SweepForm::ShowStart(technique);
  shown_remaining_ = 0;
  plot_.Begin("Cyclic Voltammogram", technique.Range(), kEmptyLook);
}

void frmMeasureCV::DrawPoint(std::int32_t index) {
  const double x = points().At(0, index);
  const double y = points().At(1, index);
  const bool changed = plot_.Include(x, y);
  if (!DrawsLive()) return;
  if (changed) {
    DrawCurve(index);
  } else {
    plot_.Point(x, y, kCurveColour);
  }
}

void frmMeasureCV::DrawCurve(std::int32_t count) {
  plot_.Redraw(kCurveLook);
  plot_.Curve(points().Column(0, count), points().Column(1, count), kCurveColour);
}

void frmMeasureCV::ShowState(const RunState& state) {
  const auto seconds = Remaining(state);
  if (!seconds || *seconds == shown_remaining_) return;
  shown_remaining_ = *seconds;
  lblTimeRemain.SetText(PlainNumber(*seconds) +
                        "s remain Scan Rate:" + Format(state.scan_rate.value_or(0), "###0.#"));
}

void frmMeasureCV::LimitBoxes() {
  LimitBox(txtAccum, AtLeastOne);
  LimitBox(txtSamplingrate, CyclicVoltammetry::LimitedSamplingRate);
  LimitBox(txtScanrate, CyclicVoltammetry::LimitedScanRate);
  LimitBox(txtCycleNum, AtLeastOne);
}

std::size_t frmMeasureCV::PresetIndex() const {
  return static_cast<std::size_t>(std::clamp(settings().CVNum, 0, kCVPresets - 1));
}

CVPreset& frmMeasureCV::CurrentPreset() {
  return workstation().settings.CV[PresetIndex()];
}

void frmMeasureCV::SelectPreset(std::int32_t number) {
  workstation().settings.CVNum = number;
  ShowSettings();
}

void frmMeasureCV::StepPreset(int direction) {
  LeaveBox();
  SelectPreset(workstation().settings.CVNum + direction);
}

std::vector<BoundBox> frmMeasureCV::Boxes() {
  CVPreset& preset = CurrentPreset();
  return {{&txtXScale, &preset.CVXScale},     {&txtYScale, &preset.CVYScale},
          {&txtVoltSetting[0], &preset.CVV0}, {&txtVoltSetting[1], &preset.CVV1},
          {&txtVoltSetting[2], &preset.CVV2}, {&txtScanrate, &preset.CVScanrate},
          {&txtCycleNum, &preset.CVCyclenum}, {&txtRetainTime, &preset.CVRetainTime},
          {&txtRPM, &preset.CVRPM},           {&txtSamplingrate, &preset.CVSamplingRate},
          {&txtAccum, &preset.CVAccum}};
}

void frmMeasureCV::ShowSettings() {
  workstation().settings.CVNum = static_cast<std::int32_t>(PresetIndex());
  const CVPreset& preset = CurrentPreset();
  txtCVNum.SetText(PlainNumber(settings().CVNum));
  txtCVTitle.SetText(preset.CVTitle);
  cbxReference.Select(preset.CVRef);
  SweepForm::ShowSettings();
}

void frmMeasureCV::StoreSettings() {
  CVPreset& preset = CurrentPreset();
  preset.CVTitle = txtCVTitle.text();
  preset.CVRef = ChosenReference(preset.CVRef);
  SweepForm::StoreSettings();
}

std::unique_ptr<Technique> frmMeasureCV::MakeTechnique() const {
  SweepValues values = Values();
  values.ref = ChosenReference(CurrentPreset().CVRef);
  values.x_scale = NumberIn(txtXScale);
  values.disk_scale = NumberIn(txtYScale);
  return std::make_unique<CyclicVoltammetry>(
      values, PlainNumber(settings().CVNum) + " " + txtCVTitle.text(), Choices());
}

void frmMeasureCV::SettingNum(const std::string& number) {
  SelectPreset(ToLong(ParseLenient(number)));
}

void frmMeasureCV::RetainTime(std::int32_t seconds) {
  CellForm::RetainTime(std::max(seconds, 0));
}

void frmMeasureCV::Repeat(std::int32_t cycles) {
  ShowNumber(txtCycleNum, std::max(cycles, 1));
}

void frmMeasureCV::SamplingRate(double hertz) {
  ShowNumber(txtSamplingrate, hertz);
  LimitBox(txtSamplingrate, CyclicVoltammetry::LimitedSamplingRate);
}

LayoutNode frmMeasureCV::Layout() {
  using namespace layout;
  return Columns({
      Rows({
          Group("Setting",
                {Fields({Field("Number", txtCVNum, &UpDown2), Field("Name", txtCVTitle)})}),
          Group("Scales", {Fields({Field("XScale V/V (ch 0)", txtXScale),
                                   Field("YScale A/V (ch 1)", txtYScale),
                                   Field("RPM /V (ch. 5)", txtRPMScale)})}),
          Group("Potentials",
                {Fields({Field("1st /V", txtVoltSetting[0]), Field("2nd /V", txtVoltSetting[1]),
                         Field("3rd /V", txtVoltSetting[2]), Field("Scan Rate /mVs-1", txtScanrate),
                         Field("Cycle Num.", txtCycleNum),
                         Field("1st retainment time /s", txtRetainTime),
                         Field("Reference", cbxReference)})}),
          Stretch(),
      }),
      Rows({
          Group("Sampling", {Fields({Field("Sampling Rate/Hz", txtSamplingrate),
                                     Field("Accumlation  x", txtAccum), Field("RPM:", txtRPM)})}),
          Group("Meaurement Method", {Item(OpnCVMeas)}),
          Group("Track",
                {Fields({Field("Track", txtDataNum, &UpDown1), Field("Title", txtTitle)})}),
          Stretch(),
      }),
      Rows(
          {
              Group("Voltage Monitor /V",
                    {Item(picVMon, 1), Columns({Item(lblVoltage), Stretch(), Item(cmdClearVMon)})},
                    1),
              Item(lblMode),
              Item(lblTimeRemain),
              Columns({Item(cmdStart), Item(cmdStop)}),
          },
          1),
  });
}

}  // namespace zento
