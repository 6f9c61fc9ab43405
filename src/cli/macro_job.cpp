#include "cli/macro_job.h"

#include <utility>

namespace zento {
namespace {

class Job : private MacroObserver {
 public:
  Job(HeadlessProgram& program, MacroFollower& follower)
      : workstation_(program.workstation()),
        host_(program.host()),
        dialogs_(program.dialogs()),
        follower_(follower),
        interpreter_(workstation_, host_, program.program().instruments()) {
    interpreter_.observer = this;
    workstation_.run_begun = [this](const std::string& what) {
      measuring_since_ = host_.clock.Micros();
      follower_.MeasurementBegun(interpreter_.Line(), what);
    };
    workstation_.run_ended = [this](const RunReport& report) {
      follower_.MeasurementEnded(interpreter_.Line(), report);
    };
  }
  ~Job() override {
    // Stopping, it would tell what is going away.
    interpreter_.observer = nullptr;
    workstation_.run_begun = nullptr;
    workstation_.run_ended = nullptr;
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  MacroVerdict Run(EventLoop& loop, std::string_view text, const std::string& title,
                   std::int64_t longest) {
    interpreter_.Start(text, title);
    const auto over = [&] {
      TellMessages();
      verdict_.endless = workstation_.end_active_run != nullptr &&
                         host_.clock.Micros() - measuring_since_ > longest;
      return verdict_.endless || Idle();
    };
    for (Waited waited = Waited::kTimeout; waited == Waited::kTimeout;) {
      waited = loop.RunUntil(over, kSlice);
      verdict_.interrupted = waited == Waited::kInterrupted;
      verdict_.endless |= waited == Waited::kNothingArmed;
    }
    if (verdict_.interrupted || verdict_.endless) interpreter_.Stop();
    TellMessages();
    return std::move(verdict_);
  }

 private:
  static constexpr std::int64_t kSlice = std::int64_t{3600} * 1'000'000;

  bool Idle() const {
    return !interpreter_.Active() && workstation_.running_flag == 0 && host_.mail.UnderWay() == 0;
  }

  void TellMessages() {
    for (const std::string& message : dialogs_.TakeMessages()) {
      ++verdict_.messages;
      follower_.MessageShown(interpreter_.Line(), message);
    }
  }

  void LineBegun(int line, const MacroLine& what) override {
    TellMessages();  // of the line before
    what_ = &what;
    follower_.LineBegun(line, what);
  }
  void LineDone(int line, MacroLineResult result) override {
    follower_.LineDone(line, *what_, result);
    TellMessages();
  }
  void MailEnded(int line, const Status& how) override {
    if (!how.ok()) ++verdict_.failed_mails;
    follower_.MailEnded(line, how);
  }
  void RunEnded(const MacroOutcome& outcome) override { verdict_.outcome = outcome; }

  Workstation& workstation_;
  Host& host_;
  VirtualDialogs& dialogs_;
  MacroFollower& follower_;
  MacroInterpreter interpreter_;
  MacroVerdict verdict_;
  const MacroLine* what_ = nullptr;  // the line being carried out
  std::int64_t measuring_since_ = 0;
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

MacroVerdict FollowMacro(HeadlessProgram& program, std::string_view text, const std::string& title,
                         std::int64_t longest_measurement_micros, MacroFollower& follower) {
  return Job(program, follower).Run(program.loop(), text, title, longest_measurement_micros);
}

}  // namespace zento
