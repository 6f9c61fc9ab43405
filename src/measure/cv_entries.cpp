// What stands in the CV window's boxes: the numbered settings, the limits, the operations that
// macros call, and the layout.

#include <algorithm>

#include "core/tables.h"
#include "measure/cv_form.h"
#include "measure/entries.h"
#include "text/number.h"

namespace zento {
namespace {

// The generator holds the first potential for at most three digits of seconds.
constexpr std::int32_t kLongestRetainTime = 999;

std::string ReferenceName(std::int32_t ref) {
  const bool known = ref > 0 && ref < static_cast<std::int32_t>(RefName.size());
  return known ? std::string(RefName[static_cast<std::size_t>(ref)]) : "none";
}

}  // namespace

void frmMeasureCV::WireBoxes() {
  OnCommit({&txtCVTitle, &txtXScale, &txtYScale, &txtVoltSetting[0], &txtVoltSetting[1],
            &txtVoltSetting[2], &txtScanrate, &txtCycleNum, &txtRetainTime, &txtRPM,
            &txtSamplingrate, &txtAccum},
           [this] { LeaveBox(); });
  cbxReference.on_select = [this](int) { StorePreset(); };
  OnCommit({&txtCVNum}, [this] { SettingNum(txtCVNum.text()); });
  UpDown2.on_up = [this] { StepPreset(1); };
  UpDown2.on_down = [this] { StepPreset(-1); };
}

// What is in the boxes belongs to the setting as soon as one of them is left, so that looking at
// another setting does not lose it.
void frmMeasureCV::LeaveBox() {
  LimitEntries();
  StorePreset();
}

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

void frmMeasureCV::LimitRetainTime() {
  const std::int32_t seconds = ToLong(NumberIn(txtRetainTime));
  const std::int32_t limited = std::clamp(seconds, 0, kLongestRetainTime);
  if (limited != seconds) txtRetainTime.SetText(PlainNumber(limited));
}

CVPreset& frmMeasureCV::CurrentPreset() {
  Settings& settings = workstation().settings;
  settings.CVNum = std::clamp(settings.CVNum, 0, kCVPresets - 1);
  return settings.CV[static_cast<std::size_t>(settings.CVNum)];
}

void frmMeasureCV::SelectPreset(std::int32_t number) {
  workstation().settings.CVNum = std::clamp(number, 0, kCVPresets - 1);
  ShowPreset();
}

void frmMeasureCV::StepPreset(int direction) {
  LeaveBox();
  SelectPreset(workstation().settings.CVNum + direction);
}

void frmMeasureCV::ShowPreset() {
  const CVPreset& preset = CurrentPreset();
  txtCVNum.SetText(PlainNumber(settings().CVNum));
  txtCVTitle.SetText(preset.CVTitle);
  txtXScale.SetText(PlainNumber(preset.CVXScale));
  txtYScale.SetText(PlainNumber(preset.CVYScale));
  txtVoltSetting[0].SetText(PlainNumber(preset.CVV0));
  txtVoltSetting[1].SetText(PlainNumber(preset.CVV1));
  txtVoltSetting[2].SetText(PlainNumber(preset.CVV2));
  txtScanrate.SetText(PlainNumber(preset.CVScanrate));
  txtCycleNum.SetText(PlainNumber(preset.CVCyclenum));
  txtRetainTime.SetText(PlainNumber(preset.CVRetainTime));
  cbxReference.Select(preset.CVRef);
  txtRPM.SetText(PlainNumber(preset.CVRPM));
  txtSamplingrate.SetText(PlainNumber(preset.CVSamplingRate));
  txtAccum.SetText(PlainNumber(preset.CVAccum));
  // A settings file may hold anything, or nothing.
  LimitEntries();
}

void frmMeasureCV::StorePreset() {
  CVPreset& preset = CurrentPreset();
  preset.CVTitle = txtCVTitle.text();
  preset.CVXScale = NumberIn(txtXScale);
  preset.CVYScale = NumberIn(txtYScale);
  preset.CVV0 = NumberIn(txtVoltSetting[0]);
  preset.CVV1 = NumberIn(txtVoltSetting[1]);
  preset.CVV2 = NumberIn(txtVoltSetting[2]);
  preset.CVScanrate = NumberIn(txtScanrate);
  preset.CVCyclenum = ToLong(NumberIn(txtCycleNum));
  preset.CVRetainTime = ToLong(NumberIn(txtRetainTime));
  // An index from a file that stands for nothing shows as no choice, and is kept.
  if (cbxReference.selected() >= 0) preset.CVRef = cbxReference.selected();
  preset.CVRPM = ToLong(NumberIn(txtRPM));
  preset.CVSamplingRate = NumberIn(txtSamplingrate);
  preset.CVAccum = NumberIn(txtAccum);
}

std::vector<RunParameter> frmMeasureCV::Parameters() const {
  const CVPreset& p = plan_.preset;
  const auto value = [](double number, const char* unit) { return PlainNumber(number) + unit; };
  return {
      {"Title", txtTitle.text()},
      {"Target track", PlainNumber(target_.number())},
      {"Setting", PlainNumber(settings().CVNum) + " " + p.CVTitle},
      {"Potentials", value(p.CVV0, " V, ") + value(p.CVV1, " V, ") + value(p.CVV2, " V")},
      {"Scan rate", value(p.CVScanrate, " mV/s")},
      {"Cycles", PlainNumber(p.CVCyclenum)},
      {"Method",
       ByButton() ? "until stopped" : "by cycles, " + FormatDuration(planned_) + " planned"},
      {"Sweep from", plan_.generator ? "the function generator, held at the first potential for " +
                                           PlainNumber(p.CVRetainTime) + " s"
                                     : std::string("the potentiostat")},
      {"Rotation", PlainNumber(p.CVRPM) + " rpm"},
      {"Sampling",
       value(p.CVSamplingRate, " Hz, ") + PlainNumber(plan_.rounds) + " readings a point"},
      {"Scales", value(p.CVXScale, " V/V, ") + value(p.CVYScale, " A/V")},
      {"Reference", ReferenceName(p.CVRef)},
  };
}

void frmMeasureCV::rpm(const std::string& rpm) {
  txtRPM.SetText(LimitedRpm(rpm));
}

void frmMeasureCV::SettingNum(const std::string& number) {
  SelectPreset(ToLong(ParseLenient(number)));
}

void frmMeasureCV::DiskScale(double amperes_per_volt) {
  txtYScale.SetText(PlainNumber(LimitedScale(amperes_per_volt)));
}

void frmMeasureCV::SetVoltage(double first, double second, double third) {
  txtVoltSetting[0].SetText(PlainNumber(first));
  txtVoltSetting[1].SetText(PlainNumber(second));
  txtVoltSetting[2].SetText(PlainNumber(third));
}

void frmMeasureCV::RetainTime(std::int32_t seconds) {
  txtRetainTime.SetText(PlainNumber(std::max(seconds, 0)));
}

void frmMeasureCV::scanrate(double millivolts_per_second) {
  txtScanrate.SetText(PlainNumber(millivolts_per_second < 0 ? 0.001 : millivolts_per_second));
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
