#include "cli/cli_tracks.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/track_jobs.h"
#include "cli/transform_job.h"
#include "cli/window_options.h"
#include "core/tables.h"
#include "exchange/exporters.h"
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

int Finish(const Result<JobReport>& report) {
  if (!report.ok()) return FailWith(report.status());
  for (const std::string& note : report->notes) WriteError(note);
  for (const std::string& message : report->messages) WriteError("message: " + message);
  return report->messages.empty() ? kExitOk : kExitScriptLine;
}

int Import(const Call& call, const ProgramOptions& options) {
  NativeFiles files;
  return Finish(ImportIntoFile({PathFromText(call.file), options.home(), PathFromText(call.from),
                                call.source, call.track, SaveOf(call)},
                               files));
}

int Paste(const Call& call) {
  NativeFiles files;
  auto text = call.from == "-" ? ReadStandardInput() : files.Read(PathFromText(call.from));
  if (!text.ok()) return FailWith(text.status());
  return Finish(PasteIntoFile(
      {PathFromText(call.file), DecodeFile(text.value()), call.track, SaveOf(call)}, files));
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

struct SearchCall {
  std::string folder, title, mode, rpm, scan_rate;
  bool subfolders = false;
  bool json = false;
};

Result<std::int32_t> ModeOf(const std::string& name) {
  std::string names;
  for (std::size_t mode = 1; mode < ModeName.size(); ++mode) {
    if (ModeName[mode] == name) return static_cast<std::int32_t>(mode);
    names += " " + std::string(ModeName[mode]);
  }
  return Status::Failure("--mode: '" + name + "' is not one of" + names);
}

Status CheckNumber(const char* option, const std::optional<std::string>& value) {
  if (!value || ParseStrict(*value)) return Status::Ok();
  return Status::Failure(std::string(option) + ": '" + *value + "' is not a number");
}

int Search(const SearchCall& call, const TypedCriteria& typed) {
  for (const Status& number :
       {CheckNumber("--rpm", typed.rpm), CheckNumber("--scan-rate", typed.scanrate)}) {
    if (!number.ok()) return FailWith(number);
  }
  const auto criteria = ParseCriteria(typed);
  if (!criteria.ok()) {
    WriteError("message: " + criteria.why());
    return kExitScriptLine;
  }
  NativeFiles files;
  const auto answer =
      SearchFolder(criteria.value(), PathFromText(call.folder), call.subfolders, files);
  if (!answer.ok()) return FailWith(answer.status());
  WriteOut(call.json ? HitsAsJson(answer.value()) : HitsAsTable(answer.value()));
  WriteError(answer->summary);
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

void AddPaste(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<Call>();
  auto* paste = app.add_subcommand("paste", "put a table of text into a track");
  paste->add_option("FILE", call->file, "a track file (.znt)")->required();
  AddTrack(*paste, "--track", call->track, "number of the track");
  paste
      ->add_option("--from", call->from,
                   "the text, as copied from the program or a spreadsheet; - for standard input")
      ->required();
  AddSave(*paste, *call);
  paste->callback([call, &exit_status] { exit_status = Paste(*call); });
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
    exit_status = Finish(Transform(request, files));
  });
}

struct TableCall {
  std::string file;
  int track = 0;
  bool csv = false;
  std::string as;
  ExportOptions options;
  bool special = false;  // an option of the special copy was given
};

int PrintTable(const TableCall& call) {
  if (call.special && call.as != "special") {
    return FailWith(Status::Failure("units, cycles and thinning are for --as special"));
  }
  const std::filesystem::path path = PathFromText(call.file);
  NativeFiles files;
  std::vector<std::string> notes;
  const auto tracks = ReadTrackFile(files, path, notes);
  if (!tracks.ok()) return FailWith(tracks.status());
  const TrackRecord& record = tracks.value()->Record(call.track);
  const Status possible = CheckTableOptions(record, call.options.table);
  if (!record.IsEmpty() && !possible.ok()) {
    WriteError("message: " + possible.why());
    return kExitScriptLine;
  }
  const std::string id = call.csv ? "csv" : call.as.empty() ? "points" : call.as;
  const std::string file_title = TextFromPath(path.filename());
  const auto text =
      ExportText(*FindExporter(id), {*tracks.value(), call.track, file_title, call.options});
  if (!text.ok()) return FailWith(text.status().Within(call.file));
  WriteOut(text.value());
  return Finish(JobReport{{}, notes});
}

// The options of the special copy, which all need `as`.
class SpecialOptions {
 public:
  SpecialOptions(CLI::App& table, CLI::Option* as, std::shared_ptr<TableCall> call)
      : table_(table), as_(as), call_(std::move(call)) {}

  void Add() {
    static constexpr std::string_view kUnits[] = {"A", "mA", "uA", "nA"};
    static constexpr std::string_view kNormalisations[] = {"none", "area", "weight"};
    static constexpr std::string_view kPolarities[] = {"all", "positive", "negative"};
    ExportOptions* const options = &call_->options;
    TableOptions* const table = &options->table;
    Thinning* const thinning = &options->thinning;
    AddChoice("--unit", "UNIT", "of the current", kUnits,
              [table](int unit) { table->disk_unit = unit + 1; });
    AddChoice("--ring-unit", "UNIT", "of the ring current", kUnits,
              [table](int unit) { table->ring_unit = unit + 1; });
    AddChoice("--per", "WHAT", "divide currents by the track's", kNormalisations,
              [table](int what) { table->normalisation = static_cast<Normalisation>(what); });
    AddFlag("--log", "log10 of the currents without their sign",
            [table] { table->logarithm = true; });
    AddFlag("--absolute", "currents without their sign",
            [table] { table->absolute = table->absolute_last = true; });
    AddNumber("--water", "N", "a column %H2O, with the ring's collection efficiency N",
              [table](double efficiency) {
                table->water_fraction = true;
                table->collection_efficiency = efficiency;
              });
    AddChoice("--only", "SIGN", "points by the sign of the disk current", kPolarities,
              [table](int sign) { table->filter = static_cast<PointFilter>(sign); });
    AddNumber("--cycle", "N", "this cycle alone, from 1 on",
              [options](double cycle) { options->cycle = ToLong(cycle); });
    AddFlag("--no-header", "the table alone, without the track's record",
            [options] { options->header_block = false; });
    AddNumber("--angle", "DEG", "thinning: keep points where the curve turns by more",
              [thinning](double angle) { thinning->angle = angle; });
    AddNumber("--distance", "FRACTION",
              "thinning: keep points that are farther away, in parts of the display range",
              [thinning](double distance) { thinning->distance = distance; });
    AddNumber("--order", "N", "thinning: keep every n-th point",
              [thinning](double order) { thinning->order = ToLong(order); });
  }

 private:
  void AddChoice(const char* name, const char* value, std::string help,
                 std::span<const std::string_view> words, const std::function<void(int)>& take) {
    std::string list;
    for (const std::string_view word : words) {
      list += " " + std::string(word);
      help += (word == words.front() ? ": " : ", ") + std::string(word);
    }
    AddValue(name, value, help, [=](const std::string& text) {
      const auto word = std::ranges::find(words, text);
      if (word == words.end()) {
        throw CLI::ValidationError(name, "'" + text + "' is not one of" + list);
      }
      take(static_cast<int>(word - words.begin()));
    });
  }

  void AddNumber(const char* name, const char* value, const char* help,
                 const std::function<void(double)>& take) {
    AddValue(name, value, help, [=](const std::string& text) {
      const auto number = ParseStrict(text);
      if (!number) throw CLI::ValidationError(name, "'" + text + "' is not a number");
      take(*number);
    });
  }

  void AddValue(const char* name, const char* value, const std::string& help,
                const std::function<void(const std::string&)>& take) {
    const auto taken = [call = call_, take](const std::string& text) {
      call->special = true;
      take(text);
    };
    table_.add_option_function<std::string>(name, taken, help)->type_name(value)->needs(as_);
  }

  void AddFlag(const char* name, const char* help, const std::function<void()>& take) {
    const auto taken = [call = call_, take] {
      call->special = true;
      take();
    };
    table_.add_flag_callback(name, taken, help)->needs(as_);
  }

  CLI::App& table_;
  CLI::Option* as_;
  std::shared_ptr<TableCall> call_;
};

void AddTable(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<TableCall>();
  auto* table = app.add_subcommand("table", "print a track's points as a table");
  table->add_option("FILE", call->file, "a track file (.znt)")->required();
  AddTrack(*table, "--track", call->track, "number of the track");
  auto* headings =
      table->add_flag("--headings", call->options.headings, "say first what the columns are");
  auto* csv = table->add_flag("--csv", call->csv,
                              "comma-separated values with units in a heading, not cells apart by "
                              "tabs");
  auto* as = table->add_option("--as", call->as,
                               "as the main window's Edit menu copies it: all, data, i-t or v-i of "
                               "a multichannel record, special; every other option but --track is "
                               "for special");
  std::vector<std::string> ids;
  for (const Exporter& exporter : Exporters()) ids.emplace_back(exporter.id);
  as->check(CLI::IsMember(ids));
  as->excludes(headings)->excludes(csv);
  SpecialOptions(*table, as, call).Add();
  table->footer(
      "Without --as, every point in V, A, s, ms or rpm with all its digits. A message of the "
      "window goes to standard error, with exit status 2.");
  table->callback([call, &exit_status] { exit_status = PrintTable(*call); });
}

void AddSearch(CLI::App& app, int& exit_status) {
  auto call = std::make_shared<SearchCall>();
  auto* search = app.add_subcommand("search", "find tracks in the track files of a folder");
  search->add_option("FOLDER", call->folder, "where to look")->required();
  auto* title = search->add_option("--title", call->title,
                                   "words apart by blanks that all stand in the title, as typed");
  auto* mode = search->add_option("--mode", call->mode, "the measurement: CV, RDE, PS, ...");
  auto* rpm = search->add_option("--rpm", call->rpm, "rotation rate, exactly");
  auto* rate = search->add_option("--scan-rate", call->scan_rate, "in mV/s, exactly");
  search->add_flag("--subfolders", call->subfolders, "look into folders below, too");
  search->add_flag("--json", call->json, "print an array of objects");
  search->footer(
      "Prints file, track, title, mode, rotation rate and scan rate of each track that fits, 200 "
      "at most; how many files were looked through goes to standard error.");
  search->callback([=, &exit_status] {
    TypedCriteria typed;
    if (mode->count() > 0) {
      const auto number = ModeOf(call->mode);
      if (!number.ok()) {
        exit_status = FailWith(number.status());
        return;
      }
      typed.mode = number.value();
    }
    if (title->count() > 0) typed.keywords = call->title;
    if (rpm->count() > 0) typed.rpm = call->rpm;
    if (rate->count() > 0) typed.scanrate = call->scan_rate;
    exit_status = Search(*call, typed);
  });
}

}  // namespace zento

void AddTrackCommands(CLI::App& app, const ProgramOptions& options, int& exit_status) {
  AddImport(app, options, exit_status);
  AddPaste(app, exit_status);
  AddSearch(app, exit_status);
  for (const TransformCommand& command : TransformCommands()) {
    AddTransform(app, command, options, exit_status);
  }
  AddTable(app, exit_status);
}

}  // namespace zento
