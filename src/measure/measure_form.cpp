#include "measure/measure_form.h"

#include "host/desktop.h"
#include "host/dialogs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zento {
namespace {

constexpr std::size_t kMostMonitorChannels = 5;

// Off while a tick is handled, so that ticks never overlap; on again on every way out, except that
// of a window that was unloaded meanwhile.
class TickGuard {
 public:
  TickGuard(Timer& timer, const bool& unloaded) : timer_(timer), unloaded_(unloaded) {
    timer_.SetEnabled(false);
  }
  ~TickGuard() {
    if (!unloaded_) timer_.SetEnabled(true);
  }
  TickGuard(const TickGuard&) = delete;
  TickGuard& operator=(const TickGuard&) = delete;

 private:
  Timer& timer_;
  const bool& unloaded_;
};

void StoreNumber(double number, double& setting) {
  setting = number;
}
void StoreNumber(double number, std::int32_t& setting) {
  setting = ToLong(number);
}

}  // namespace

void LimitBox(TextBox& box, double (*limit)(double)) {
  const double number = NumberIn(box);
  const double limited = limit(number);
  if (limited != number) ShowNumber(box, limited);
}

TargetTrack::TargetTrack(TextBox& box, UpDown& arrows, std::function<void()> changed)
    : box_(box), changed_(std::move(changed)) {
  box_.SetText(PlainNumber(number_));
  box_.on_commit = [this] { Commit(); };
  arrows.on_up = [this] { Step(1); };
  arrows.on_down = [this] { Step(-1); };
}

void TargetTrack::Select(std::int32_t track) {
  number_ = std::clamp(track, 0, kTracks - 1);
  box_.SetText(PlainNumber(number_));
  changed_();
}

void TargetTrack::Commit() {
  Select(ToLong(ParseLenient(box_.text())));
}

void TargetTrack::Step(int direction) {
  Select((number_ + direction + kTracks) % kTracks);
}

MeasureForm::MeasureForm(Workstation& workstation, Host& host, Instruments& instruments,
                         const MeasureWindow& window)
    : Form(host, window.name, window.caption),
      timer(*this, window.timer),
      workstation_(workstation),
      instruments_(instruments),
      window_(window),
      run_(workstation, host, instruments) {
  timer.on_tick = [this] { Tick(); };
  cmdStart.on_click = [this] { StartMeasurement(); };
  cmdStop.on_click = [this] { run_.Stop(); };
  run_.on_interval = [this](std::int64_t millis) { timer.SetInterval(millis); };
  run_.on_state = [this](const RunState& state) { Follow(state); };
}

bool MeasureForm::Load() {
  ShowSettings();
  ShowIdle();
  ClearMonitor();
  if (!OpenDevices()) return false;
  timer.SetInterval(MonitorInterval());
  timer.SetEnabled(true);
  return true;
}

// Opens what the settings name; false after the first failure, whose text has been shown.
bool MeasureForm::OpenDevices() {
  const std::string bus = window_.bus_message;
  const std::string output = window_.output_message;
  std::string failed;
  if (instruments_.analog_input.Open() != 0) {
    failed = window_.board_message;
  } else if (!bus.empty() && settings().GPIBControl > 0 &&
             instruments_.gpib.InitialiseLink() != 0) {
    failed = bus;
  } else if (!output.empty() && settings().DABoard > 0 && instruments_.analog_output.Open() != 0) {
    failed = output;
  }
  if (failed.empty()) return true;
  host().dialogs.Message(failed);
  return false;
}

void MeasureForm::CloseRequested() {
  run_.EndNow();
  Form::CloseRequested();
}

void MeasureForm::Unload() {
  run_.EndNow();
  unloaded_ = true;
}

Plan MeasureForm::CurrentPlan() const {
  if (run_.Active()) return run_.technique()->MakePlan(run_.choices(), workstation_);
  return MakeTechnique()->MakePlan(Choices(), workstation_);
}

void MeasureForm::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                          std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void MeasureForm::Quit() {
  host().desktop.Unload(name());
}

void MeasureForm::HandDownChoices() {
  if (run_.Active()) run_.Choose(Choices());
}

void MeasureForm::LetClearMonitor(Button& button) {
  button.on_click = [this] {
    if (!Measuring()) ClearMonitor();
  };
}

void MeasureForm::StartMeasurement() {
  // Refused by Claim, with its message; nothing else may happen then.
  const bool refused = workstation_.running_flag != 0;
  if (!refused && !MayStart()) return;
  if (!run_.Claim()) return;
  cmdStart.SetEnabled(false);
  timer.SetEnabled(false);
  recording_shown_ = false;
  drawn_ = 0;
  readings_drawn_ = 0;
  TakeBoxes();
  std::unique_ptr<Technique> technique = MakeTechnique();
  ShowStart(*technique);
  run_.Begin(std::move(technique), Choices(), window_.board_message);
  timer.SetEnabled(true);
}

void MeasureForm::Tick() {
  const TickGuard guard(timer, unloaded_);
  if (run_.Active()) {
    run_.Tick();
  } else {
    MonitorTick();
  }
}

void MeasureForm::Follow(const RunState& state) {
  if (state.report) {
    ShowEnd();
    return;
  }
  if (run_.Recording() && !std::exchange(recording_shown_, true)) ShowRecording();
  DrawNewPoints();
  ShowState(state);
}

// A reading that was not kept is on the screen already when the next one takes its place.
void MeasureForm::DrawNewPoints() {
  const std::int64_t fresh =
      points().Readings() - std::exchange(readings_drawn_, points().Readings());
  const std::int64_t first = std::max<std::int64_t>(points().Written() - fresh, drawn_);
  for (auto index = static_cast<std::int32_t>(first); index < points().Written(); ++index) {
    if (fresh > 0) DrawPoint(index);
  }
  drawn_ = points().size();
}

void MeasureForm::ShowEnd() {
  if (points().size() > 0) {
    DrawAll();
    PointsStored();
  }
  ShowIdle();
  if (window_.ticks_follow_box) timer.SetInterval(MonitorInterval());
  cmdStart.SetEnabled(true);
}

CellForm::CellForm(Workstation& workstation, Host& host, Instruments& instruments,
                   const MeasureWindow& window)
    : MeasureForm(workstation, host, instruments, window),
      target_(txtDataNum, UpDown1, [this] { HandDownChoices(); }) {}

void CellForm::Watch(OptionGroup& method) {
  method_ = &method;
  method.on_select = [this](int) { HandDownChoices(); };
  txtTitle.on_change = [this] { HandDownChoices(); };
  for (const BoundBox& bound : Boxes()) bound.box->on_commit = [this] { LeaveBox(); };
}

void CellForm::Title(const std::string& title) {
  txtTitle.SetText(title);
  HandDownChoices();
}

void CellForm::DiskScale(double amperes_per_volt) {
  EnterScale(CurrentScale(), amperes_per_volt);
}

void CellForm::Enter(TextBox& box, double number) {
  ShowNumber(box, number);
  LeaveBox();
}

void CellForm::EnterRpm(TextBox& box, const std::string& rpm) {
  const double value = ParseLenient(rpm);
  box.SetText(value < 0 ? "0" : value > 10000 ? "10000" : rpm);
}

void CellForm::EnterScale(TextBox& box, double amperes_per_volt) {
  ShowNumber(box, amperes_per_volt > 0 ? amperes_per_volt : 1e-5);
}

void CellForm::LeaveBox() {
  LimitBoxes();
  StoreSettings();
  if (window().ticks_follow_box && !Measuring()) timer.SetInterval(MonitorInterval());
}

void CellForm::LimitRetainTime() {
  if (!HasGenerator()) return;
  const double seconds = NumberIn(txtRetainTime);
  const std::int32_t limited = HoldableSeconds(seconds);
  if (limited != ToLong(seconds)) ShowNumber(txtRetainTime, limited);
}

void CellForm::StoreSettings() {
  for (const BoundBox& bound : Boxes()) {
    std::visit([&](auto* setting) { StoreNumber(NumberIn(*bound.box), *setting); }, bound.setting);
  }
}

void CellForm::ShowSettings() {
  for (const BoundBox& bound : Boxes()) {
    std::visit([&](const auto* setting) { ShowNumber(*bound.box, *setting); }, bound.setting);
  }
  // A settings file may hold anything, or nothing.
  LimitBoxes();
}

void CellForm::TakeBoxes() {
  target_.Commit();
  LimitBoxes();
  LimitRetainTime();
  StoreSettings();
}

RunChoices CellForm::Choices() const {
  RunChoices choices;
  choices.titles = {txtTitle.text()};
  choices.target = target_.number();
  choices.method = method_->selected();
  return choices;
}

void CellForm::MonitorTick() {
  const std::int32_t rounds = AccumulationRounds(MonitorAccumulation());
  const auto channels = MonitorChannels();
  std::array<double, kMostMonitorChannels> sums{};
  if (!instruments().analog_input.ReadSum(channels, rounds, sums)) {
    ReadingLabel().SetText("no reading");
    return;
  }
  for (double& sum : sums) sum /= rounds;
  ShowReadings(std::span(sums).first(channels.size()));
}

}  // namespace zento
