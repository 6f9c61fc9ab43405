#include "measure/run.h"

#include <algorithm>
#include <utility>

#include "core/track_store.h"
#include "host/dialogs.h"
#include "host/services.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kFailedTicks = 5;
constexpr std::int64_t kFailedMillis = 2000;
constexpr std::int64_t kLongestWaitForStop = 1000;  // ms
// Gaps that the log tells one by one; a board that fails now and then all night would fill it.
constexpr int kListedGaps = 20;

std::string InWords(EndReason reason) {
  switch (reason) {
    case EndReason::kPerson:
      return "stopped by hand";
    case EndReason::kTime:
      return "the planned time is over";
    case EndReason::kCharge:
      return "the charge limit was reached";
    case EndReason::kLimit:
      return "the limit rate was exceeded";
    case EndReason::kOverflow:
      return "the buffer is full";
    case EndReason::kDevice:
      return "the readings failed";
    case EndReason::kClosing:
      return "the window or the program was closed";
  }
  return {};
}

std::string TrackRange(int first, int last) {
  const std::string from = " " + PlainNumber(first);
  return first == last ? from : "s" + from + " to " + PlainNumber(last);
}

}  // namespace

void ElapsedTime::Restart(std::int32_t tick_count) {
  last_ = tick_count;
  elapsed_ = 0;
}

std::int64_t ElapsedTime::Read(std::int32_t tick_count) {
  elapsed_ += static_cast<std::int32_t>(static_cast<std::uint32_t>(tick_count) -
                                        static_cast<std::uint32_t>(last_));
  last_ = tick_count;
  return elapsed_;
}

void RunPoints::Clear(std::size_t columns) {
  columns_.assign(columns, {});
  kept_ = 0;
  readings_ = 0;
}

void RunPoints::Put(std::span<const double> point) {
  const auto slot = static_cast<std::size_t>(kept_);
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    columns_[column].resize(slot + 1);
    columns_[column][slot] = point[column];
  }
  ++readings_;
}

bool RunPoints::Keep() {
  if (kept_ >= Plan::kPointRoom) return false;
  ++kept_;
  return true;
}

bool Run::Claim() {
  if (workstation_.running_flag != 0) {
    host_.dialogs.Message("Please terminate other mesurement!");
    return false;
  }
  workstation_.running_flag = -1;
  workstation_.end_active_run = [this] { EndNow(); };
  active_ = true;
  recording_ = false;
  stop_requested_ = false;
  end_reason_ = EndReason::kPerson;
  generator_started_ = false;
  motor_used_ = false;
  logged_rpm_ = 0;
  elapsed_ = 0;
  failed_ticks_ = 0;
  gaps_ = 0;
  missing_points_ = 0;
  stored_track_.reset();
  return true;
}

void Run::Begin(std::unique_ptr<Technique> technique, RunChoices choices,
                std::string board_message) {
  technique_ = std::move(technique);
  choices_ = std::move(choices);
  board_message_ = std::move(board_message);
  points_.Clear(technique_->Columns());
  state_ = {};
  state_.technique = technique_->name();
  log_entry_ = workstation_.run_log.Begin(technique_->name(), technique_->Parameters(choices_));
  Publish();
  SetInterval(technique_->MakePlan(choices_, workstation_).interval);
  technique_->Begin(*this);
  Publish();
}

void Run::Tick() {
  if (stop_requested_) {
    Finish();
    return;
  }
  technique_->Tick(*this);
  Publish();
}

void Run::Publish() {
  state_.phase = !active_                      ? RunPhase::kOver
                 : stop_requested_             ? RunPhase::kEnding
                 : recording_                  ? RunPhase::kRecording
                 : technique_->RestsForATime() ? RunPhase::kResting
                                               : RunPhase::kWaiting;
  state_.elapsed = elapsed_;
  state_.points = points_.size();
  state_.gaps = gaps_;
  state_.planned.reset();
  state_.first_target = choices_.target;
  state_.last_target = choices_.target;
  technique_->Describe(state_, choices_);
  if (on_state) on_state(state_);
  workstation_.runs.Publish(state_);
}

void Run::RestartTime() {
  time_.Restart(host_.clock.TickCount());
  elapsed_ = 0;
}

std::int64_t Run::ReadTime() {
  return elapsed_ = time_.Read(host_.clock.TickCount());
}

void Run::SetInterval(std::int64_t millis) {
  interval_ = millis;
  if (on_interval) on_interval(millis);
}

void Run::StartRecording() {
  recording_ = true;
  LogEvent("Recording begins");
  RestartTime();
}

void Run::Keep() {
  if (points_.Keep()) return;
  RequestStop(EndReason::kOverflow);
  Say("Buffer overflow!");
}

void Run::KeepReading() {
  if (!active_ || stop_requested_ || points_.Written() == points_.size()) return;
  Keep();
  Publish();
}

void Run::RequestStop(EndReason reason) {
  if (!active_ || stop_requested_) return;
  stop_requested_ = true;
  end_reason_ = reason;
  LogEvent("Stop requested: " + InWords(reason));
  // Nobody who presses Stop expects the motor to turn until a point is due in some minutes.
  if (interval_ <= kLongestWaitForStop) return;
  slowed_from_ = interval_;
  SetInterval(kLongestWaitForStop);
}

void Run::Stop() {
  if (!active_ || stop_requested_) return;
  RequestStop(EndReason::kPerson);
  Publish();
}

void Run::StopWithSound(EndReason reason) {
  RequestStop(reason);
  host_.sound.Play(workstation_.settings.SoundFileName);
}

void Run::ReadingFailed(const std::string& why) {
  const std::int32_t now = host_.clock.TickCount();
  if (failed_ticks_ == 0) BeginGap(why, now);
  ++failed_ticks_;
  ++missing_points_;
  if (failing_.Read(now) < kFailedMillis || failed_ticks_ < kFailedTicks || stop_requested_) return;
  RequestStop(EndReason::kDevice);
  Say(why.empty() ? BoardMessage() : why);
}

void Run::BeginGap(const std::string& why, std::int32_t now) {
  failing_.Restart(now);
  if (++gaps_ > kListedGaps) return;
  const std::string cause = why.empty() ? instruments_.analog_input.LastProblem() : why;
  LogEvent("A reading failed, a gap begins" + (cause.empty() ? "" : ": " + cause));
  if (gaps_ == kListedGaps) LogEvent("Further gaps are counted, not listed");
}

void Run::EndGap() {
  if (gaps_ < kListedGaps) {
    LogEvent("Readings are back after " + PlainNumber(failed_ticks_) + " failed, " +
             FormatDuration(failing_.Read(host_.clock.TickCount())));
  }
  failed_ticks_ = 0;
}

std::string Run::BoardMessage() const {
  const std::string problem = instruments_.analog_input.LastProblem();
  return problem.empty() ? board_message_ : board_message_ + "\n" + problem;
}

void Run::StartGenerator() {
  generator_started_ = true;
  instruments_.generator.OutputOn();
}

std::int32_t Run::SetRotation(std::int32_t rpm) {
  motor_used_ = true;
  const bool log = std::exchange(logged_rpm_, rpm) != rpm;
  const std::int32_t applied = instruments_.rotation.SetRotation(rpm);
  if (log) {
    LogEvent("Rotation " + PlainNumber(rpm) + " rpm" +
             (applied == rpm
                  ? ""
                  : ", " + PlainNumber(applied) + " rpm after the calibration's limits"));
  }
  return applied;
}

void Run::LogEvent(const std::string& text) {
  workstation_.run_log.Event(text, log_entry_);
}

void Run::Say(const std::string& text) {
  LogEvent("Message: " + text);
  host_.dialogs.Message(text);
}

TrackRecord& Run::StoreTrack(int track, Mode mode, const std::string& title,
                             std::initializer_list<std::size_t> columns) {
  int target = 0;
  for (const std::size_t column : columns) {
    const auto values = points_.Column(column);
    workstation_.tracks.Column(target++, track).assign(values.begin(), values.end());
  }
  TrackRecord& record = workstation_.tracks.Record(track);
  record.Mode = mode;
  record.Title = title;
  record.MeasTime = FormatGeneralDate(host_.clock.Now());
  record.pnum = points_.size();
  if (!stored_track_) stored_track_ = track;
  stored_to_ = track;

  KouteckyLevichLists& lists = workstation_.tracks.kl;
  lists.Resize();
  lists.KLNStart[static_cast<std::size_t>(track)] = 0;
  lists.KLNEnd[static_cast<std::size_t>(track)] = points_.size() - 1;
  return record;
}

void Run::MakeSafe() {
  if (std::exchange(generator_started_, false)) instruments_.generator.OutputOff();
  if (motor_used_) SetRotation(0);
}

void Run::Finish() {
  if (const auto interval = std::exchange(slowed_from_, 0)) SetInterval(interval);
  technique_->Conclude(*this);
  MakeSafe();
  if (points_.size() > 0) {
    technique_->Store(*this);
    workstation_.ShowTrack(stored_track_.value());
  }
  active_ = false;
  state_.report = Report();
  workstation_.run_log.End(std::exchange(log_entry_, 0), state_.report->how);
  Publish();
  workstation_.end_active_run = nullptr;
  workstation_.running_flag = 0;
}

void Run::EndNow() {
  if (!active_) return;
  RequestStop(EndReason::kClosing);
  Finish();
}

RunReport Run::Report() const {
  RunReport report{technique_->name(), end_reason_, EndInWords(), stored_track_, stored_to_, 0};
  if (stored_track_) report.points = workstation_.tracks.Record(*stored_track_).pnum;
  return report;
}

std::string Run::EndInWords() const {
  std::string how = InWords(end_reason_);
  if (stored_track_) {
    how += "; " + PlainNumber(points_.size()) + " points in track" +
           TrackRange(*stored_track_, stored_to_);
  } else {
    how += "; no points, nothing stored";
  }
  if (gaps_ > 0) {
    how += "; " + PlainNumber(missing_points_) + " readings failed, in " + PlainNumber(gaps_) +
           (gaps_ == 1 ? " gap" : " gaps");
  }
  return how;
}

}  // namespace zento
