// What stands in the CV window's boxes: the numbered settings, the limits, the operations that
// macros call, and the layout.

#include <algorithm>

#include "measure/cv_form.h"
#include "text/number.h"

namespace zento {
void frmMeasureCV::LimitEntries() {
  LimitToOneOrMore(txtAccum);
  LimitSamplingRate();
  if (NumberIn(txtScanrate) <= 0) txtScanrate.SetText("0.01");
  LimitToOneOrMore(txtCycleNum);
}

void frmMeasureCV::LimitSamplingRate() {
  if (NumberIn(txtSamplingrate) > 1000) txtSamplingrate.SetText("1000");
  LimitToSomeRate(txtSamplingrate);
}

CVPreset& frmMeasureCV::CurrentPreset() {
  Settings& settings = workstation().settings;
  settings.CVNum = std::clamp(settings.CVNum, 0, kCVPresets - 1);
  return settings.CV[static_cast<std::size_t>(settings.CVNum)];
}

void frmMeasureCV::SelectPreset(std::int32_t number) {
  workstation().settings.CVNum = std::clamp(number, 0, kCVPresets - 1);
  ShowSettings();
  LimitEntries();
}

void frmMeasureCV::StepPreset(int direction) {
  LeaveBox();
  SelectPreset(workstation().settings.CVNum + direction);
}

SettingBoxes frmMeasureCV::Boxes() {
  CVPreset& preset = CurrentPreset();
  return {{&txtXScale, &preset.CVXScale},     {&txtYScale, &preset.CVYScale},
          {&txtVoltSetting[0], &preset.CVV0}, {&txtVoltSetting[1], &preset.CVV1},
          {&txtVoltSetting[2], &preset.CVV2}, {&txtScanrate, &preset.CVScanrate},
          {&txtCycleNum, &preset.CVCyclenum}, {&txtRetainTime, &preset.CVRetainTime},
          {&txtRPM, &preset.CVRPM},           {&txtSamplingrate, &preset.CVSamplingRate},
          {&txtAccum, &preset.CVAccum}};
}

void frmMeasureCV::ShowSettings() {
  const CVPreset& preset = CurrentPreset();
  txtCVNum.SetText(PlainNumber(settings().CVNum));
  txtCVTitle.SetText(preset.CVTitle);
  ShowBoxes(Boxes());
  cbxReference.Select(preset.CVRef);
}

void frmMeasureCV::StoreSettings() {
  CVPreset& preset = CurrentPreset();
  preset.CVTitle = txtCVTitle.text();
  StoreBoxes(Boxes());
  // An index from a file that stands for nothing shows as no choice, and is kept.
  if (cbxReference.selected() >= 0) preset.CVRef = cbxReference.selected();
}

std::int32_t frmMeasureCV::CompletePlan(SweepPlan& plan) {
  const CVPreset& preset = CurrentPreset();
  setting_ = PlainNumber(settings().CVNum) + " " + preset.CVTitle;
  plan.cycles = preset.CVCyclenum;
  plan.ref = preset.CVRef;
  plan.x_scale = preset.CVXScale;
  plan.disk_scale = preset.CVYScale;
  return PlannedSweepMillis(plan.v, preset.CVCyclenum, plan.scan_rate);
}

std::vector<RunParameter> frmMeasureCV::Parameters() const {
  std::vector<RunParameter> parameters = SweepParameters();
  parameters.insert(parameters.begin() + 2, {"Setting", setting_});
  parameters.insert(parameters.end() - 1,
                    {"Scales", PlainNumber(SweepValues().x_scale) + " V/V, " +
                                   PlainNumber(SweepValues().disk_scale) + " A/V"});
  return parameters;
}

void frmMeasureCV::SettingNum(const std::string& number) {
  SelectPreset(ToLong(ParseLenient(number)));
}

void frmMeasureCV::DiskScale(double amperes_per_volt) {
  txtYScale.SetText(PlainNumber(LimitedScale(amperes_per_volt)));
}

void frmMeasureCV::RetainTime(std::int32_t seconds) {
  txtRetainTime.SetText(PlainNumber(std::max(seconds, 0)));
}

void frmMeasureCV::Repeat(std::int32_t cycles) {
  txtCycleNum.SetText(PlainNumber(std::max(cycles, 1)));
}

void frmMeasureCV::SamplingRate(double hertz) {
  txtSamplingrate.SetText(PlainNumber(hertz));
  LimitSamplingRate();
}

void frmMeasureCV::Accumlation(std::int32_t readings) {
  txtAccum.SetText(PlainNumber(readings));
  LimitToOneOrMore(txtAccum);
}

void frmMeasureCV::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                           std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void frmMeasureCV::QuitCVMeasurement() {
  host().desktop.Unload(name());
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
