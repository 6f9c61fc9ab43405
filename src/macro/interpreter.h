#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"
#include "host/timer_queue.h"
#include "macro/command_table.h"
#include "macro/macro_line.h"
#include "measure/run.h"

namespace zento {

// How a run of a macro ended.
struct MacroOutcome {
  enum class End {
    kCompleted,   // the end of the text was reached
    kNotStarted,  // a device did not open; `why` has been shown
    kRefused,     // a line could not be carried out
    kStopped,     // Stop, or the window or the program was closed
  };
  End end = End::kCompleted;
  int line = 0;     // from 1, where a run was refused or stopped; 0 = nowhere
  std::string why;  // for kNotStarted and kRefused
  int unknown = 0;  // lines passed over because there is no such command
  int ignored = 0;  // lines that failed after a mail was sent, when failures end no run any more
  // Every line was carried out (in debug mode: or is one that debug mode leaves out).
  bool Clean() const { return end == End::kCompleted && unknown == 0 && ignored == 0; }
};

// "Finished", "Stopped at line 3", ...: for a status line or a log.
std::string MacroOutcomeText(const MacroOutcome& outcome);

// What became of one line.
enum class MacroLineResult {
  kCarriedOut,
  kLeftOut,  // debug mode
  kUnknown,
  kRefused,  // ends the run
  kIgnored,  // failed, but a mail was sent before
};

// Hears what a run does, on the window thread. Lines count from 1. An observer may call Stop.
class MacroObserver {
 public:
  virtual ~MacroObserver() = default;
  // Before and after the line has taken effect.
  virtual void LineBegun(int /*line*/, const MacroLine& /*what*/) {}
  virtual void LineDone(int /*line*/, const MacroLine& /*what*/, MacroLineResult /*result*/) {}
  // The turn is over: other things are served. `line` is the one carried out last.
  virtual void Yielded(int /*line*/) {}
  // What became of the mail that a line sent: also long after the line, and after the run's end.
  virtual void MailEnded(int /*line*/, const Status& /*how*/) {}
  // Every 500 ms of a wait; at most 0 the last time.
  virtual void WaitTicked(std::int64_t /*remaining_millis*/) {}
  virtual void RunEnded(const MacroOutcome& /*outcome*/) {}
};

// Carries out macros, line after line, on the host's timers: some lines a turn, then timers,
// drawing and the person are served. While the workstation's running flag is set, by a measurement
// or by Wait, no line is taken.
//
// Whatever ends a run before its last line also ends a wait, sets the rotation to 0 and switches
// the generator's output off, unless a measurement is still running: that one goes on and does so
// at its own end. (Stop sets the rotation to 0 even then.) The same holds in debug mode. A run that
// comes to the end of its text leaves everything as its commands left it, and a measurement begun
// by its last line goes on by itself.
//
// Nothing here waits for a person. One run at a time in a workstation; `macro_active` says so, and
// `end_active_macro` stops it.
class MacroInterpreter {
 public:
  MacroInterpreter(Workstation& workstation, Host& host, Instruments& instruments);
  // Stops an active run.
  ~MacroInterpreter();
  MacroInterpreter(const MacroInterpreter&) = delete;
  MacroInterpreter& operator=(const MacroInterpreter&) = delete;

  // Opens what the settings name, shows the power window when there are outlets, and begins with
  // the first line in the next turn. False when the run does not start: a device did not open
  // (said, and reported as kNotStarted), or a macro is active already (nothing is said).
  // `title` names the macro in the run log.
  bool Start(std::string_view text, const std::string& title = {});

  // Ends the run now; called by a line that is being carried out, right after that line.
  void Stop();

  bool Active() const { return active_; }
  bool Waiting() const { return waiting_; }
  // From 1: the line carried out last; 0 before the first.
  int Line() const { return line_; }

  // Any value but 0: measurements, potential, motor, outlets and waits are left out. Counts from
  // the next line.
  void SetDebugMode(std::int16_t mode) { debug_mode_ = mode; }
  std::int16_t DebugMode() const { return debug_mode_; }

  // Not owned; may be null.
  MacroObserver* observer = nullptr;

 private:
  bool OpenDevices();
  void Turn();
  bool Step();
  bool TakeLine();
  void CarryOut(const MacroLine& line);
  MacroLineResult Act(const MacroLine& line);
  MacroLineResult Fail(std::string why, bool show);
  void BeginWait(std::int32_t millis);
  void WaitTick();
  void EndWait();
  void SendMail();
  void Finish(MacroOutcome::End end);
  void MakeSafe(MacroOutcome::End end);
  void Say(const std::string& message);
  void Log(const std::string& text);
  MacroObserver& Observer() { return observer != nullptr ? *observer : nobody_; }

  Workstation& workstation_;
  Host& host_;
  Instruments& instruments_;
  MacroObserver nobody_;

  TimerQueue::PeriodicTimer turn_timer_;
  TimerQueue::PeriodicTimer wait_timer_;
  bool active_ = false;
  bool in_turn_ = false;
  bool stop_requested_ = false;
  bool waiting_ = false;
  bool ignore_failures_ = false;
  std::int16_t debug_mode_ = 0;
  int line_ = 0;

  std::vector<std::string> lines_;
  std::size_t next_ = 0;
  MacroContext context_;
  MacroOutcome outcome_;
  RunLog::Entry log_entry_ = 0;
  // Mails may outlive the interpreter; they hold on to this to see whether it is still there.
  std::shared_ptr<MacroInterpreter*> self_ = std::make_shared<MacroInterpreter*>(this);
  ElapsedTime wait_time_;
  std::int64_t wait_millis_ = 0;
};

}  // namespace zento
