#include "measure/rde_form.h"

#include <array>
#include <cmath>

#include "core/palette.h"
#include "measure/ring_disk_voltammetry.h"
#include "text/number.h"

namespace zento {
namespace {

// Disk potential and current, ring potential and current, rotation.
constexpr std::array<std::uint8_t, 5> kChannels = {0, 1, 2, 3, 4};
constexpr Colour kDiskColour = kLightBlue;
constexpr Colour kRingColour = kLightRed;

constexpr MeasureWindow kWindow = {.name = "frmMeasureRDE",
                                   .caption = "RDE Measurement",
                                   .timer = "RDETimer",
                                   .board_message = "AD Board不良です",
                                   .bus_message = "GPIB不良",
                                   .output_message = "DA Board Trouble!",
                                   .draws_below = 50,
                                   .ticks_follow_box = false};

const AxisLook kLook{"0.00", "0.0e+0", "/V"};

}  // namespace

frmMeasureRDE::frmMeasureRDE(Workstation& workstation, Host& host, Instruments& instruments)
    : SweepForm(workstation, host, instruments, kWindow),
      disk_monitor_(picDiskVMon, kDiskColour),
      ring_monitor_(picRingVMon, kDiskColour),
      disk_plot_(host.desktop, "Graph1"),
      ring_plot_(host.desktop, "Graph2") {
  Watch(opnRDEMeas);
  LetClearMonitor(cmdClearMon);
}

std::span<const std::uint8_t> frmMeasureRDE::MonitorChannels() const {
  return kChannels;
}

void frmMeasureRDE::ClearMonitor() {
  disk_monitor_.Clear();
  ring_monitor_.Clear();
}

void frmMeasureRDE::ShowReadings(std::span<const double> volts) {
  disk_monitor_.Add(volts[0], volts[1]);
  ring_monitor_.Add(volts[2], volts[3]);
  ShowRate(volts[4] * settings().RPMScale);
}

void frmMeasureRDE::ShowRate(double rpm) {
  lblRPM.SetText(PlainNumber(std::floor(rpm)) + "RPM");
}

void frmMeasureRDE::ShowStart(const Technique& technique) {
  SweepForm::ShowStart(technique);
  disk_plot_.Begin("Disk Voltammogram", technique.Range(0), kLook);
  ring_plot_.Begin("Ring Voltammogram(x axis = Disk Voltage)", technique.Range(1), kLook);
}

void frmMeasureRDE::ShowState(const RunState& state) {
  if (state.last.rpm) ShowRate(*state.last.rpm);
  if (const auto seconds = Remaining(state).value_or(0); seconds != 0) {
    lblTimeRemain.SetText(PlainNumber(seconds) + "s remain");
  }
}

void frmMeasureRDE::DrawPoint(std::int32_t index) {
  const double x = points().At(0, index);
  const double disk = points().At(1, index);
  const double ring = points().At(2, index);
  const bool disk_changed = disk_plot_.Include(x, disk);
  const bool ring_changed = ring_plot_.Include(x, ring);
  if (!DrawsLive()) return;
  if (disk_changed) DrawCurve(disk_plot_, 1, index);
  disk_plot_.Point(x, disk, kDiskColour);
  if (ring_changed) DrawCurve(ring_plot_, 2, index);
  ring_plot_.Point(x, ring, kRingColour);
}

void frmMeasureRDE::DrawCurve(LivePlot& plot, std::size_t column, std::int32_t count) {
  plot.Redraw(kLook);
  plot.Curve(points().Column(0, count), points().Column(column, count),
             column == 1 ? kDiskColour : kRingColour);
}

void frmMeasureRDE::DrawAll() {
  DrawCurve(disk_plot_, 1, points().size());
  DrawCurve(ring_plot_, 2, points().size());
}

void frmMeasureRDE::ShowIdle() {
  SweepForm::ShowIdle();
  disk_monitor_.ResetRange();
  ring_monitor_.ResetRange();
}

void frmMeasureRDE::LimitBoxes() {
  LimitBox(txtAccum, AtLeastOne);
  LimitBox(txtRPMScale, AtLeastOne);
  LimitBox(txtSamplingrate, SomeRate);
}

std::vector<BoundBox> frmMeasureRDE::Boxes() {
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
  cbxReference.Select(settings().RDERef);
  SweepForm::ShowSettings();
}

void frmMeasureRDE::StoreSettings() {
  Settings& s = workstation().settings;
  s.RDERef = ChosenReference(s.RDERef);
  SweepForm::StoreSettings();
}

std::unique_ptr<Technique> frmMeasureRDE::MakeTechnique() const {
  SweepValues values = Values();
  values.ref = ChosenReference(settings().RDERef);
  values.x_scale = NumberIn(txtDiskXScale);
  values.disk_scale = NumberIn(txtDiskYScale);
  values.ring_scale = NumberIn(txtRingYScale);
  const RingDiskVoltammetry::Electrode electrode{NumberIn(txtRPMScale), NumberIn(txtRingXScale)};
  return std::make_unique<RingDiskVoltammetry>(values, electrode, Choices());
}

void frmMeasureRDE::RingScale(double amperes_per_volt) {
  EnterScale(txtRingYScale, amperes_per_volt);
}

void frmMeasureRDE::SamplingRate(double hertz) {
  ShowNumber(txtSamplingrate, hertz);
  LimitBox(txtSamplingrate, SomeRate);
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
