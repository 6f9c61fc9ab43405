#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/modes.h"
#include "core/run_log.h"
#include "core/run_state.h"
#include "core/track.h"
#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"
#include "measure/plan.h"
#include "measure/technique.h"

namespace zento {

// Milliseconds since a moment, summed from differences of the wrapping 32-bit tick count: right for
// any length of time as long as it is read at least once in 24 days.
class ElapsedTime {
 public:
  void Restart(std::int32_t tick_count);
  std::int64_t Read(std::int32_t tick_count);

 private:
  std::int32_t last_ = 0;
  std::int64_t elapsed_ = 0;
};

// The points of a run, column by column: those that are kept, and perhaps one reading behind them
// that nobody has kept yet.
class RunPoints {
 public:
  void Clear(std::size_t columns);
  // Writes the reading behind the kept points, over the one that stood there.
  void Put(std::span<const double> point);
  // Keeps that reading; false when there is room for no more than Plan::kPointRoom.
  bool Keep();

  std::int32_t size() const { return kept_; }
  // With the reading that is not kept.
  std::int32_t Written() const { return static_cast<std::int32_t>(columns_.front().size()); }
  // How often one was written, so that a window knows what it has not drawn yet.
  std::int64_t Readings() const { return readings_; }
  double At(std::size_t column, std::int32_t index) const {
    return columns_[column][static_cast<std::size_t>(index)];
  }
  // The first `count` values.
  std::span<const double> Column(std::size_t column, std::int32_t count) const {
    return std::span(columns_[column]).first(static_cast<std::size_t>(count));
  }
  std::span<const double> Column(std::size_t column) const { return Column(column, kept_); }

 private:
  std::vector<std::vector<double>> columns_{1};
  std::int32_t kept_ = 0;
  std::int64_t readings_ = 0;
};

// A measurement from its start to its safe end, whatever the technique and whoever watches. It
// holds the workstation's running flag, the run's time, points and gaps, its place in the log, and
// the stop request that the next tick acts on; it publishes where it stands (Workstation::runs).
// Every way out goes through one end: generator off, rotation 0, then the points into their tracks.
//
// A point's way: the board's reading, Technique::Tick, Put and Keep, the track. Windows fetch what
// they draw. Nothing here waits for a person: messages are shown and the run goes on to its end.
class Run {
 public:
  Run(Workstation& workstation, Host& host, Instruments& instruments)
      : workstation_(workstation), host_(host), instruments_(instruments) {}
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  // --- For whoever runs it.

  // Claims the running flag. False, with a message, while anything else is running. To be followed
  // by Begin.
  bool Claim();
  // `board_message` is shown, with the cause behind it, when the board falls silent. Ticks are due
  // from the return on.
  void Begin(std::unique_ptr<Technique> technique, RunChoices choices, std::string board_message);
  // What a person changed meanwhile.
  void Choose(RunChoices choices) { choices_ = std::move(choices); }
  void Tick();
  // Keeps the reading behind the kept points, if there is one.
  void KeepReading();
  // The next tick ends the run; at slow sampling it comes within a second. Without a run, nothing
  // happens.
  void RequestStop(EndReason reason);
  // The same, on behalf of a person.
  void Stop();
  // Ends the run now, if there is one.
  void EndNow();

  bool Active() const { return active_; }
  // Of the run that goes on or the last one; null before the first.
  const Technique* technique() const { return technique_.get(); }
  const RunState& state() const { return state_; }
  const RunPoints& points() const { return points_; }

  // The milliseconds between ticks change; from now on if it happens outside of a tick, from the
  // last tick's due time on inside of it.
  std::function<void(std::int64_t millis)> on_interval;
  // Told what is published before anybody else is.
  std::function<void(const RunState&)> on_state;

  // --- For its technique.

  Workstation& workstation() const { return workstation_; }
  Host& host() const { return host_; }
  Instruments& instruments() const { return instruments_; }
  const RunChoices& choices() const { return choices_; }

  // The moment from which the run's time counts; StartRecording sets it anew.
  void RestartTime();
  std::int64_t ReadTime();
  void SetInterval(std::int64_t millis);

  // Sums `rounds` readings of each channel into `sums`, channel after channel, round after round.
  // False when a reading failed: the sums are of no use then.
  bool ReadSums(std::span<const std::uint8_t> channels, std::int32_t rounds,
                std::span<double> sums) {
    return instruments_.analog_input.ReadSum(channels, rounds, sums);
  }
  // Tells how a tick's readings went. A tick that got no point leaves a gap; when nothing but such
  // ticks came for two seconds, and at least five of them, the run is brought to its end with a
  // message: `why`, or that of a board that does not open with the cause behind it.
  void ReadingSucceeded() {
    if (failed_ticks_ != 0) EndGap();
  }
  void ReadingFailed(const std::string& why = {});

  bool Recording() const { return recording_; }
  void StartRecording();
  void Put(std::span<const double> point) { points_.Put(point); }
  void Put(std::initializer_list<double> point) { points_.Put({point.begin(), point.size()}); }
  // Keeps the point just written. The last one is not kept: it requests the stop instead and says
  // "Buffer overflow!".
  void Keep();
  bool StopRequested() const { return stop_requested_; }
  // Of the stop that was requested.
  EndReason Reason() const { return end_reason_; }
  // Requests the stop with the end-of-measurement sound.
  void StopWithSound(EndReason reason);

  // Switches the generator on, and marks it to be switched off at the end.
  void StartGenerator();
  // A rotation rate that the run asks for, which is 0 after its end; other rates than the last one
  // are noted in the log. Returns the one that was applied, after the calibration's limits. Ramps
  // and feedback, which change it at many ticks, go through instruments() instead.
  std::int32_t SetRotation(std::int32_t rpm);

  // Something worth reading the morning after. Not for what happens at every tick.
  void LogEvent(const std::string& text);
  // A message box, noted in the log. It holds up nothing.
  void Say(const std::string& text);

  // Puts `columns` of the kept points into the track's columns 0, 1 and so on, with the header
  // fields that all modes share: mode, title, time of day, point count. The technique fills in the
  // others. The range that the Koutecky-Levich analysis uses becomes the whole track. A run that
  // stores several tracks stores consecutive ones, from the lowest on.
  TrackRecord& StoreTrack(int track, Mode mode, const std::string& title,
                          std::initializer_list<std::size_t> columns);

 private:
  void Publish();
  void MakeSafe();
  void Finish();
  void BeginGap(const std::string& why, std::int32_t now);
  void EndGap();
  RunReport Report() const;
  std::string EndInWords() const;
  std::string BoardMessage() const;

  Workstation& workstation_;
  Host& host_;
  Instruments& instruments_;

  std::unique_ptr<Technique> technique_;
  RunChoices choices_;
  RunPoints points_;
  RunState state_;
  std::string board_message_;

  bool active_ = false;
  bool recording_ = false;
  bool stop_requested_ = false;
  EndReason end_reason_ = EndReason::kPerson;
  bool generator_started_ = false;
  bool motor_used_ = false;
  std::int32_t logged_rpm_ = 0;

  ElapsedTime time_;
  std::int64_t elapsed_ = 0;      // ms, as read last
  std::int64_t interval_ = 1;     // ms
  std::int64_t slowed_from_ = 0;  // ms; 0 unless the last tick was hurried
  int failed_ticks_ = 0;
  ElapsedTime failing_;
  int gaps_ = 0;
  int missing_points_ = 0;  // in them

  RunLog::Entry log_entry_ = 0;
  std::optional<int> stored_track_;  // the first one
  int stored_to_ = 0;                // the last one
};

}  // namespace zento
