#include "macro/follow_macro.h"

#include <utility>

#include "text/status.h"

namespace zento {
namespace {

class Job : private MacroObserver {
 public:
  Job(const UnattendedProgram& program, MacroFollower& follower)
      : program_(program),
        workstation_(program.workstation),
        follower_(follower),
        interpreter_(workstation_, program.host, program.instruments) {
    interpreter_.observer = this;
    runs_ = workstation_.runs.Subscribe([this](const RunState& state) { Follow(state); });
  }
  ~Job() override {
    // Stopping, it would report to what is going away.
    interpreter_.observer = nullptr;
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  MacroVerdict Run(std::string_view text, const std::string& title, std::int64_t longest) {
    interpreter_.Start(text, title);
    const auto over = [&] {
      PassMessages();
      verdict_.endless = workstation_.end_active_run != nullptr &&
                         program_.host.clock.Micros() - measuring_since_ > longest;
      return verdict_.endless || Idle();
    };
    for (Waited waited = Waited::kTimeout; waited == Waited::kTimeout;) {
      waited = program_.loop.RunUntil(over, kSlice);
      verdict_.interrupted = waited == Waited::kInterrupted;
      verdict_.endless |= waited == Waited::kNothingArmed;
    }
    if (verdict_.interrupted || verdict_.endless) interpreter_.Stop();
    PassMessages();
    return std::move(verdict_);
  }

 private:
  static constexpr std::int64_t kSlice = std::int64_t{3600} * 1'000'000;

  bool Idle() const {
    return !interpreter_.Active() && workstation_.running_flag == 0 &&
           program_.host.mail.UnderWay() == 0;
  }

  void Follow(const RunState& state) {
    if (state.report) {
      follower_.MeasurementEnded(interpreter_.Line(), *state.report);
    } else if (!measuring_) {
      measuring_since_ = program_.host.clock.Micros();
      follower_.MeasurementBegun(interpreter_.Line(), state.technique);
    }
    measuring_ = !state.report;
  }

  void PassMessages() {
    for (const std::string& message : program_.take_messages()) {
      ++verdict_.messages;
      follower_.MessageShown(interpreter_.Line(), message);
    }
  }

  // What was shown since the line before belongs to that one.
  void LineBegun(int line, const MacroLine& what) override {
    PassMessages();
    follower_.LineBegun(line, what);
  }
  void LineDone(int line, const MacroLine& what, MacroLineResult result) override {
    follower_.LineDone(line, what, result);
    PassMessages();
  }
  void MailEnded(int line, const Status& how) override {
    if (!how.ok()) ++verdict_.failed_mails;
    follower_.MailEnded(line, how);
  }
  void RunEnded(const MacroOutcome& outcome) override { verdict_.outcome = outcome; }

  const UnattendedProgram& program_;
  Workstation& workstation_;
  MacroFollower& follower_;
  MacroInterpreter interpreter_;
  MacroVerdict verdict_;
  std::int64_t measuring_since_ = 0;  // us, on the program's clock
  bool measuring_ = false;
  RunFeed::Subscription runs_;
};

std::string Counted(int count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string VerdictText(const MacroVerdict& verdict) {
  std::string text = MacroOutcomeText(verdict.outcome);
  if (verdict.messages > 0) text += "; " + Counted(verdict.messages, "message");
  if (verdict.failed_mails > 0) text += "; " + Counted(verdict.failed_mails, "mail") + " not sent";
  return text;
}

MacroVerdict FollowMacro(const UnattendedProgram& program, std::string_view text,
                         const std::string& title, std::int64_t longest_measurement_micros,
                         MacroFollower& follower) {
  return Job(program, follower).Run(text, title, longest_measurement_micros);
}

}  // namespace zento
