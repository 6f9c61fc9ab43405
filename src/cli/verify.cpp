#include "cli/verify.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/analysis_commands.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/fit_command.h"
#include "cli/verify_experiments.h"
#include "cli/verify_rows.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "host/virtual/memory_services.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::size_t blank = std::min(text.find(' '), text.size());
    if (blank > 0) words.emplace_back(text.substr(0, blank));
    text.remove_prefix(std::min(blank + 1, text.size()));
  }
  return words;
}

// Each command once, although several rows may be about it.
class Analyses {
 public:
  explicit Analyses(MemoryFiles& files) : files_(files) {}

  const Result<AnalysisAnswer>& Of(const VerifyRow& row) {
    const auto key = std::pair(row.experiment->name, row.command);
    const auto known = answers_.find(key);
    if (known != answers_.end()) return known->second;
    return answers_.emplace(key, Ask(row)).first->second;
  }

 private:
  Result<AnalysisAnswer> Ask(const VerifyRow& row) {
    std::vector<std::string> words = Words(row.command);
    if (words.front() == "fit") return AskForFit(row, {words.begin() + 1, words.end()});
    const WindowCommand* command = FindAnalysisCommand(words.front());
    if (command == nullptr) return Status::Failure("there is no command " + words.front());
    words.erase(words.begin());
    const auto given = ParseOptions(*command, words);
    if (!given.ok()) return given.status();
    return Analyse({command, TrackFileOf(*row.experiment), {}, given.value()}, files_);
  }

  Result<AnalysisAnswer> AskForFit(const VerifyRow& row, const std::vector<std::string>& words) {
    auto request = ParseFitRequest(words);
    if (!request.ok()) return request.status();
    request->file = TrackFileOf(*row.experiment);
    auto fit = FitTrack(request.value(), files_);
    if (!fit.ok()) return fit.status();
    AnalysisAnswer answer;
    answer.outcome = std::move(fit->outcome);
    return answer;
  }

  MemoryFiles& files_;
  std::map<std::pair<std::string_view, std::string>, Result<AnalysisAnswer>> answers_;
};

// The track file of an experiment, measured when no row asked for it before.
Status MeasureOnce(const Experiment& experiment, MemoryFiles& files, const VerifyOptions& options) {
  const auto name = TrackFileOf(experiment);
  if (files.Exists(name)) return Status::Ok();
  if (Status measured = Measure(experiment, files); !measured.ok()) return measured;
  if (!options.keep) return Status::Ok();
  const auto bytes = files.Read(name);
  return bytes.ok() ? options.keep(name, bytes.value()) : bytes.status();
}

VerifiedQuantity Compare(const VerifyRow& row, const Result<AnalysisAnswer>& answer) {
  VerifiedQuantity quantity;
  quantity.quantity = row.quantity;
  quantity.unit = row.unit;
  quantity.truth = row.truth(BenchOf(*row.experiment));
  quantity.tolerance = row.tolerance;
  quantity.absolute = row.absolute;
  quantity.experiment = row.experiment->name;
  quantity.command = Words(row.command);
  if (!answer.ok()) {
    quantity.problem = answer.why();
  } else if (!answer->outcome.refusal.empty()) {
    quantity.problem = answer->outcome.refusal;
  } else {
    quantity.found = row.found(answer->outcome, quantity.truth);
    if (!quantity.found) quantity.problem = "the analysis gives no such number";
  }
  return quantity;
}

std::string Padded(const std::string& text, std::size_t width, bool to_the_right) {
  const std::size_t missing = width - std::min(text.size(), width);
  return to_the_right ? std::string(missing, ' ') + text : text + std::string(missing, ' ');
}

// Six digits.
std::string Short(double value) {
  return PlainNumber(value, 6);
}

std::string Signed(double value, const std::string& unit) {
  return (value < 0 ? "" : "+") + PlainNumber(value, 2) + unit;
}

// "-0.08 %" of the truth, or "-0.03" in the unit.
std::string Difference(double value, bool absolute) {
  return absolute ? Signed(value, "") : Signed(100 * value, " %");
}

std::vector<std::string> CellsOf(const VerifiedQuantity& quantity) {
  const auto error = quantity.Error();
  return {quantity.quantity + (quantity.unit.empty() ? "" : " /" + quantity.unit),
          Short(quantity.truth),
          quantity.found ? Short(*quantity.found) : "-",
          error ? Difference(*error, quantity.absolute) : "-",
          quantity.absolute ? PlainNumber(quantity.tolerance)
                            : PlainNumber(100 * quantity.tolerance, 3) + " %",
          quantity.Passed() ? "yes" : "NO"};
}

}  // namespace

std::optional<double> VerifiedQuantity::Error() const {
  if (!found) return std::nullopt;
  return absolute ? *found - truth : *found / truth - 1;
}

bool VerifiedQuantity::Passed() const {
  const auto error = Error();
  return error && std::abs(*error) <= tolerance;
}

Result<std::vector<VerifiedQuantity>> Verify(const VerifyOptions& options) {
  MemoryFiles files;
  Analyses analyses(files);
  std::vector<VerifiedQuantity> quantities;
  for (const VerifyRow& row : VerifyRows()) {
    if (row.experiment->noise && !options.noise) continue;
    if (Status measured = MeasureOnce(*row.experiment, files, options); !measured.ok()) {
      return measured;
    }
    quantities.push_back(Compare(row, analyses.Of(row)));
  }
  return quantities;
}

std::string VerifyTable(const std::vector<VerifiedQuantity>& quantities) {
  std::vector<std::vector<std::string>> rows = {
      {"quantity", "truth", "found", "error", "tolerance", "pass"}};
  for (const VerifiedQuantity& quantity : quantities) rows.push_back(CellsOf(quantity));
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      text += Padded(row[i], widths[i], i > 0) + "  ";
    }
    text += row.back() + "\n";
  }
  const auto passed = std::ranges::count_if(quantities, &VerifiedQuantity::Passed);
  return text + PlainNumber(passed) + " of " + PlainNumber(quantities.size()) + " pass\n";
}

std::string VerifyJson(const std::vector<VerifiedQuantity>& quantities) {
  using Json = nlohmann::ordered_json;
  Json rows = Json::array();
  for (const VerifiedQuantity& quantity : quantities) {
    const auto error = quantity.Error();
    rows.push_back({{"quantity", quantity.quantity},
                    {"unit", quantity.unit},
                    {"truth", quantity.truth},
                    {"found", quantity.found ? Json(*quantity.found) : Json()},
                    {"error", error ? Json(*error) : Json()},
                    {"tolerance", quantity.tolerance},
                    {"absolute", quantity.absolute},
                    {"pass", quantity.Passed()},
                    {"problem", quantity.problem},
                    {"experiment", quantity.experiment},
                    {"command", quantity.command}});
  }
  return Json{{"pass", std::ranges::all_of(quantities, &VerifiedQuantity::Passed)},
              {"quantities", rows}}
             .dump(1) +
         "\n";
}

namespace {

constexpr char kFooter[] =
    "Measures cells whose properties are known on the simulated bench, in virtual time, through "
    "the measurement windows; opens the saved tracks in the analysis windows; compares what they "
    "find with theory. Nothing is written unless --keep says where. Exit status 0: every quantity "
    "was found within its tolerance; 2: one was not.";

struct Call {
  bool noise = false;
  bool json = false;
  std::string keep;
};

// Files of the folder are never replaced: they might be somebody's measurements.
Status Keep(const std::filesystem::path& folder, const std::filesystem::path& name,
            const std::string& bytes) {
  NativeFiles files;
  if (Status made = files.CreateFolder(folder); !made.ok()) return made;
  if (files.Exists(folder / name)) {
    return Status::Failure(TextFromPath(folder / name) + " exists already");
  }
  return files.Replace(folder / name, bytes);
}

int Run(const Call& call) {
  VerifyOptions options;
  options.noise = call.noise;
  if (!call.keep.empty()) {
    options.keep = [&](const std::filesystem::path& name, const std::string& bytes) {
      return Keep(PathFromText(call.keep), name, bytes);
    };
  }
  const auto quantities = Verify(options);
  if (!quantities.ok()) return FailWith(quantities.status());
  WriteOut(call.json ? VerifyJson(quantities.value()) : VerifyTable(quantities.value()));
  for (const VerifiedQuantity& quantity : quantities.value()) {
    if (!quantity.problem.empty()) WriteError(quantity.quantity + ": " + quantity.problem);
  }
  const bool passed = std::ranges::all_of(quantities.value(), &VerifiedQuantity::Passed);
  return passed ? kExitOk : kExitScriptLine;
}

}  // namespace

void AddVerifyCommand(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* sub =
      app.add_subcommand("verify", "measure known cells, analyse them, compare with theory");
  sub->add_flag("--noise", call->noise, "also with the bench's default noise and motor");
  sub->add_flag("--json", call->json, "print an object instead of the table");
  sub->add_option("--keep", call->keep,
                  "a folder that gets the measured track files, to look at them in the windows");
  sub->footer(kFooter);
  sub->callback([call, &exit_status] { exit_status = Run(*call); });
}

}  // namespace zento
