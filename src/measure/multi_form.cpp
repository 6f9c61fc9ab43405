#include "measure/multi_form.h"

#include <algorithm>
#include <cmath>

#include "core/palette.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "host/dialogs.h"
#include "host/path_text.h"
#include "text/format.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

// From this sampling rate on (Hz) nothing is drawn while a run records.
constexpr double kLiveDrawingBelow = 20;
constexpr std::int32_t kLastPoint = kAcquisitionCapacity - 2;
constexpr Colour kMonitorColour = kLightRed;

constexpr char kIdle[] = "Voltage Monitor";
constexpr char kNothingRead[] = "Accumulation 0: nothing is read";

const AxisLook kLook{"0.0", "0.0#e+00", "/V"};

template <std::size_t N>
bool AllFinite(const std::array<double, N>& values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

}  // namespace

frmMultipotentiostat::frmMultipotentiostat(Workstation& workstation, Host& host,
                                           Instruments& instruments)
    : MeasureForm(workstation, host, instruments, "frmMultipotentiostat", "Multipotentiostat"),
      lblMode(*this, "lblMode", kIdle),
      monitor_(picVMon, kMonitorColour),
      plot_(host.desktop, "Graph1") {
  Attach(MMTimer, cmdStart);
  WireBoxes();
  cmdStart.on_click = [this] { StartMeasurement(); };
  cmdStop.on_click = [this] { ClickStop(); };
  cmdSampling.on_click = [this] { ClickSampling(); };
  cmdClearVMon.on_click = [this] {
    if (!Measuring()) monitor_.Clear();
  };
}

bool frmMultipotentiostat::Load() {
  RestoreEntries();
  monitor_.Clear();
  host().dialogs.Message("Once you push 'Start' button, Track 0 to 11's data will be lost!");
  if (!OpenDevices({"AD Board不良です", "", ""})) return false;
  MMTimer.SetInterval(PeriodRounded(ParseLenient(txtSamplingrate.text())));
  MMTimer.SetEnabled(true);
  return true;
}

bool frmMultipotentiostat::Read(const Wiring& wiring, std::int32_t rounds, Readings& volts) {
  std::array<double, AnalogInput::kChannels> sums{};
  if (!ReadSums(wiring.inputs, rounds, sums)) return false;
  for (std::size_t channel = 0; channel < kChannels; ++channel) {
    volts[channel] = sums[wiring.place[channel]] / rounds;
  }
  return true;
}

void frmMultipotentiostat::ShowCurrents(const Readings& values) {
  if (chkiMon.value() != 1) return;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    lblCurrent[i].SetText(Format(values[2 * i + 1], "0.00e+0"));
  }
}

// The monitor shows the board's own volts, so that electrodes of any scale share one picture and a
// channel at the board's limit is seen.
void frmMultipotentiostat::MonitorTick() {
  const std::int32_t rounds = Rounds();
  if (rounds == 0) {
    lblMode.SetText(kNothingRead);
    return;
  }
  Readings volts{};
  if (!Read(wiring_, rounds, volts)) {
    lblMode.SetText("no reading");
    return;
  }
  lblMode.SetText(kIdle);
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    monitor_.Add(volts[2 * i], volts[2 * i + 1], TrackColor(static_cast<int>(i)));
  }
  for (std::size_t channel = 0; channel < kChannels; ++channel) {
    volts[channel] *= wiring_.scale[channel];
  }
  ShowCurrents(volts);
}

void frmMultipotentiostat::StartMeasurement() {
  lblNotice.SetText("");
  // Refused by BeginRun, with its message; nothing else may happen then.
  const bool refused = workstation().running_flag != 0;
  if (!refused && !KeepOldTracks()) return;
  if (!BeginRun()) return;
  StoreEntries();
  plan_ = {wiring_, settings().MMSamplingRate, Rounds(),
           std::max(ToLong(settings().MMMaxTime * 1000), 0)};
  LogBegin("Multichannel monitor");
  if (!lblNotice.text().empty()) LogEvent(lblNotice.text());
  elapsed_ = 0;
  fresh_ = false;
  time_.clear();
  for (std::vector<double>& column : values_) column.clear();
  lblMode.SetText(plan_.rounds == 0 ? kNothingRead : "Recording");
  ShowEmptyGraph();
  MMTimer.SetInterval(PeriodRounded(plan_.sampling_rate));
  StartRecording();
  MMTimer.SetEnabled(true);
}

Plan frmMultipotentiostat::CurrentPlan() const {
  Plan plan;
  plan.technique = "Multichannel monitor";
  plan.end = CurrentMethod() == kByTime ? PlannedEnd::kTime : PlannedEnd::kPerson;
  if (plan.end == PlannedEnd::kTime) plan.duration = plan_.limit;
  plan.sampling_rate = plan_.sampling_rate;
  plan.interval = PeriodRounded(plan_.sampling_rate);
  plan.rounds = plan_.rounds;
  plan.points = PlanPoints(plan);
  plan.last_target = static_cast<int>(kElectrodes) - 1;
  return plan;
}

// Tracks 0 to 9 are about to be replaced. What stands in no file is kept in one first; false, and
// the person told, when that fails.
bool frmMultipotentiostat::KeepOldTracks() {
  bool any = false;
  for (int track = 0; track < static_cast<int>(kElectrodes); ++track) {
    any = any || workstation().tracks.Record(track).Mode != kModeNone;
  }
  if (!any) return true;
  const auto rescued = RescueTracks(workstation(), host().files);
  if (!rescued.ok()) {
    Say("The unsaved tracks could not be kept before they are replaced: " + rescued.why());
    return false;
  }
  if (rescued.value()) {
    lblNotice.SetText("Unsaved tracks were kept in " + TextFromPath(rescued.value()->filename()));
    if (Measuring()) LogEvent(lblNotice.text());
  }
  return true;
}

void frmMultipotentiostat::ShowEmptyGraph() {
  const double height = 0.01 * settings().PSYScale;
  plot_.Begin("I-t Graph", {-2.0, -height, 10000.0, height}, kLook);
}

void frmMultipotentiostat::MeasureTick() {
  if (plan_.rounds == 0) return;
  elapsed_ = ReadTime();
  Readings values{};
  if (!Read(plan_.wiring, plan_.rounds, values)) {
    TickFailed();
  } else if (!Scale(values, values)) {
    TickFailed("Overflow");
  } else {
    TickSucceeded();
    ShowCurrents(values);
    SetPoint(static_cast<double>(elapsed_), values);
    // A full store ends the run in every mode, also where only clicks keep points.
    if (CurrentMethod() != kSampling || PointIndex() > kLastPoint) KeepPoint();
  }
  CheckTime(elapsed_);
  ShowProgress();
}

bool frmMultipotentiostat::Scale(const Readings& volts, Readings& values) {
  for (std::size_t channel = 0; channel < kChannels; ++channel) {
    values[channel] = volts[channel] * plan_.wiring.scale[channel];
  }
  return AllFinite(values);
}

// Puts the reading into the slot of the next point and draws it.
void frmMultipotentiostat::SetPoint(double time, const Readings& values) {
  const auto index = static_cast<std::size_t>(PointIndex());
  if (time_.size() <= index) {
    time_.resize(index + 1);
    for (std::vector<double>& column : values_) column.resize(index + 1);
  }
  time_[index] = time;
  for (std::size_t channel = 0; channel < kChannels; ++channel) {
    values_[channel][index] = values[channel];
  }
  fresh_ = true;
  DrawPoint(time, values);
}

void frmMultipotentiostat::DrawPoint(double time, const Readings& values) {
  bool changed = false;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    changed = plot_.Include(time, values[2 * i + 1]) || changed;
  }
  if (plan_.sampling_rate >= kLiveDrawingBelow) return;
  if (changed) {
    DrawCurves();
    return;
  }
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    plot_.Point(time, values[2 * i + 1], TrackColor(static_cast<int>(i)));
  }
}

void frmMultipotentiostat::DrawCurves() {
  plot_.Redraw(kLook);
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    plot_.Curve(time_, values_[2 * i + 1], TrackColor(static_cast<int>(i)));
  }
}

// Keeps the reading that is on display. It is kept once, however often the button is pressed
// before the next one.
void frmMultipotentiostat::ClickSampling() {
  if (!Measuring() || StopRequested() || CurrentMethod() != kSampling || !fresh_) return;
  fresh_ = false;
  KeepPoint();
  ShowProgress();
}

// Ticks that do nothing would never act on the request.
void frmMultipotentiostat::ClickStop() {
  RequestStop();
  if (plan_.rounds == 0) EndRunNow();
}

void frmMultipotentiostat::ShowProgress() {
  lblMode.SetText("Recording: " + PlainNumber(PointIndex()) + " points, " +
                  FormatDuration(elapsed_));
}

void frmMultipotentiostat::CheckTime(std::int64_t elapsed) {
  if (CurrentMethod() == kByTime && elapsed > plan_.limit) StopWithSound();
}

void frmMultipotentiostat::FinishRun() {
  const auto points = static_cast<std::size_t>(PointIndex());
  if (points > 0) {
    // Without the reading that nobody kept.
    time_.resize(points);
    for (std::vector<double>& column : values_) column.resize(points);
    DrawCurves();
    Store();
  }
  lblMode.SetText(kIdle);
}

void frmMultipotentiostat::Store() {
  KeepOldTracks();
  TrackStore& tracks = workstation().tracks;
  const PlotRange& range = plot_.Range();
  for (double& time : time_) time /= 1000;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    const int track = static_cast<int>(i);
    tracks.Column(0, track) = std::move(values_[2 * i]);
    tracks.Column(1, track) = std::move(values_[2 * i + 1]);
    // Track 0 holds the time for all; the others have it too, as after opening a file.
    tracks.Column(2, track) = time_;
    TrackRecord& record = StampTrack(track, kModeMulti, txtTitle[i].text());
    record.Vxmin = range.x1 / 1000;
    record.Vxmax = range.x2 / 1000;
    record.Vymin = range.y1;
    record.Vymax = range.y2;
    record.MaxTime = static_cast<double>(CurrentMethod() == kByTime ? plan_.limit : elapsed_);
    record.DiskYscale = plan_.wiring.scale[2 * i + 1];
    // Nothing here sweeps, rotates or has a ring: what an earlier curve said of that is not true
    // of this one.
    record.Scanrate = record.RPM = record.RingXValue = record.RingYscale = 0;
    record.V = {};
  }
  workstation().ShowTrack(0);
}

}  // namespace zento
