#include "cli/cli_tracks.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/listings.h"
#include "cli/track_jobs.h"
#include "cli/transform_job.h"
#include "cli/window_options.h"
#include "core/tables.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "text/codepage.h"
#include "text/number.h"

namespace zento {
namespace {

using Json = nlohmann::ordered_json;

constexpr char kSaveFooter[] =
    "FILE stays as it is; all its tracks and the changed one go to the file that --save names, "
    "which must not exist unless --overwrite is given. A message of the window goes to standard "
    "error, with exit status 2, and nothing is saved.";

// What the commands that change tracks were given.
struct Call {
  std::string file, from, save;
  int source = 0;
  int track = 0;
  bool overwrite = false;
};

SaveRequest SaveOf(const Call& call) {
  return {PathFromText(call.save), call.overwrite};
}

void TellMessages(const std::vector<std::string>& messages) {
  for (const std::string& message : messages) WriteError("message: " + message);
}

int Tell(const Result<JobTold>& told) {
  if (!told.ok()) return FailWith(told.status());
  for (const std::string& note : told->notes) WriteError(note);
  TellMessages(told->messages);
  return told->messages.empty() ? kExitOk : kExitScriptLine;
}

int Import(const Call& call, const ProgramOptions& options) {
  NativeFiles files;
  return Tell(ImportIntoFile({PathFromText(call.file), options.home(), PathFromText(call.from),
                              call.source, call.track, SaveOf(call)},
                             files));
}

int Paste(const Call& call, const ProgramOptions& options) {
  NativeFiles files;
  auto text = call.from == "-" ? ReadStandardInput() : files.Read(PathFromText(call.from));
  if (!text.ok()) return FailWith(text.status());
  return Tell(PasteIntoFile(
      {PathFromText(call.file), options.home(), DecodeFile(text.value()), call.track, SaveOf(call)},
      files));
}

std::string HitsAsJson(const SearchAnswer& answer) {
  Json hits = Json::array();
  for (const SearchHit& hit : answer.hits) {
    hits.push_back({{"file", TextFromPath(hit.path)},
                    {"track", hit.track},
                    {"title", hit.title},
                    {"mode", AtOrNone(ModeName, hit.mode)},
                    {"rpm", hit.rpm},
                    {"scan_rate", hit.scanrate}});
  }
  return hits.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

// Titles hold neither tabs nor line ends, as track files are lines of text.
std::string HitsAsTable(const SearchAnswer& answer) {
  std::string text = "file\ttrack\ttitle\tmode\trpm\tscan rate/mVs-1\n";
  for (const SearchHit& hit : answer.hits) {
    text += TextFromPath(hit.path) + "\t" + PlainNumber(hit.track) + "\t" + hit.title + "\t" +
            std::string(AtOrNone(ModeName, hit.mode)) + "\t" + PlainNumber(hit.rpm) + "\t" +
            PlainNumber(hit.scanrate) + "\n";
  }
  return text;
}

int Search(const SearchRequest& request, bool json) {
  NativeFiles files;
  const auto answer = SearchFolder(request, files);
  if (!answer.ok()) return FailWith(answer.status());
  TellMessages(answer->messages);
  if (!answer->messages.empty()) return kExitScriptLine;
  WriteOut(json ? HitsAsJson(answer.value()) : HitsAsTable(answer.value()));
  WriteError(answer->state);
  return kExitOk;
}

void AddTrack(CLI::App& command, const char* name, int& track, const char* help) {
  command.add_option(name, track, help)->required()->check(CLI::Range(0, kTracks - 1));
}

void AddSave(CLI::App& command, Call& call) {
  command.add_option("--save", call.save, "the track file that gets all tracks")->required();
  command.add_flag("--overwrite", call.overwrite, "let --save replace a file");
  command.footer(kSaveFooter);
}

void AddImport(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* import = app.add_subcommand("import", "copy a track of another file into a track");
  import->add_option("FILE", call->file, "a track file (.znt)")->required();
  import->add_option("--from", call->from, "the track file it comes from")->required();
  AddTrack(*import, "--source", call->source, "number of the track in that file");
  AddTrack(*import, "--track", call->track, "number of the track it becomes");
  AddSave(*import, *call);
  import->callback([call, &options, &exit_status] { exit_status = Import(*call, options);
});
}  // namespace

void AddPaste(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* paste = app.add_subcommand("paste", "put a table of text into a track");
  paste->add_option("FILE", call->file, "a track file (.znt)")->required();
  AddTrack(*paste, "--track", call->track, "number of the track");
  paste
      ->add_option("--from", call->from,
                   "the text, as copied from the program or a spreadsheet; - for standard input")
      ->required();
  AddSave(*paste, *call);
  paste->callback([call, &options, &exit_status] { exit_status = Paste(*call, options); });
}

struct TransformCall {
  Call call;
  int into = 0;
  std::string title;
  OptionValues values;
};

void AddTransform(CLI::App& app, const TransformCommand& command, const ProgramOptions& options,
                  int& exit_status) {
  auto call = std::make_shared<TransformCall>();
  auto* sub =
      app.add_subcommand(std::string(command.window.name), std::string(command.window.help));
  sub->add_option("FILE", call->call.file, "a track file (.znt)")->required();
  call->values.AddTo(*sub, command.window.options);
  auto* into = sub->add_option("--into", call->into, std::string(command.into_help));
  into->check(CLI::Range(0, kTracks - 1))->required(command.update_button.empty());
  auto* title = sub->add_option("--title", call->title,
                                "title of the track of --into; else what the window makes up");
  title->needs(into);
  if (CLI::Option* all = sub->get_option_no_throw("--all")) into->excludes(all);
  AddSave(*sub, call->call);
  sub->callback([=, &command, &options, &exit_status] {
    TransformRequest request{&command,
                             PathFromText(call->call.file),
                             options.home(),
                             call->values.Given(),
                             {},
                             {},
                             SaveOf(call->call)};
    if (into->count() > 0) request.into = call->into;
    if (title->count() > 0) request.title = call->title;
    NativeFiles files;
    exit_status = Tell(Transform(request, files));
  });
}

struct TableCall {
  std::string file;
  int track = 0;
  bool headings = false;
  bool csv = false;
  std::string as;
  OptionValues values;
};

int PrintPoints(const TableCall& call) {
  NativeFiles files;
  const auto text =
      TrackTable(files, PathFromText(call.file), call.track, call.headings || call.csv,
                 call.csv ? TableForm::kCsv : TableForm::kTabs);
  if (!text.ok()) return FailWith(text.status());
  WriteOut(text.value());
  return kExitOk;
}

constexpr const char* kCopyKinds[] = {"all", "data", "i-t", "v-i", "special"};

int PrintCopy(const TableCall& call, const ProgramOptions& options) {
  const auto* const kind = std::find(std::begin(kCopyKinds), std::end(kCopyKinds), call.as);
  NativeFiles files;
  const auto answer =
      CopyFromFile({static_cast<CopyKind>(kind - std::begin(kCopyKinds)), PathFromText(call.file),
                    options.home(), call.track, call.values.Given()},
                   files);
  if (!answer.ok()) return FailWith(answer.status());
  WriteOut(answer->text);
  return Tell(answer->told);
}

void AddTable(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  auto call = std::make_shared<TableCall>();
  auto* table = app.add_subcommand("table", "print a track's points as a table");
  table->add_option("FILE", call->file, "a track file (.znt)")->required();
  AddTrack(*table, "--track", call->track, "number of the track");
  auto* headings = table->add_flag("--headings", call->headings, "say first what the columns are");
  auto* csv = table->add_flag("--csv", call->csv,
                              "comma-separated values with units in a heading, not cells apart by "
                              "tabs");
  auto* as = table->add_option("--as", call->as,
                               "as the main window's Edit menu copies it: all, data, i-t or v-i of "
                               "a multichannel record, special; every other option but --track is "
                               "for special");
  as->check(CLI::IsMember(std::vector<std::string>(std::begin(kCopyKinds), std::end(kCopyKinds))));
  as->excludes(headings)->excludes(csv);
  call->values.AddTo(*table, SpecialCopyCommand().options);
  for (const WindowOption& option : SpecialCopyCommand().options) {
    table->get_option(std::string(option.name))->needs(as);
  }
  table->footer(
      "Without --as, every point in V, A, s, ms or rpm with all its digits. A message of the "
      "window "
      "goes to standard error, with exit status 2.");
  table->callback([call, &options, &exit_status] {
    if (call->as != "special" && !call->values.Given().empty()) {
      exit_status = FailWith(Status::Failure("units, cycles and thinning are for --as special"));
    } else {
      exit_status = call->as.empty() ? PrintPoints(*call) : PrintCopy(*call, options);
    }
  });
}

struct SearchCall {
  SearchRequest request;
  std::string folder, title, mode, rpm, scan_rate;
  bool json = false;
};

void AddSearch(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<SearchCall>();
  auto* search = app.add_subcommand("search", "find tracks in the track files of a folder");
  search->add_option("FOLDER", call->folder, "where to look")->required();
  auto* title = search->add_option("--title", call->title,
                                   "words apart by blanks that all stand in the title, as typed");
  auto* mode = search->add_option("--mode", call->mode, "the measurement: CV, RDE, PS, ...");
  auto* rpm = search->add_option("--rpm", call->rpm, "rotation rate, exactly");
  auto* rate = search->add_option("--scan-rate", call->scan_rate, "in mV/s, exactly");
  search->add_flag("--subfolders", call->request.subfolders, "look into folders below, too");
  search->add_flag("--json", call->json, "print an array of objects");
  search->footer(
      "Prints file, track, title, mode, rotation rate and scan rate of each track that fits, 200 "
      "at most; how many files were looked through goes to standard error.");
  search->callback([=, &exit_status] {
    SearchRequest& request = call->request;
    request.folder = PathFromText(call->folder);
    if (title->count() > 0) request.title = call->title;
    if (mode->count() > 0) request.mode = call->mode;
    if (rpm->count() > 0) request.rpm = call->rpm;
    if (rate->count() > 0) request.scan_rate = call->scan_rate;
    exit_status = Search(request, call->json);
  });
}

}  // namespace zento

void AddTrackCommands(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  AddImport(app, options, exit_status);
  AddPaste(app, options, exit_status);
  AddSearch(app, exit_status);
  for (const TransformCommand& command : TransformCommands()) {
    AddTransform(app, command, options, exit_status);
  }
  AddTable(app, options, exit_status);
}

}  // namespace zento
