#include "measure/run.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "core/track_store.h"
#include "host/dialogs.h"
#include "host/services.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kLongestPeriod = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMostRounds = 1'000'000;
constexpr std::int32_t kLastSlot = kAcquisitionCapacity - 1;
constexpr int kFailedTicks = 5;
constexpr std::int64_t kFailedMillis = 2000;
constexpr std::int64_t kLongestWaitForStop = 1000;  // ms
// Gaps that the log tells one by one; a board that fails now and then all night would fill it.
constexpr int kListedGaps = 20;

std::int64_t Period(double millis) {
  // Written so that a rate of 0 or none at all gives a period too.
  if (!(millis < kLongestPeriod)) return static_cast<std::int64_t>(kLongestPeriod);
  return static_cast<std::int64_t>(std::max(millis, 1.0));
}

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

std::int64_t PeriodCut(double rate) {
  return Period(std::floor(1000 / rate));
}

std::int64_t PeriodRounded(double rate) {
  return Period(RoundHalfEven(1000 / rate));
}

std::int32_t AccumulationRounds(double accumulation) {
  return std::clamp(ToLong(accumulation), 1, kMostRounds);
}

TargetTrack::TargetTrack(TextBox& box, UpDown& arrows) : box_(box) {
  box_.SetText(PlainNumber(number_));
  box_.on_commit = [this] { Commit(); };
  arrows.on_up = [this] { Step(1); };
  arrows.on_down = [this] { Step(-1); };
}

void TargetTrack::Select(std::int32_t track) {
  number_ = std::clamp(track, 0, kTracks - 1);
  box_.SetText(PlainNumber(number_));
}

void TargetTrack::Commit() {
  Select(ToLong(ParseLenient(box_.text())));
}

void TargetTrack::Step(int direction) {
  Select((number_ + direction + kTracks) % kTracks);
}

MeasureForm::MeasureForm(Workstation& workstation, Host& host, Instruments& instruments,
                         std::string name, std::string caption)
    : Form(host, std::move(name), std::move(caption)),
      workstation_(workstation),
      instruments_(instruments) {}

void MeasureForm::Attach(Timer& timer, Button& start) {
  timer_ = &timer;
  start_ = &start;
  timer.on_tick = [this] { Tick(); };
}

bool MeasureForm::OpenDevices(const OpenMessages& messages) {
  board_message_ = messages.analog_input;
  const std::string* failed = nullptr;
  if (instruments_.analog_input.Open() != 0) {
    failed = &messages.analog_input;
  } else if (!messages.bus.empty() && settings().GPIBControl > 0 &&
             instruments_.gpib.InitialiseLink() != 0) {
    failed = &messages.bus;
  } else if (!messages.analog_output.empty() && settings().DABoard > 0 &&
             instruments_.analog_output.Open() != 0) {
    failed = &messages.analog_output;
  }
  if (failed == nullptr) return true;
  host().dialogs.Message(*failed);
  return false;
}

bool MeasureForm::BeginRun() {
  if (workstation_.running_flag != 0) {
    host().dialogs.Message("Please terminate other mesurement!");
    return false;
  }
  workstation_.running_flag = -1;
  workstation_.end_active_run = [this] { EndRunNow(); };
  measuring_ = true;
  stop_requested_ = false;
  recording_ = false;
  generator_started_ = false;
  point_index_ = 0;
  stored_track_.reset();
  end_reason_ = EndReason::kPerson;
  logged_rpm_ = 0;
  failed_ticks_ = 0;
  gaps_ = 0;
  missing_points_ = 0;
  start_->SetEnabled(false);
  timer_->SetEnabled(false);
  return true;
}

std::optional<std::int64_t> MeasureForm::PlanPoints(const Plan& plan) {
  if (!plan.duration) return std::nullopt;
  return *plan.duration / plan.interval + 1;
}

void MeasureForm::LogBegin(const std::string& what) {
  what_ = what;
  log_entry_ = workstation_.run_log.Begin(what, Parameters());
  if (workstation_.run_begun) workstation_.run_begun(what);
}

void MeasureForm::LogEvent(const std::string& text) {
  workstation_.run_log.Event(text, log_entry_);
}

std::string MeasureForm::EndInWords() const {
  std::string how = InWords(end_reason_);
  if (stored_track_) {
    how += "; " + PlainNumber(workstation_.tracks.Record(*stored_track_).pnum) +
           " points in track" + TrackRange(*stored_track_, stored_to_);
  } else {
    how += "; no points, nothing stored";
  }
  if (gaps_ > 0) {
    how += "; " + PlainNumber(missing_points_) + " readings failed, in " + PlainNumber(gaps_) +
           (gaps_ == 1 ? " gap" : " gaps");
  }
  return how;
}

void MeasureForm::TellEnd() {
  RunReport report{what_, end_reason_, EndInWords(), stored_track_, stored_to_, 0};
  if (stored_track_) report.points = workstation_.tracks.Record(*stored_track_).pnum;
  workstation_.run_log.End(std::exchange(log_entry_, 0), report.how);
  if (workstation_.run_ended) workstation_.run_ended(report);
}

void MeasureForm::Say(const std::string& text) {
  if (measuring_) LogEvent("Message: " + text);
  host().dialogs.Message(text);
}

void MeasureForm::RequestStop(EndReason reason) {
  if (!measuring_ || stop_requested_) return;
  stop_requested_ = true;
  end_reason_ = reason;
  LogEvent("Stop requested: " + InWords(reason));
  // Nobody who presses Stop expects the motor to turn until a point is due in some minutes.
  if (timer_->Interval() <= kLongestWaitForStop) return;
  sampling_interval_ = timer_->Interval();
  timer_->SetInterval(kLongestWaitForStop);
}

void MeasureForm::StartRecording() {
  recording_ = true;
  LogEvent("Recording begins");
  RestartTime();
}

AcquiredPoint& MeasureForm::Point(std::int32_t index) {
  return workstation_.acquisition[static_cast<std::size_t>(index)];
}

std::span<const AcquiredPoint> MeasureForm::RecordedPoints() const {
  return {workstation_.acquisition.data(), static_cast<std::size_t>(point_index_)};
}

void MeasureForm::KeepPoint() {
  if (point_index_ < kLastSlot) {
    ++point_index_;
    return;
  }
  RequestStop(EndReason::kOverflow);
  Say("Buffer overflow!");
}

bool MeasureForm::ReadSums(std::span<const std::uint8_t> channels, std::int32_t rounds,
                           std::span<double> sums) {
  return instruments_.analog_input.ReadSum(channels, rounds, sums);
}

void MeasureForm::TickFailed(const std::string& why) {
  const std::int32_t now = host().clock.TickCount();
  if (failed_ticks_ == 0) BeginGap(why, now);
  ++failed_ticks_;
  ++missing_points_;
  if (failing_.Read(now) < kFailedMillis || failed_ticks_ < kFailedTicks || stop_requested_) return;
  RequestStop(EndReason::kDevice);
  Say(why.empty() ? BoardMessage() : why);
}

void MeasureForm::BeginGap(const std::string& why, std::int32_t now) {
  failing_.Restart(now);
  if (++gaps_ > kListedGaps) return;
  const std::string cause = why.empty() ? instruments_.analog_input.LastProblem() : why;
  LogEvent("A reading failed, a gap begins" + (cause.empty() ? "" : ": " + cause));
  if (gaps_ == kListedGaps) LogEvent("Further gaps are counted, not listed");
}

void MeasureForm::EndGap() {
  if (gaps_ < kListedGaps) {
    LogEvent("Readings are back after " + PlainNumber(failed_ticks_) + " failed, " +
             FormatDuration(failing_.Read(host().clock.TickCount())));
  }
  failed_ticks_ = 0;
}

std::string MeasureForm::BoardMessage() const {
  const std::string problem = instruments_.analog_input.LastProblem();
  return problem.empty() ? board_message_ : board_message_ + "\n" + problem;
}

void MeasureForm::StartGenerator() {
  generator_started_ = true;
  instruments_.generator.OutputOn();
}

std::int32_t MeasureForm::SetRotation(std::int32_t rpm) {
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

void MeasureForm::StopDevices() {
  if (std::exchange(generator_started_, false)) instruments_.generator.OutputOff();
  SetRotation(0);
}

void MeasureForm::StopWithSound(EndReason reason) {
  RequestStop(reason);
  host().sound.Play(settings().SoundFileName);
}

TrackRecord& MeasureForm::StoreRun(int track, Mode mode, const std::string& title, int columns) {
  const auto points = RecordedPoints();
  for (int column = 0; column < columns; ++column) {
    std::vector<double>& values = workstation_.tracks.Column(column, track);
    values.resize(points.size());
    std::transform(points.begin(), points.end(), values.begin(), [column](const AcquiredPoint& p) {
      return p[static_cast<std::size_t>(column)];
    });
  }
  return StampTrack(track, mode, title);
}

TrackRecord& MeasureForm::StampTrack(int track, Mode mode, const std::string& title) {
  TrackRecord& record = workstation_.tracks.Record(track);
  record.Mode = mode;
  record.Title = title;
  record.MeasTime = FormatGeneralDate(host().clock.Now());
  record.pnum = point_index_;
  if (!stored_track_) stored_track_ = track;
  stored_to_ = track;

  KouteckyLevichLists& lists = workstation_.tracks.kl;
  lists.Resize();
  lists.KLNStart[static_cast<std::size_t>(track)] = 0;
  lists.KLNEnd[static_cast<std::size_t>(track)] = std::max(point_index_ - 1, 0);
  return record;
}

void MeasureForm::Tick() {
  const TickGuard guard(*timer_, unloaded_);
  if (!measuring_) {
    MonitorTick();
  } else if (stop_requested_) {
    Finish();
  } else {
    MeasureTick();
  }
}

void MeasureForm::Finish() {
  if (const auto interval = std::exchange(sampling_interval_, 0)) timer_->SetInterval(interval);
  FinishRun();
  measuring_ = false;
  TellEnd();
  start_->SetEnabled(true);
  workstation_.end_active_run = nullptr;
  workstation_.running_flag = 0;
}

void MeasureForm::EndRunNow() {
  if (!measuring_) return;
  RequestStop(EndReason::kClosing);
  Finish();
}

void MeasureForm::CloseRequested() {
  EndRunNow();
  Form::CloseRequested();
}

void MeasureForm::Unload() {
  EndRunNow();
  unloaded_ = true;
}

}  // namespace zento
