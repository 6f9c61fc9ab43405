#include "cli/cli_fit.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/fit_job.h"
#include "cli/outcome_json.h"
#include "host/native/native_files.h"
#include "host/path_text.h"

namespace zento {
namespace {

constexpr char kFooter[] =
    "Fits y(x) = p3 - s p1 exp(-x/p2), with five parameters y(x) = p3 - s (p1 exp(-x/p2) + p4 "
    "exp(-x/p5)), with s = 1 for rising and -1 for falling data, and prints the parameters with "
    "their standard errors, then x, y and the fitted y of every point. Columns are counted from "
    "0, as zento-cli table shows them: of a potential step, 0 is the time and 1 the current. Data "
    "that cannot be fitted are told on standard error, with exit status 2.";

struct Option {
  const char* name;
  const char* value;
  const char* help;
};

constexpr Option kOptions[] = {
    {"--track", "N", "the track; without it the file's first one"},
    {"--x", "COLUMN", "column of x, 0 unless said"},
    {"--y", "COLUMN", "column of y, 1 unless said"},
    {"--points", "FIRST:LAST", "first and last point, both used; either may be left out"},
    {"--parameters", "COUNT", "3, or 5 for two relaxations; 3 unless said"},
    {"--start", "P1,P2,P3[,P4,P5]", "where to start from; without it that is estimated"},
    {"--seed", "N", "seed of random starts, which are tried where no other led anywhere"},
};

struct Call {
  std::string file;
  std::array<std::string, std::size(kOptions)> values;
  bool json = false;
};

Result<FitRequest> RequestOf(const Call& call) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < call.values.size(); ++i) {
    if (!call.values[i].empty()) words.insert(words.end(), {kOptions[i].name, call.values[i]});
  }
  auto request = ParseFitRequest(words);
  if (request.ok()) request->file = PathFromText(call.file);
  return request;
}

int Run(const Call& call) {
  const auto request = RequestOf(call);
  if (!request.ok()) return FailWith(request.status());
  NativeFiles files;
  const auto answer = FitTrack(request.value(), files);
  if (!answer.ok()) return FailWith(answer.status());
  WriteOut(call.json ? OutcomeJson("fit", call.file, answer->outcome) : answer->report);
  for (const std::string& note : answer->notes) WriteError(note);
  if (answer->outcome.refusal.empty()) return kExitOk;
  WriteError(answer->outcome.refusal);
  return kExitScriptLine;
}

}  // namespace

void AddFitCommand(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* sub = app.add_subcommand("fit", "fit an exponential relaxation to a track");
  sub->add_option("FILE", call->file, "a track file (.znt)")->required();
  for (std::size_t i = 0; i < call->values.size(); ++i) {
    sub->add_option(kOptions[i].name, call->values[i], kOptions[i].help)
        ->type_name(kOptions[i].value);
  }
  sub->add_flag("--json", call->json,
                "print an object with quantities, columns and rows instead of the table");
  sub->footer(kFooter);
  sub->callback([call, &exit_status] { exit_status = Run(*call); });
}

}  // namespace zento
