#include "cli/analysis_commands.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <memory>

#include "analysis/analysis_form.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/outcome_json.h"
#include "cli/track_jobs.h"
#include "cli/track_jobs.h"
#include "core/settings_file.h"
#include "core/track_file.h"
#include "host/desktop.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "program/headless_program.h"

namespace zento {
namespace {

using enum OptionKind;

constexpr std::string_view kUnknowns[] = {"electrons", "viscosity", "diffusion", "concentration"};
constexpr std::string_view kTrackBases[] = {"none", "value", "track"};
constexpr std::string_view kLines[] = {"origin", "intercept"};
constexpr std::string_view kIntegrations[] = {"trapezoid", "simpson"};
constexpr std::string_view kChargeBases[] = {"none", "linear", "value"};

constexpr std::string_view kTrackHelp = "the track; without it the file's first one";
constexpr std::string_view kPointsHelp =
    "first and last point, both used, counted from 0; either may be left out";

constexpr WindowOption kRotationOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N",
     "the track that the window shows; a rotation-rate sweep is analysed alone. Without it the "
     "first of --tracks, else the file's first one"},
    {"--tracks", kUsedTracks, "chkUse", "LIST",
     "the tracks that are used: 0,2-5 or all; without it those that the file says"},
    {"--potential", kNumber, "txtUseVoltage", "V", "centre of the potential window"},
    {"--half-width", kNumber, "txtKLVrange", "V", "half-width of the potential window"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area"},
    {"--viscosity", kNumber, "txtKLViscosity", "CM2/S", "kinematic viscosity"},
    {"--diffusion", kNumber, "txtDm", "CM2/S", "diffusion coefficient"},
    {"--concentration", kNumber, "txtConc", "MOL/CM3", "concentration"},
    {"--electrons", kNumber, "txtne", "N", "number of electrons"},
    {"--solve", kChoice, "opnVariable", "WHAT", "the quantity that is solved for", kUnknowns},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp, {}, {}, true},
    {"--base",
     kChoice,
     "opnBaseLine",
     "MODE",
     "the current that is subtracted",
     kTrackBases,
     {},
     true},
    {"--base-value", kNumber, "txtSubVal", "A", "for --base value", {}, {}, true},
    {"--base-track", kIndex, "txtBaseTrack", "N", "for --base track", {}, "updBase", true},
    {"--base-end",
     kIndex,
     "txtBaseEnd",
     "LAST",
     "last point of the base line's track",
     {},
     "updBaseEnd",
     true},
};

constexpr WindowOption kCottrellOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--electrons", kNumber, "txtne", "N", "number of electrons"},
    {"--concentration", kNumber, "txtConc", "MOL/CM3", "concentration; else the track's"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area; else the track's"},
    {"--line", kChoice, "opnCalcMode", "KIND", "through the origin, or with an intercept", kLines},
};

constexpr WindowOption kCoulombOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--method", kChoice, "opnMethod", "RULE", "rule of integration", kIntegrations},
    {"--base", kChoice, "opnBaseLine", "MODE", "base line", kChargeBases},
    {"--base-value", kNumber, "txtBaseValue", "A", "for --base value"},
};

constexpr WindowOption kTafelOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--redox-potential", kNumber, "txtRedoxPotential", "V", "where the overpotential is 0"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area"},
};

constexpr WindowOption kOxygenOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--collection", kNumber, "txtCE", "N", "collection efficiency of the ring"},
    {"--step", kNumber, "txtVstep", "V", "from one potential to the next"},
    {"--half-width", kNumber, "txtVrange", "V", "half-width of the averaging window"},
};

constexpr WindowCommand kCommands[] = {
    {"kl", "frmKoutecky_Levich", "Koutecky-Levich analysis: 1/j against 1/sqrt(f)",
     kRotationOptions, "opnMethod", 0},
    {"levich", "frmKoutecky_Levich", "Levich analysis: j against sqrt(f)", kRotationOptions,
     "opnMethod", 1},
    {"cottrell", "frmCottrellEquation", "diffusion coefficient from a potential step",
     kCottrellOptions},
    {"coulomb", "frmCoulombCalculator", "charge between two points", kCoulombOptions},
    {"tafel", "frmTafelAnalyzer", "transfer coefficient and exchange current", kTafelOptions},
    {"o2", "frmO2Reduction", "share of water from ring and disk currents", kOxygenOptions},
};

// Takes the settings of a home; fails when it has none.
Status UseSettingsOf(const std::filesystem::path& home, Files& files, Settings& settings) {
  const auto bytes = files.Read(SettingsPath(home));
  if (!bytes.ok()) return bytes.status();
  return ParseSettings(bytes.value(), settings).Within(TextFromPath(home));
}
}  // namespace

std::span<const WindowCommand> AnalysisCommands() {
  return kCommands;
}

const WindowCommand* FindAnalysisCommand(std::string_view name) {
  const auto* found = std::ranges::find(kCommands, name, &WindowCommand::name);
  return found == std::end(kCommands) ? nullptr : found;
}

Result<AnalysisAnswer> Analyse(const AnalysisRequest& request, Files& files) {
  HeadlessProgram program(
      {.program = {.windows = Windows::kAnalyses}, .files = &files, .dry = true});
  if (Status started = program.Start(); !started.ok()) return started;
  Workstation& workstation = program.workstation();
  AnalysisAnswer answer;
  if (!request.home.empty()) {
    Status used = UseSettingsOf(request.home, files, workstation.settings);
    if (!used.ok()) return used;
  }
  const TrackFileLoad load = OpenTracks(workstation, program.host().files, request.file);
  if (Status opened = CheckLoad(load, request.file, answer.notes); !opened.ok()) return opened;
  const std::string_view name = request.command->form;
  if (program.desktop().Show(name) == nullptr) {
    return Status::Failure(std::string(name) + " did not open");
  }
  auto* const form = program.desktop().FindAs<AnalysisForm>(name);
  std::vector<std::string> limits;
  Status entered = EnterOptions(*form, workstation.tracks, *request.command, request.given, limits);
  if (!entered.ok()) return entered.Within(TextFromPath(request.file));
  form->Calculate();
  answer.outcome = form->result();
  answer.messages = program.TakeMessages();
  answer.notes.insert(answer.notes.end(), limits.begin(), limits.end());
  // A window that refuses in a message box goes on showing the report before.
  const std::string& refusal = answer.outcome.refusal;
  if (refusal.empty() || std::ranges::find(answer.messages, refusal) == answer.messages.end()) {
    answer.report = form->report();
    answer.fit_line = form->lblFit.text();
    std::ranges::replace(answer.fit_line, '\n', ';');
  }
  // A window that has nothing to do with a track like this does nothing, which nobody can see here.
  if (answer.report.empty() && answer.outcome.refusal.empty()) {
    answer.outcome.refusal = "the window has nothing to calculate for this track";
  }
  const Control* note = form->Find("lblNote");
  if (note != nullptr && !note->Value().empty()) answer.notes.push_back(note->Value());
  return answer;
}

namespace {

constexpr char kFooter[] =
    "Opens the analysis window on the file, makes these entries in it, presses its button and "
    "prints the window's report. Entries that are not made have the built-in settings, or those "
    "of the home that --home names. Nothing is written; FILE stays as it is. A refusal of the "
    "window goes to standard error, with exit status 2.";

// What one command was given on the command line.
struct Call {
  const WindowCommand* command = nullptr;
  std::string file;
  OptionValues values;
  bool json = false;
  bool quality = false;
};

std::string WithLineFeeds(std::string text) {
  std::erase(text, '\r');
  return text;
}

int Print(const Call& call, const AnalysisAnswer& answer) {
  if (call.json) {
    WriteOut(OutcomeJson(call.command->name, call.file, answer.outcome));
  } else {
    WriteOut(WithLineFeeds(answer.report));
  }
  for (const std::string& note : answer.notes) WriteError(note);
  for (const std::string& message : answer.messages) WriteError("message: " + message);
  const std::string& refusal = answer.outcome.refusal;
  if (std::ranges::find(answer.messages, refusal) == answer.messages.end() && !refusal.empty()) {
    WriteError(refusal);
  }
  if (call.quality && !answer.fit_line.empty()) WriteError(answer.fit_line);
  return refusal.empty() ? kExitOk : kExitScriptLine;
}

int Run(const Call& call, const ProgramOptions& options) {
  NativeFiles files;
  const auto answer =
      Analyse({call.command, PathFromText(call.file), options.home(), call.values.Given()}, files);
  return answer.ok() ? Print(call, answer.value()) : FailWith(answer.status());
}

void AddCommand(CLI::App& app, const WindowCommand& command, const ProgramOptions& options,
                int& exit_status) {
  auto call = std::make_shared<Call>();
  call->command = &command;
  auto* sub = app.add_subcommand(std::string(command.name), std::string(command.help));
  sub->add_option("FILE", call->file, "a track file (.znt)")->required();
  call->values.AddTo(*sub, command.options);
  sub->add_flag("--quality", call->quality,
                "tell on standard error how good the fit is, as the window does");
  sub->add_flag("--json", call->json,
                "print an object with quantities, columns, rows and fit instead of the report");
  sub->footer(kFooter);
  sub->callback([call, &options, &exit_status] { exit_status = Run(*call, options); });
}

}  // namespace

void AddAnalysisCommands(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  for (const WindowCommand& command : AnalysisCommands()) {
    AddCommand(app, command, options, exit_status);
  }
}

}  // namespace zento
