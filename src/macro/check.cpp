#include "macro/check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <utility>

#include "core/run_log.h"
#include "core/track_store.h"
#include "devices/function_generator.h"
#include "devices/outlets.h"
#include "devices/rotation.h"
#include "host/mail_text.h"
#include "host/path_text.h"
#include "host/services.h"
#include "measure/measure_form.h"
#include "measure/plan.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::int64_t kLongestMeasurement = std::int64_t{72} * 3600 * 1'000'000;  // us

bool IsNumber(Conversion conversion) {
  return conversion != Conversion::kWord && conversion != Conversion::kWords;
}

// Why no mail at all would be sent.
std::string MailProblem(const std::filesystem::path& home, Files& files) {
  const auto bytes = files.Read(MailSettingsPath(home));
  if (!bytes.ok()) return "there is no Mail.txt in the home";
  const auto settings = ParseMailSettings(bytes.value());
  return settings.ok() ? std::string() : "Mail.txt: " + settings.why();
}

// Follows a dry run and notes, line by line, what a person would want to know before the night.
class MacroInspector : public MacroFollower {
 public:
  // `check` is filled in.
  MacroInspector(const UnattendedProgram& program, MacroCheck& check);

  void LineBegun(int line, const MacroLine& what) override;
  void LineDone(int line, const MacroLine& what, MacroLineResult result) override;
  void MeasurementBegun(int line, const std::string& what) override;
  void MeasurementEnded(int line, const RunReport& report) override;
  void MessageShown(int line, const std::string& text) override;

  // The run is over: closes what is still open.
  void Finish();

 private:
  // A number that a line put into a control, and what stood there afterwards.
  struct Asked {
    int line = 0;
    std::string_view command;
    std::string became;
  };
  using Place = std::pair<std::string, std::string>;  // window, control

  std::int64_t Now() const;
  void Problem(int line, std::string text);
  void Note(int line, std::string text);

  void CloseWait();
  void CheckWords(int line, const MacroLine& what);
  void CheckLimits(int line, const MacroLine& what);
  void CheckAction(int line, const MacroLine& what);
  void CheckOverwritten(int line, const std::string& window);
  void CheckPlan(int line, const Plan& plan);
  void CheckSent(int line, SentValue sent);
  void CheckRotation(int line, const PlannedRate& rate);
  void CheckMail(int line);

  Workstation& workstation_;
  Host& host_;
  MacroCheck& check_;
  const std::int64_t began_;               // us, on the host's clock
  const MacroCommand* command_ = nullptr;  // of the line being carried out
  std::map<Place, Asked> asked_;
  std::string mail_address_;
  bool waiting_ = false;
  bool measuring_ = false;
};

MacroInspector::MacroInspector(const UnattendedProgram& program, MacroCheck& check)
    : workstation_(program.workstation),
      host_(program.host),
      check_(check),
      began_(program.host.clock.Micros()) {}

std::int64_t MacroInspector::Now() const {
  return (host_.clock.Micros() - began_ + 500) / 1000;
}

void MacroInspector::Problem(int line, std::string text) {
  check_.findings.push_back({line, true, std::move(text)});
}

void MacroInspector::Note(int line, std::string text) {
  check_.findings.push_back({line, false, std::move(text)});
}

void MacroInspector::LineBegun(int line, const MacroLine& what) {
  CloseWait();
  command_ = what.command;
  if (what.kind == MacroLine::Kind::kCommand && what.command->kind == CommandKind::kWait) {
    waiting_ = true;
    check_.steps.push_back({line, Now(), 0, false, false, "Wait"});
  }
}

void MacroInspector::CloseWait() {
  if (!std::exchange(waiting_, false)) return;
  check_.steps.back().takes = Now() - check_.steps.back().begins;
}

void MacroInspector::LineDone(int line, const MacroLine& what, MacroLineResult result) {
  using enum MacroLineResult;
  if (result != kCarriedOut) {
    // Messages tell the rest, where there are any.
    if (result == kIgnored) Problem(line, std::string(what.name) + " would fail");
    return;
  }
  CheckWords(line, what);
  CheckLimits(line, what);
  CheckAction(line, what);
}

// Numbers are read leniently, which a slip of the finger should not hide behind.
void MacroInspector::CheckWords(int line, const MacroLine& what) {
  for (std::size_t i = 0; i < what.arguments.size(); ++i) {
    if (!IsNumber(what.command->arguments[i])) continue;
    const std::string word(what.arguments[i].word);
    const auto value = ParseStrict(word);
    const double counts = what.arguments[i].number;
    if (!value) {
      Problem(line, "\"" + word + "\" is no number: " + PlainNumber(counts) + " counts");
    } else if (*value != counts) {
      Note(line, word + " is rounded to " + PlainNumber(counts));
    }
  }
}

// The window puts numbers out of its range right without a word.
void MacroInspector::CheckLimits(int line, const MacroLine& what) {
  if (what.command->controls == nullptr) return;
  const auto controls = what.command->controls(host_.desktop);
  for (std::size_t i = 0; i < what.arguments.size() && i < controls.size(); ++i) {
    const std::string became = controls[i]->Value();
    const double wanted = what.arguments[i].number;
    if (ParseLenient(became) != wanted) {
      Problem(line,
              std::string(what.name) + ": " + PlainNumber(wanted) + " is limited to " + became);
    }
    if (what.command->moves_on) continue;
    asked_[{what.command->window, controls[i]->Address()}] = {line, what.command->name, became};
  }
}

void MacroInspector::CheckAction(int line, const MacroLine& what) {
  const std::string_view name = what.name;
  if (name == "SetPotential") {
    if (workstation_.settings.GPIBControl <= 0) {
      Problem(line, "there is no function generator that could set a potential");
    } else
      CheckSent(line, PotentialAsSent(what.arguments[0].number));
  } else if (name == "Motor.On") {
    const double rpm = what.arguments[0].number;
    CheckRotation(line, {rpm, RateAsApplied(workstation_, rpm)});
  } else if (name == "Power") {
    constexpr auto kOutlets = static_cast<double>(Outlets::kCount);
    const double channel = what.arguments[0].number;
    if (workstation_.settings.PowerControl <= 0) {
      Problem(line, "there are no outlets that could be switched");
    } else if (channel < 0 || channel >= kOutlets) {
      Problem(line, "there is no outlet " + PlainNumber(channel) + ": they are numbered 0 to " +
                        PlainNumber(kOutlets - 1));
    }
  } else if (name == "Sound") {
    if (!host_.files.Exists(PathFromText(what.arguments[0].text))) {
      Note(line, "there is no sound file " + what.arguments[0].text);
    }
  } else if (name == "Mail.Address") {
    mail_address_ = what.arguments[0].text;
  } else if (name == "Mail.Send") {
    CheckMail(line);
  }
}

void MacroInspector::CheckMail(int line) {
  if (!IsMailAddress(mail_address_)) {
    Problem(line, "the mail would not be sent: \"" + mail_address_ + "\" is no mail address");
  }
  const std::string why = MailProblem(workstation_.home, host_.files);
  if (!why.empty()) Problem(line, "the mail would not be sent: " + why);
}

void MacroInspector::MeasurementBegun(int line, const std::string& what) {
  measuring_ = true;
  check_.steps.push_back({line, Now(), 0, true, false, what});
  const char* const window = command_->window;
  if (window == nullptr) return;
  CheckOverwritten(line, window);
  const auto* const form = host_.desktop.FindAs<MeasureForm>(window);
  if (form != nullptr) CheckPlan(line, form->CurrentPlan());
}

// The values that lines have set must be those that the run begins with.
void MacroInspector::CheckOverwritten(int line, const std::string& window) {
  const Form* const form = host_.desktop.Find(window);
  if (form == nullptr) return;
  for (auto& [place, asked] : asked_) {
    if (place.first != window) continue;
    for (const Control* control : form->controls()) {
      if (control->Address() != place.second || control->Value() == asked.became) continue;
      Problem(line, "the run begins with " + control->Value() + " where " +
                        std::string(asked.command) + " of line " + std::to_string(asked.line) +
                        " had set " + asked.became);
      asked.became = control->Value();
    }
  }
}

void MacroInspector::CheckPlan(int line, const Plan& plan) {
  if (!plan.generator && plan.potentials.size() > 1) {
    Note(line,
         "there is no function generator: the potentiostat's own programme decides when the "
         "measurement begins");
  }
  if (plan.generator) {
    for (const PlannedNumber& potential : plan.potentials) CheckSent(line, potential.sent);
    if (plan.scan_rate) CheckSent(line, plan.scan_rate->sent);
  }
  // At one potential and without a ramp the measured rate is what counts, whoever makes it.
  const bool measured_rate = plan.potentials.size() == 1 && !plan.ramp_speed;
  if (!measured_rate) {
    for (const PlannedRate& rate : plan.rotation) CheckRotation(line, rate);
  }
  if (plan.end == PlannedEnd::kPerson) {
    Problem(line, "the measurement ends only when somebody presses Stop or the buffer is full");
  }
}

void MacroInspector::CheckSent(int line, SentValue sent) {
  if (!sent.remark.empty()) check_.findings.push_back({line, sent.lost, std::move(sent.remark)});
}

void MacroInspector::CheckRotation(int line, const PlannedRate& rate) {
  if (rate.asked <= 0) return;
  const std::string asked = PlainNumber(rate.asked) + " rpm";
  if (!rate.applied) {
    Problem(line, asked + " cannot be set: there is no rotation control");
  } else if (*rate.applied == 0) {
    Problem(line, asked + " is below the calibration: the motor stays off");
  } else if (*rate.applied != rate.asked) {
    Problem(line, asked + " is outside the calibration: the motor turns at " +
                      PlainNumber(*rate.applied) + " rpm");
  }
}

void MacroInspector::MeasurementEnded(int line, const RunReport& report) {
  measuring_ = false;
  const auto step = std::find_if(check_.steps.rbegin(), check_.steps.rend(),
                                 [](const MacroCheck::Step& s) { return s.measurement; });
  if (step == check_.steps.rend()) return;
  step->takes = Now() - step->begins;
  step->what = report.what + ": " + report.how;
  step->by_sample = report.reason == EndReason::kCharge || report.reason == EndReason::kLimit;
  if (report.reason == EndReason::kOverflow) {
    Problem(line, "the buffer is full before the measurement is over: what follows is not kept");
  }
  if (!report.first_track) {
    Problem(line, "no points are stored");
    return;
  }
  for (int track = *report.first_track; track <= report.last_track; ++track) {
    auto written = std::ranges::find(check_.tracks, track, &MacroCheck::Written::track);
    if (written == check_.tracks.end()) {
      check_.tracks.push_back({track, {line}});
      continue;
    }
    Problem(line, "track " + std::to_string(track) + " is written again: the points of line " +
                      std::to_string(written->lines.back()) + " are lost");
    written->lines.push_back(line);
  }
}

void MacroInspector::MessageShown(int line, const std::string& text) {
  std::string one_line = text;
  std::replace(one_line.begin(), one_line.end(), '\n', ' ');
  Problem(line, "message: \"" + one_line + "\"");
}

void MacroInspector::Finish() {
  CloseWait();
  check_.total = Now();
  if (measuring_) check_.steps.back().takes = Now() - check_.steps.back().begins;
  std::ranges::sort(check_.tracks, {}, &MacroCheck::Written::track);
}

// h:mm:ss
std::string ClockText(std::int64_t millis) {
  const auto two = [](std::int64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
  };
  const std::int64_t seconds = millis / 1000;
  return std::to_string(seconds / 3600) + ":" + two(seconds / 60 % 60) + ":" + two(seconds % 60);
}

std::string Padded(std::string text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string Lines(const std::vector<int>& lines) {
  std::string text = lines.size() > 1 ? "lines " : "line ";
  for (std::size_t i = 0; i < lines.size(); ++i) {
    text += (i > 0 ? ", " : "") + std::to_string(lines[i]);
  }
  return text;
}

std::string Totals(const MacroCheck& check) {
  std::int64_t measuring = 0;
  std::int64_t waiting = 0;
  std::int64_t measurements = 0;
  bool by_sample = false;
  for (const MacroCheck::Step& step : check.steps) {
    (step.measurement ? measuring : waiting) += step.takes;
    measurements += step.measurement ? 1 : 0;
    by_sample |= step.by_sample;
  }
  return "Total " + std::string(by_sample ? "about " : "") + FormatDuration(check.total) + ": " +
         std::to_string(measurements) + " measurement" + (measurements == 1 ? " " : "s ") +
         FormatDuration(measuring) + ", waits " + FormatDuration(waiting) + "\n" +
         (by_sample ? "~ ended by charge or by the measured rate: another sample, another time\n"
                    : "");
}

}  // namespace

bool MacroCheck::Clean() const {
  return verdict.Clean() &&
         std::none_of(findings.begin(), findings.end(), [](const Finding& f) { return f.problem; });
}

MacroCheck CheckMacroOn(const UnattendedProgram& program, std::string_view text,
                        const std::string& title) {
  MacroCheck check;
  MacroInspector inspector(program, check);
  for (const std::string& message : program.take_messages()) inspector.MessageShown(0, message);
  check.verdict = FollowMacro(program, text, title, kLongestMeasurement, inspector);
  inspector.Finish();
  if (check.verdict.endless) {
    check.findings.push_back(
        {check.verdict.outcome.line, true, "the measurement does not come to an end"});
  }
  return check;
}

std::string FormatCheck(const MacroCheck& check) {
  std::string out = "  line  begins at      takes  what\n";
  for (const MacroCheck::Step& step : check.steps) {
    out += Padded(std::to_string(step.line), 6) + Padded(ClockText(step.begins), 11) + " " +
           Padded((step.by_sample ? "~" : "") + FormatDuration(step.takes), 17) + "  " + step.what +
           "\n";
  }
  out += Totals(check);
  for (const MacroCheck::Written& written : check.tracks) {
    out += "Track " + std::to_string(written.track) + ": " + Lines(written.lines) + "\n";
  }
  auto findings = check.findings;
  std::ranges::stable_sort(findings, {}, &MacroCheck::Finding::line);
  for (const MacroCheck::Finding& finding : findings) {
    out += std::string(finding.problem ? "PROBLEM" : "Note") +
           (finding.line > 0 ? ", line " + std::to_string(finding.line) : "") + ": " +
           finding.text + "\n";
  }
  out += VerdictText(check.verdict) + "\n";
  return out;
}

}  // namespace zento
