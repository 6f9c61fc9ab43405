// What stands in the ring-disk window's boxes: its settings, the limits, the operations that macros
// call, and the layout.

#include "measure/rde_form.h"
#include "text/number.h"

namespace zento {

void frmMeasureRDE::LimitEntries() {
  LimitToOneOrMore(txtAccum);
  LimitToOneOrMore(txtRPMScale);
  LimitToSomeRate(txtSamplingrate);
}

SettingBoxes frmMeasureRDE::Boxes() {
  Settings& s = workstation().settings;
  return {{&txtDiskXScale, &s.DiskXScale},
          {&txtDiskYScale, &s.DiskYScale},
          {&txtRingXScale, &s.RingXScale},
          {&txtRingYScale, &s.RingYScale},
          {&txtRPMScale, &s.RPMScale},
          {&txtVoltSetting[0], &s.RDEV0},
          {&txtVoltSetting[1], &s.RDEV1},
          {&txtVoltSetting[2], &s.RDEV2},
          {&txtScanrate, &s.RDEScanrate},
          {&txtCycleNum, &s.RDECycleNum},
          {&txtSamplingrate, &s.RDESamplingRate},
          {&txtAccum, &s.RDEAccum},
          {&txtRetainTime, &s.RDERetainTime},
          {&txtRPM, &s.RDERPM}};
}

void frmMeasureRDE::ShowSettings() {
  ShowBoxes(Boxes());
  cbxReference.Select(settings().RDERef);
}

void frmMeasureRDE::StoreSettings() {
  StoreBoxes(Boxes());
  // An index from a file that stands for nothing shows as no choice, and is kept.
  if (cbxReference.selected() >= 0) workstation().settings.RDERef = cbxReference.selected();
}

std::int32_t frmMeasureRDE::CompletePlan(SweepPlan& plan) {
  const Settings& s = settings();
  plan.cycles = s.RDECycleNum;
  plan.ref = s.RDERef;
  plan.x_scale = s.DiskXScale;
  plan.disk_scale = s.DiskYScale;
  plan.ring_scale = s.RingYScale;
  rpm_scale_ = s.RPMScale;
  ring_x_scale_ = s.RingXScale;
  rotation_ = {};
  return PlannedRotatingSweepMillis(plan.v, plan.cycles, plan.scan_rate);
}

std::vector<RunParameter> frmMeasureRDE::Parameters() const {
  std::vector<RunParameter> parameters = SweepParameters();
  const auto value = [](double number, const char* unit) { return PlainNumber(number) + unit; };
  parameters.push_back({"Disk scales", value(SweepValues().x_scale, " V/V, ") +
                                           value(SweepValues().disk_scale, " A/V")});
  parameters.push_back(
      {"Ring scales", value(ring_x_scale_, " V/V, ") + value(SweepValues().ring_scale, " A/V")});
  parameters.push_back({"Rotation signal", value(rpm_scale_, " rpm/V")});
  return parameters;
}

void frmMeasureRDE::DiskScale(double amperes_per_volt) {
  ShowNumber(txtDiskYScale, LimitedScale(amperes_per_volt));
}

void frmMeasureRDE::RingScale(double amperes_per_volt) {
  ShowNumber(txtRingYScale, LimitedScale(amperes_per_volt));
}

void frmMeasureRDE::RetainTime(std::int32_t seconds) {
  ShowNumber(txtRetainTime, seconds);
}

void frmMeasureRDE::Repeat(std::int32_t cycles) {
  ShowNumber(txtCycleNum, cycles);
}

void frmMeasureRDE::SamplingRate(double hertz) {
  ShowNumber(txtSamplingrate, hertz);
  LimitToSomeRate(txtSamplingrate);
}

void frmMeasureRDE::Accumlation(std::int32_t readings) {
  ShowNumber(txtAccum, readings);
  LimitToOneOrMore(txtAccum);
}

void frmMeasureRDE::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                            std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void frmMeasureRDE::QuitRDEMeasurement() {
  host().desktop.Unload(name());
}

LayoutNode frmMeasureRDE::Layout() {
  using namespace layout;
  return Columns({
      Rows({
          Group("Disk", {Fields({Field("XScale V/V (ch0)", txtDiskXScale),
                                 Field("YScale A/V (ch1)", txtDiskYScale)})}),
          Group("Ring", {Fields({Field("XScale V/V (ch2)", txtRingXScale),
                                 Field("YScale A/V (ch3)", txtRingYScale)})}),
          Group("Potentials",
                {Fields({Field("1st /V", txtVoltSetting[0]), Field("2nd /V", txtVoltSetting[1]),
                         Field("3rd /V", txtVoltSetting[2]), Field("Scan Rate /mVs-1", txtScanrate),
                         Field("Cycle Num.", txtCycleNum),
                         Field("1st Retainment time /s", txtRetainTime),
                         Field("Reference", cbxReference)})}),
          Stretch(),
      }),
      Rows({
          Group("Sampling", {Fields({Field("Sampling Rate/Hz", txtSamplingrate),
                                     Field("Accumlation", txtAccum)})}),
          Group("Rotation", {Fields({Field("RPM:", txtRPM), Field("RPM /V (ch4)", txtRPMScale)})}),
          Group("Measurement Method", {Item(opnRDEMeas)}),
          Group("Track", {Columns({Item(lblDataNum), Fields({Field("", txtDataNum, &UpDown1)})}),
                          Fields({Field("Title", txtTitle)})}),
          Stretch(),
      }),
      Rows(
          {
              Text("Voltage Monitor /V"),
              Group("Disk Voltage Monitor", {Item(picDiskVMon, 1)}, 1),
              Group("Ring Voltage Monitor", {Item(picRingVMon, 1)}, 1),
              Columns({Item(lblRPM), Stretch(), Item(cmdClearMon)}),
              Item(lblMode),
              Item(lblTimeRemain),
              Columns({Item(cmdStart), Item(cmdStop)}),
          },
          1),
  });
}

}  // namespace zento
