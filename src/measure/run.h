#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/run_log.h"
#include "core/track.h"
#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/controls.h"
#include "host/form.h"
#include "host/host.h"
#include "measure/plan.h"

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

// A timer's period in whole milliseconds, 1 to 2^31 - 1, for `rate` ticks a second. Windows differ
// in whether they cut the fraction off or round it (halves to even).
std::int64_t PeriodCut(double rate);
std::int64_t PeriodRounded(double rate);

// `accumulation` as a number of reading rounds: whole, at least 1, and few enough that a tick comes
// back to the person within minutes whatever was typed.
std::int32_t AccumulationRounds(double accumulation);

// The track that receives the result, 0 to 20, shown in a box and stepped by arrows that wrap
// around. What a person types counts once the box is left or Enter is pressed.
class TargetTrack {
 public:
  TargetTrack(TextBox& box, UpDown& arrows);
  int number() const { return number_; }
  // Clamped to 0 to 20.
  void Select(std::int32_t track);
  // After 20 comes 0.
  void Advance() { Step(1); }
  // Takes what stands in the box.
  void Commit();

 private:
  void Step(int direction);
  TextBox& box_;
  int number_ = 0;
};

// What every measurement window has in common: one timer with two states (a live monitor, and
// measuring), the claim on the workstation's running flag, the points, the stop request that the
// next tick acts on, and the way to a safe end. A window adds its controls, its plan, what a tick
// reads and draws, and what is stored.
//
// Nothing here waits for a person: messages are shown and the run goes on to its end.
class MeasureForm : public Form {
 public:
  // A run is ended first: its points stored, generator off, rotation 0.
  void CloseRequested() override;
  void Unload() override;

  bool Measuring() const { return measuring_; }
  // The plan of the run that goes on, or of the last one.
  virtual Plan CurrentPlan() const = 0;

 protected:
  MeasureForm(Workstation& workstation, Host& host, Instruments& instruments, std::string name,
              std::string caption);

  // Once the window's controls exist. `start` is disabled during a run.
  void Attach(Timer& timer, Button& start);

  // Texts shown when a device does not open. A window that uses no generator or motor leaves them
  // empty.
  struct OpenMessages {
    std::string analog_input;
    std::string bus;
    std::string analog_output;
  };
  // Opens what the settings name, in the order of the texts; false after the first failure, whose
  // text has been shown.
  bool OpenDevices(const OpenMessages& messages);

  // Claims the running flag and empties the run's state; the timer rests until the window enables
  // it. False, with a message, while anything else is running.
  bool BeginRun();
  // Opens the run's entry in the log, with Parameters(). Called once the run's plan is made and
  // before anything is switched on; `what` is the run as a person calls it ("Potential step").
  void LogBegin(const std::string& what);
  // Something worth reading the morning after. Not for what happens at every tick.
  void LogEvent(const std::string& text);
  // A message box, noted in the log during a run. It holds up nothing.
  void Say(const std::string& text);

  // The next tick ends the run; at slow sampling it comes within a second. Without a run, nothing
  // happens.
  void RequestStop(EndReason reason = EndReason::kPerson);
  bool StopRequested() const { return stop_requested_; }
  // Of the stop that was requested.
  EndReason Reason() const { return end_reason_; }
  // Ends the run now, if there is one.
  void EndRunNow();

  // The moment from which the run's time counts, set at the start and again when the first point
  // is kept.
  void RestartTime() { time_.Restart(host().clock.TickCount()); }
  std::int64_t ReadTime() { return time_.Read(host().clock.TickCount()); }

  // Points are recorded once the sweep, step or ramp has begun; until then each tick overwrites
  // point 0.
  bool Recording() const { return recording_; }
  void StartRecording();

  // The slot of the next point, 0 to 20001.
  std::int32_t PointIndex() const { return point_index_; }
  AcquiredPoint& Point(std::int32_t index);
  std::span<const AcquiredPoint> RecordedPoints() const;
  // Keeps the point just written. The last slot is not kept: it requests the stop instead and says
  // "Buffer overflow!".
  void KeepPoint();

  // Sums `rounds` readings of each channel into `sums`, channel after channel, round after round.
  // False when a reading failed: the sums are of no use then.
  bool ReadSums(std::span<const std::uint8_t> channels, std::int32_t rounds,
                std::span<double> sums);
  // Tells how a run's tick went. A tick that got no point leaves a gap; when nothing but such ticks
  // came for two seconds, and at least five of them, the run is brought to its end with a message:
  // `why`, or that of a board that does not open with the cause behind it.
  void TickSucceeded() {
    if (failed_ticks_ != 0) EndGap();
  }
  void TickFailed(const std::string& why = {});

  // Switches the generator on, and marks it to be switched off at the end.
  void StartGenerator();
  // A rotation rate that the run asks for; other rates than the last one are noted in the log.
  // Returns the one that was applied, after the calibration's limits. Ramps and feedback, which
  // change it at many ticks, go through instruments() instead.
  std::int32_t SetRotation(std::int32_t rpm);
  // Generator off when it was started, rotation 0.
  void StopDevices();

  // Requests the stop with the end-of-measurement sound.
  void StopWithSound(EndReason reason = EndReason::kTime);

  // Puts the recorded points into the track (`columns` of 2 or 3) with the header fields that all
  // modes share: mode, title, time of day, point count. The window fills in the others. The range
  // that the Koutecky-Levich analysis uses becomes the whole track.
  TrackRecord& StoreRun(int track, Mode mode, const std::string& title, int columns);

  // The header fields that all modes share, for a track whose `PointIndex()` points the window puts
  // there itself. A run that stores several tracks stores consecutive ones, from the lowest on.
  TrackRecord& StampTrack(int track, Mode mode, const std::string& title);

  // Everything the run was started with, as used by it and with units, title and target track
  // included. Called by LogBegin.
  virtual std::vector<RunParameter> Parameters() const = 0;

  // What becomes of a rate that the motor is told, and how many points come in so many ms.
  PlannedRate PlanRate(double rpm) const { return {rpm, RateAsApplied(workstation_, rpm)}; }
  static std::optional<std::int64_t> PlanPoints(const Plan& plan);

  Workstation& workstation() const { return workstation_; }
  Instruments& instruments() const { return instruments_; }
  const Settings& settings() const { return workstation_.settings; }

  virtual void MonitorTick() = 0;
  // A tick of a run without a stop request.
  virtual void MeasureTick() = 0;
  // The run ends: draw, store, and stop the devices.
  virtual void FinishRun() = 0;

 private:
  void Tick();
  void Finish();
  void BeginGap(const std::string& why, std::int32_t now);
  void EndGap();
  void TellEnd();
  std::string EndInWords() const;
  std::string BoardMessage() const;

  Workstation& workstation_;
  Instruments& instruments_;
  Timer* timer_ = nullptr;
  Button* start_ = nullptr;

  bool unloaded_ = false;
  bool measuring_ = false;
  bool stop_requested_ = false;
  bool recording_ = false;
  bool generator_started_ = false;
  std::int32_t point_index_ = 0;
  std::int64_t sampling_interval_ = 0;  // ms; 0 unless the last tick was hurried
  std::optional<int> stored_track_;     // the first one
  int stored_to_ = 0;                   // the last one
  EndReason end_reason_ = EndReason::kPerson;
  std::string what_;  // the run, as a person calls it
  RunLog::Entry log_entry_ = 0;
  std::int32_t logged_rpm_ = 0;
  ElapsedTime time_;
  int failed_ticks_ = 0;
  ElapsedTime failing_;
  int gaps_ = 0;            // of this run
  int missing_points_ = 0;  // in them
  std::string board_message_;
};

}  // namespace zento
