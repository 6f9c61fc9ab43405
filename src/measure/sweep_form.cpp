#include "measure/sweep_form.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/tables.h"
#include "measure/entries.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::array<std::uint8_t, 1> kPotential = {0};

std::string ReferenceName(std::int32_t ref) {
  const bool known = ref > 0 && ref < static_cast<std::int32_t>(RefName.size());
  return known ? std::string(RefName[static_cast<std::size_t>(ref)]) : "none";
}

}  // namespace

std::int32_t SweepMillis(double path, double scan_rate) {
  return std::max(ToLong(path * 1000 / (scan_rate * 0.001)), 0);
}

std::int32_t HoldableSeconds(double seconds) {
  return std::clamp(ToLong(seconds), 0, 999);
}

SweepForm::SweepForm(Workstation& workstation, Host& host, Instruments& instruments,
                     std::string name, std::string caption, std::string run, double steps_per_volt)
    : MeasureForm(workstation, host, instruments, std::move(name), std::move(caption)),
      run_(std::move(run)),
      steps_per_volt_(steps_per_volt),
      target_(txtDataNum, UpDown1) {}

void SweepForm::AttachSweep(Timer& timer, const OptionGroup& method) {
  Attach(timer, cmdStart);
  timer_ = &timer;
  method_ = &method;
  cmdStart.on_click = [this] { StartSweep(); };
  cmdStop.on_click = [this] { RequestStop(); };
  cbxReference.on_select = [this](int) { StoreSettings(); };
}

// What is in the boxes belongs to the settings as soon as one of them is left.
void SweepForm::LeaveBox() {
  LimitEntries();
  StoreSettings();
}

bool SweepForm::LoadSweep(const OpenMessages& messages) {
  cbxReference.SetItems({RefName.begin(), RefName.end()});
  ShowSettings();
  // A settings file may hold anything, or nothing.
  LimitEntries();
  ShowIdle();
  if (!OpenDevices(messages)) return false;
  timer_->SetInterval(PeriodCut(NumberIn(txtSamplingrate)));
  timer_->SetEnabled(true);
  return true;
}

void SweepForm::StartSweep() {
  if (!BeginRun()) return;
  MakePlan();
  LogBegin(run_);
  ShowEmptyGraphs();
  lblTimeRemain.SetText("");
  lblMode.SetText("Waiting for the sweep");
  timer_->SetInterval(PeriodCut(plan_.sampling_rate));
  if (plan_.generator) Programme();
  applied_rpm_ = SetRotation(ToLong(plan_.rpm));
  RestartTime();
  resting_ = RestingPotential();
  timer_->SetEnabled(true);
}

void SweepForm::Programme() {
  instruments().generator.ProgrammeCyclicSweep(1, plan_.v, plan_.scan_rate, plan_.retain_seconds);
  StartGenerator();
}

void SweepForm::MakePlan() {
  target_.Commit();
  LimitEntries();
  plan_.generator = settings().GPIBControl > 0;
  if (plan_.generator) LimitRetainTime();
  StoreSettings();
  for (std::size_t i = 0; i < plan_.v.size(); ++i) plan_.v[i] = NumberIn(txtVoltSetting[i]);
  plan_.scan_rate = NumberIn(txtScanrate);
  plan_.retain_seconds = ToLong(NumberIn(txtRetainTime));
  plan_.rpm = NumberIn(txtRPM);
  plan_.sampling_rate = NumberIn(txtSamplingrate);
  plan_.rounds = AccumulationRounds(NumberIn(txtAccum));
  const std::int32_t by_cycles = CompletePlan(plan_);
  planned_ = ByButton() ? 0 : by_cycles;
}

Plan SweepForm::CurrentPlan() const {
  Plan plan;
  plan.technique = run_;
  plan.generator = plan_.generator;
  for (const double volts : plan_.v) plan.potentials.push_back({volts, PotentialAsSent(volts)});
  plan.scan_rate = PlannedNumber{plan_.scan_rate, RateAsSent(plan_.scan_rate)};
  plan.rotation = {PlanRate(plan_.rpm)};
  plan.retain_seconds = plan_.retain_seconds;
  plan.end = ByButton() ? PlannedEnd::kPerson : PlannedEnd::kTime;
  if (!ByButton()) plan.duration = planned_;
  plan.sampling_rate = plan_.sampling_rate;
  plan.interval = PeriodCut(plan_.sampling_rate);
  plan.rounds = plan_.rounds;
  plan.points = PlanPoints(plan);
  plan.first_target = plan.last_target = target_.number();
  return plan;
}

void SweepForm::LimitRetainTime() {
  const double seconds = NumberIn(txtRetainTime);
  const std::int32_t limited = HoldableSeconds(seconds);
  if (limited != ToLong(seconds)) ShowNumber(txtRetainTime, limited);
}

// The step that a potential lies in, by its lower edge.
double SweepForm::Step(double potential) const {
  return std::floor(potential * steps_per_volt_) / steps_per_volt_;
}

std::optional<double> SweepForm::RestingPotential() {
  double sum = 0;
  if (!ReadSums(kPotential, plan_.rounds, {&sum, 1})) return std::nullopt;
  return Step(sum * plan_.x_scale / plan_.rounds);
}

void SweepForm::MeasureTick() {
  std::int64_t elapsed = 0;
  const bool read = ReadPoint(elapsed);
  if (!Recording()) {
    if (!SweepBegan(elapsed, read)) return;
    StartRecording();
    lblMode.SetText("Recording");
    elapsed = 0;
  }
  if (read) Record(elapsed);
  CheckPlannedTime(elapsed);
}

bool SweepForm::TakePoint(const AcquiredPoint& point) {
  if (!std::ranges::all_of(point, [](double value) { return std::isfinite(value); })) {
    TickFailed("Overflow");
    return false;
  }
  TickSucceeded();
  Point(PointIndex()) = point;
  return true;
}

bool SweepForm::SweepBegan(std::int64_t elapsed, bool read) {
  if (plan_.generator) return elapsed > std::int64_t{1000} * plan_.retain_seconds;
  if (!read) return false;
  const double step = Step(Point(0)[0]);
  if (!resting_) resting_ = step;
  return step != *resting_;
}

void SweepForm::CheckPlannedTime(std::int64_t elapsed) {
  if (ByButton()) {
    planned_ = elapsed;
    return;
  }
  if (elapsed > planned_) StopWithSound();
  ShowRemaining(ToLong(static_cast<double>(planned_ - elapsed) / 1000));
}

PlotRange SweepForm::EmptyRange(double scale) const {
  const auto [low, high] = std::ranges::minmax(plan_.v);
  const double left = ByButton() ? -0.1 : low;
  const double right = ByButton() ? 0.1 : high;
  return {left * plan_.x_scale, -0.01 * scale, right * plan_.x_scale, 0.01 * scale};
}

void SweepForm::StoreSweep(Mode mode, int columns, const PlotRange& range) {
  const int track = target_.number();
  TrackRecord& record = StoreRun(track, mode, txtTitle.text(), columns);
  record.Scanrate = plan_.scan_rate;
  record.V = plan_.v;
  record.Vxmin = range.x1;
  record.Vymin = range.y1;
  record.Vxmax = range.x2;
  record.Vymax = range.y2;
  record.MaxTime = static_cast<double>(planned_);
  record.RPM = plan_.rpm;
  record.DiskYscale = plan_.disk_scale;
  record.RingYscale = plan_.ring_scale;
  record.ref = plan_.ref;
  workstation().ShowTrack(track);
  target_.Advance();
}

std::vector<RunParameter> SweepForm::SweepParameters() const {
  const SweepPlan& p = plan_;
  const auto value = [](double number, const char* unit) { return PlainNumber(number) + unit; };
  return {
      {"Title", txtTitle.text()},
      {"Target track", PlainNumber(target_.number())},
      {"Potentials", value(p.v[0], " V, ") + value(p.v[1], " V, ") + value(p.v[2], " V")},
      {"Scan rate", value(p.scan_rate, " mV/s")},
      {"Cycles", PlainNumber(p.cycles)},
      {"Method",
       ByButton() ? "until stopped" : "by cycles, " + FormatDuration(planned_) + " planned"},
      {"Sweep from", p.generator ? "the function generator, held at the first potential for " +
                                       PlainNumber(p.retain_seconds) + " s"
                                 : std::string("the potentiostat")},
      {"Rotation", PlainNumber(ToLong(p.rpm)) + " rpm"},
      {"Sampling", value(p.sampling_rate, " Hz, ") + PlainNumber(p.rounds) + " readings a point"},
      {"Reference", ReferenceName(p.ref)},
  };
}

void SweepForm::ShowRpm(const std::string& rpm) {
  txtRPM.SetText(LimitedRpm(rpm));
}

void SweepForm::ShowVoltages(double first, double second, double third) {
  ShowNumber(txtVoltSetting[0], first);
  ShowNumber(txtVoltSetting[1], second);
  ShowNumber(txtVoltSetting[2], third);
}

void SweepForm::ShowScanRate(double millivolts_per_second) {
  ShowNumber(txtScanrate, millivolts_per_second < 0 ? 0.001 : millivolts_per_second);
}

}  // namespace zento
