// What a check found, for a person.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/run_log.h"
#include "macro/check.h"

namespace zento {
namespace {

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
