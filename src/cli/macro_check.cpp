#include "cli/macro_check.h"

#include <algorithm>
#include <utility>

#include "cli/macro_inspector.h"
#include "core/home.h"
#include "core/run_log.h"
#include "core/settings_file.h"
#include "host/mail_settings.h"
#include "program/headless_program.h"

namespace zento {
namespace {

constexpr std::int64_t kLongestMeasurement = std::int64_t{72} * 3600 * 1'000'000;

// The bench as it would have to be for the home's settings to find it.
sim::Parameters ParametersFor(const CheckQuestion& question, Files& files) {
  sim::Parameters parameters = question.cell;
  const auto bytes = files.Read(SettingsPath(question.home));
  Settings settings;
  if (!bytes.ok() || !ParseSettings(bytes.value(), settings).ok()) return parameters;
  // Without a generator somebody has set up the potentiostat to sweep by itself.
  if (settings.GPIBControl <= 0) parameters.own = 1;
  const std::string address = std::to_string(settings.GPIBAddress);
  // An address that the bench does not take is one that no instrument has either.
  static_cast<void>(sim::Set(parameters, "gpib_address", address));
  return parameters;
}

// Why no mail at all would be sent.
std::string MailProblem(const std::filesystem::path& home, Files& files) {
  const auto bytes = files.Read(MailSettingsPath(home));
  if (!bytes.ok()) return "there is no Mail.txt in the home";
  const auto settings = ParseMailSettings(bytes.value());
  return settings.ok() ? std::string() : "Mail.txt: " + settings.why();
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

Result<MacroCheck> CheckMacro(const CheckQuestion& question, Files& files) {
  const sim::Parameters parameters = ParametersFor(question, files);
  const std::string mail_problem = MailProblem(question.home, files);
  HeadlessProgram program(
      {.program = {.simulated = parameters, .home = question.home}, .files = &files, .dry = true});
  if (Status started = program.Start(); !started.ok()) return started;

  MacroCheck check;
  MacroInspector inspector(program.program(), program.host(), question.text, mail_problem, check);
  for (const std::string& text : program.dialogs().TakeMessages()) inspector.MessageShown(0, text);
  check.verdict =
      FollowMacro(program, question.text, question.title, kLongestMeasurement, inspector);
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
