#include "macro/interpreter.h"

#include <utility>

#include "host/desktop.h"
#include "host/dialogs.h"
#include "text/lines.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

// A turn ends after so many lines or so long, whatever comes first: short enough that nobody at the
// window notices, long enough that long macros do not crawl.
constexpr int kLinesATurn = 250;
constexpr std::int64_t kTurnMicros = 4000;
// Between turns, and while the running flag is watched.
constexpr std::int64_t kNextTurnMillis = 1;
constexpr std::int64_t kWatchMillis = 10;
constexpr std::int64_t kWaitTickMillis = 500;

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::string_view line;
  for (LineReader reader(text); reader.Next(line);) lines.emplace_back(line);
  return lines;
}

// What acts on the cell, the motor and the world, rather than on a window's boxes.
bool IsLogged(CommandKind kind) {
  return kind == CommandKind::kStart || kind == CommandKind::kHardware ||
         kind == CommandKind::kWait || kind == CommandKind::kMail;
}

}  // namespace

std::string MacroOutcomeText(const MacroOutcome& outcome) {
  using End = MacroOutcome::End;
  const std::string at_line = outcome.line > 0 ? " at line " + PlainNumber(outcome.line) : "";
  switch (outcome.end) {
    case End::kNotStarted:
      return "Not started: " + outcome.why;
    case End::kRefused:
      return "Ended:" + outcome.why;
    case End::kStopped:
      return "Stopped" + at_line;
    case End::kCompleted:
      break;
  }
  std::string text = "Finished";
  if (outcome.unknown > 0) text += "; unknown commands: " + PlainNumber(outcome.unknown);
  if (outcome.ignored > 0) text += "; failures after a mail: " + PlainNumber(outcome.ignored);
  return text;
}

MacroInterpreter::MacroInterpreter(Workstation& workstation, Host& host, Instruments& instruments)
    : workstation_(workstation),
      host_(host),
      instruments_(instruments),
      turn_timer_(host.timers, [this] { Turn(); }),
      wait_timer_(host.timers, [this] { WaitTick(); }),
      context_{workstation, host, instruments, {}, {}, false} {
  wait_timer_.SetInterval(kWaitTickMillis);
}

MacroInterpreter::~MacroInterpreter() {
  in_turn_ = false;
  Stop();
}

bool MacroInterpreter::Start(std::string_view text, const std::string& title) {
  if (workstation_.macro_active) return false;
  outcome_ = {};
  lines_ = SplitLines(text);
  const RunParameter parameters[] = {
      {"Lines", PlainNumber(lines_.size())},
      {"Debug mode", debug_mode_ != 0 ? "on" : "off"},
  };
  log_entry_ = workstation_.run_log.Begin(title.empty() ? "Macro" : "Macro " + title, parameters);
  if (!OpenDevices()) return false;
  active_ = true;
  workstation_.macro_active = true;
  workstation_.end_active_macro = [this] { Stop(); };
  stop_requested_ = false;
  ignore_failures_ = false;
  line_ = 0;
  next_ = 0;
  context_.mail = {};
  turn_timer_.SetInterval(kNextTurnMillis);
  turn_timer_.SetEnabled(true);
  return true;
}

bool MacroInterpreter::OpenDevices() {
  const Settings& settings = workstation_.settings;
  std::string trouble;
  if (settings.DABoard > 0 && instruments_.analog_output.Open() != 0) {
    trouble = "DA Board Trouble!";
  } else if (settings.GPIBControl > 0 && instruments_.gpib.InitialiseLink() != 0) {
    trouble = "GPIB Trouble!";
  }
  if (!trouble.empty()) Say(trouble);
  if (trouble.empty() && settings.PowerControl >= 1 && host_.desktop.Show("frmPower") == nullptr) {
    trouble = "The power window did not open";
  }
  if (trouble.empty()) return true;
  outcome_.end = MacroOutcome::End::kNotStarted;
  outcome_.why = trouble;
  workstation_.run_log.End(log_entry_, MacroOutcomeText(outcome_));
  Observer().RunEnded(outcome_);
  return false;
}

void MacroInterpreter::Stop() {
  if (!active_) return;
  stop_requested_ = true;
  if (!in_turn_) Finish(MacroOutcome::End::kStopped);
}

void MacroInterpreter::Turn() {
  in_turn_ = true;
  const std::int64_t began = host_.clock.Micros();
  int lines = 0;
  while (active_ && Step()) {
    if (++lines >= kLinesATurn || host_.clock.Micros() - began >= kTurnMicros) break;
  }
  in_turn_ = false;
  if (!active_) return;
  turn_timer_.SetInterval(workstation_.running_flag != 0 ? kWatchMillis : kNextTurnMillis);
  Observer().Yielded(line_);
}

// One pass: true while the next line may follow at once.
bool MacroInterpreter::Step() {
  if (workstation_.running_flag != 0) return false;
  if (stop_requested_) {
    Finish(MacroOutcome::End::kStopped);
  } else if (TakeLine() && active_) {
    if (stop_requested_) {
      Finish(MacroOutcome::End::kStopped);
    } else if (next_ >= lines_.size() && !waiting_) {
      Finish(MacroOutcome::End::kCompleted);
    }
  }
  return active_;
}

// Carries out the next line that says something; ends the run when there is none.
bool MacroInterpreter::TakeLine() {
  while (next_ < lines_.size()) {
    const MacroLine line = ReadMacroLine(lines_[next_]);
    ++next_;
    if (line.kind == MacroLine::Kind::kNothing) continue;
    line_ = static_cast<int>(next_);
    CarryOut(line);
    return true;
  }
  Finish(MacroOutcome::End::kCompleted);
  return false;
}

void MacroInterpreter::CarryOut(const MacroLine& line) {
  Observer().LineBegun(line_, line);
  MacroLineResult result = MacroLineResult::kUnknown;
  switch (line.kind) {
    case MacroLine::Kind::kUnknown:
      ++outcome_.unknown;
      Say(MacroLineMessage(line, line_));
      break;
    case MacroLine::Kind::kRefused:
      result = MacroLineResult::kRefused;
      outcome_.why = MacroLineMessage(line, line_);
      Say(outcome_.why);
      break;
    default:
      result = Act(line);
      break;
  }
  Observer().LineDone(line_, line, result);
  if (result == MacroLineResult::kRefused) Finish(MacroOutcome::End::kRefused);
}

MacroLineResult MacroInterpreter::Act(const MacroLine& line) {
  const MacroCommand& command = *line.command;
  if (debug_mode_ != 0 && command.dry == DryRule::kSkip) return MacroLineResult::kLeftOut;
  if (IsLogged(command.kind)) Log(lines_[next_ - 1]);
  const ActionResult result = command.action(context_, line.arguments);
  if (result == ActionResult::kWindowMissing) {
    return Fail(MissingWindowMessage(command.name, line_), true);
  }
  if (result == ActionResult::kWindowRefused) {
    return Fail(SignedNumber(line_) + "line Window did not open:" + std::string(command.name),
                false);
  }
  if (const auto wait = std::exchange(context_.wait_millis, std::nullopt)) {
    BeginWait(*wait);
  } else if (std::exchange(context_.send_mail, false)) {
    SendMail();
  }
  return MacroLineResult::kCarriedOut;
}

// A command that could be read but has failed. Once a mail was sent, such failures end no run.
MacroLineResult MacroInterpreter::Fail(std::string why, bool show) {
  if (!show || ignore_failures_) Log("Failed:" + why);
  if (ignore_failures_) {
    ++outcome_.ignored;
    return MacroLineResult::kIgnored;
  }
  if (show) Say(why);
  outcome_.why = std::move(why);
  return MacroLineResult::kRefused;
}

void MacroInterpreter::BeginWait(std::int32_t millis) {
  wait_millis_ = millis;
  wait_time_.Restart(host_.clock.TickCount());
  waiting_ = true;
  workstation_.running_flag = -1;
  wait_timer_.SetEnabled(true);
  turn_timer_.SetEnabled(false);
}

void MacroInterpreter::WaitTick() {
  const std::int64_t remaining = wait_millis_ - wait_time_.Read(host_.clock.TickCount());
  if (remaining < 0) EndWait();
  Observer().WaitTicked(remaining);
}

void MacroInterpreter::EndWait() {
  if (!std::exchange(waiting_, false)) return;
  wait_timer_.SetEnabled(false);
  workstation_.running_flag = 0;
  turn_timer_.SetInterval(kNextTurnMillis);
  turn_timer_.SetEnabled(true);
}

// The run does not wait for the mail. What becomes of it is noted by the log, which outlives runs
// and windows, and the observer hears of it if the interpreter is still there.
void MacroInterpreter::SendMail() {
  ignore_failures_ = true;
  const std::weak_ptr<MacroInterpreter*> self = self_;
  host_.mail.Send(context_.mail, [self, &log = workstation_.run_log, entry = log_entry_,
                                  line = line_, to = context_.mail.address](const Status& sent) {
    log.Event(sent.ok() ? "Mail to " + to + " sent" : "MAIL TO " + to + " NOT SENT: " + sent.why(),
              entry);
    if (const auto interpreter = self.lock()) (*interpreter)->Observer().MailEnded(line, sent);
  });
}

void MacroInterpreter::Finish(MacroOutcome::End end) {
  if (!active_) return;
  EndWait();
  turn_timer_.SetEnabled(false);
  outcome_.end = end;
  outcome_.line = end == MacroOutcome::End::kCompleted ? 0 : line_;
  MakeSafe(end);
  active_ = false;
  workstation_.macro_active = false;
  workstation_.end_active_macro = nullptr;
  lines_.clear();
  workstation_.run_log.End(log_entry_, MacroOutcomeText(outcome_));
  Observer().RunEnded(outcome_);
}

void MacroInterpreter::MakeSafe(MacroOutcome::End end) {
  if (end == MacroOutcome::End::kCompleted) return;
  const bool measuring = workstation_.running_flag != 0;
  if (end == MacroOutcome::End::kStopped || !measuring) {
    Log("Rotation 0 rpm");
    instruments_.rotation.SetRotation(0);
  }
  if (!measuring && instruments_.gpib.Control() > 0) instruments_.generator.OutputOff();
}

void MacroInterpreter::Say(const std::string& message) {
  Log((message.front() == ' ' ? "Message:" : "Message: ") + message);
  host_.dialogs.Message(message);
}

void MacroInterpreter::Log(const std::string& text) {
  workstation_.run_log.Event(text, log_entry_);
}

}  // namespace zento
