#include "cli/fit_command.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include "analysis/exponential_fit.h"
#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/exit_status.h"
#include "cli/outcome_json.h"
#include "cli/track_jobs.h"
#include "core/track_store.h"
#include "exchange/table_text.h"
#include "host/native/native_files.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kDigits = 6;
constexpr int kErrorDigits = 2;

// What is fitted.
struct Data {
  std::string title;
  int track = 0;
  std::int32_t first = 0, last = 0;
  std::vector<double> x, y;
  ColumnName x_name, y_name;
};

Result<int> TrackOf(const TrackStore& tracks, const std::optional<int>& asked) {
  if (asked && tracks.Record(*asked).IsEmpty()) {
    return Status::Failure("track " + PlainNumber(*asked) + " is empty");
  }
  for (int track = asked.value_or(0); track < kTracks; ++track) {
    if (!tracks.Record(track).IsEmpty()) return track;
  }
  return Status::Failure("the file holds no track");
}

std::vector<double> Part(const TrackStore& tracks, int column, const Data& data) {
  std::vector<double> part;
  for (std::int32_t point = data.first; point <= data.last; ++point) {
    part.push_back(tracks.Value(column, data.track, point));
  }
  return part;
}

Status NoColumn(int track, int column, const std::vector<ColumnName>& names) {
  std::string there;
  for (std::size_t i = 0; i < names.size(); ++i) {
    there +=
        (i == 0 ? " " : ", ") + PlainNumber(i) + " (" + names[i].name + "/" + names[i].unit + ")";
  }
  return Status::Failure("track " + PlainNumber(track) + " has no column " + PlainNumber(column) +
                         ", only" + there);
}

Result<Data> TakeData(const TrackStore& tracks, const FitRequest& request,
                      std::vector<std::string>& notes) {
  const auto track = TrackOf(tracks, request.track);
  if (!track.ok()) return track.status();
  Data data;
  data.track = track.value();
  const TrackRecord& record = tracks.Record(data.track);
  data.title = record.Title;
  const auto names = ColumnNames(record, data.track);
  for (const int column : {request.x_column, request.y_column}) {
    if (column >= static_cast<int>(names.size())) return NoColumn(data.track, column, names);
  }
  data.x_name = names[static_cast<std::size_t>(request.x_column)];
  data.y_name = names[static_cast<std::size_t>(request.y_column)];
  const std::int32_t end = tracks.PointCount(data.track) - 1;
  data.first = request.points.first.value_or(0);
  data.last = std::min(request.points.last.value_or(end), end);
  if (request.points.last && *request.points.last > end) {
    notes.push_back("--points: point " + PlainNumber(*request.points.last) + " became " +
                    PlainNumber(end));
  }
  data.x = Part(tracks, request.x_column, data);
  data.y = Part(tracks, request.y_column, data);
  return data;
}

SSVGaussNewtonLog::Uniform RandomNumbers(int seed) {
  auto engine = std::make_shared<std::mt19937_64>(static_cast<std::uint64_t>(seed));
  return [engine] { return static_cast<double>((*engine)() >> 11) * 0x1p-53; };
}

AnalysisResult OutcomeOf(const ExponentialFit& fit, const Data& data) {
  AnalysisResult outcome;
  for (std::size_t i = 0; i < fit.parameters.size(); ++i) {
    const bool is_time_constant = i == 1 || i == 4;
    std::optional<double> error;
    if (i < fit.errors.size()) error = fit.errors[i];
    outcome.quantities.push_back({"p" + PlainNumber(i + 1),
                                  is_time_constant ? data.x_name.unit : data.y_name.unit,
                                  fit.parameters[i], error});
  }
  outcome.quantities.push_back({"s", "", static_cast<double>(fit.direction), {}});
  outcome.quantities.push_back({"iterations", "", static_cast<double>(fit.iterations), {}});
  const std::string square = data.y_name.unit.empty() ? "" : data.y_name.unit + "2";
  outcome.quantities.push_back({"chi_square", square, fit.chi_square, {}});
  outcome.columns = {{"x", data.x_name.unit, data.x},
                     {"y", data.y_name.unit, data.y},
                     {"fit", data.y_name.unit, fit.fitted}};
  return outcome;
}

std::string Row(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += (line.empty() ? "" : "\t") + cell;
  return line + "\n";
}

std::string WithUnit(const std::string& name, const std::string& unit) {
  return unit.empty() ? name : name + " /" + unit;
}

std::string ReportOf(const AnalysisResult& outcome, const Data& data, const std::string& file) {
  std::string text = Row({"File", file}) + Row({"Track", PlainNumber(data.track)}) +
                     Row({"Title", data.title}) +
                     Row({"Points", PlainNumber(data.first), PlainNumber(data.last)});
  text += outcome.quantities.size() > 6 ? Row({"y", "p3 - s (p1 exp(-x/p2) + p4 exp(-x/p5))"})
                                        : Row({"y", "p3 - s p1 exp(-x/p2)"});
  text += Row({"parameter", "value", "standard error"});
  for (const Quantity& quantity : outcome.quantities) {
    text += Row({WithUnit(quantity.name, quantity.unit), PlainNumber(quantity.value, kDigits),
                 quantity.error ? PlainNumber(*quantity.error, kErrorDigits) : "-"});
  }
  text += Row({WithUnit("x: " + data.x_name.name, data.x_name.unit),
               WithUnit("y: " + data.y_name.name, data.y_name.unit), "fit"});
  const auto& columns = outcome.columns;
  for (std::size_t i = 0; i < data.x.size(); ++i) {
    text += Row({PlainNumber(columns[0].values[i]), PlainNumber(columns[1].values[i]),
                 PlainNumber(columns[2].values[i], kDigits)});
  }
  return text;
}

// "1e-5,0.2,0"; nothing when a piece is no number.
std::optional<std::vector<double>> ParseNumbers(std::string_view text) {
  std::vector<double> numbers;
  while (true) {
    const std::size_t comma = text.find(',');
    const auto number = ParseStrict(text.substr(0, comma));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    if (comma == std::string_view::npos) return numbers;
    text.remove_prefix(comma + 1);
  }
}

// A whole number from `least` to `most`.
bool Take(const std::string& text, int least, int most, int& value) {
  const auto number = ParseWhole(text);
  if (!number || *number < least || *number > most) return false;
  value = *number;
  return true;
}

// One option's value. False when it makes no sense for that option.
bool TakeOption(const std::string& option, const std::string& value, FitRequest& request) {
  int number = 0;
  if (option == "--x") return Take(value, 0, kTrackColumns - 1, request.x_column);
  if (option == "--y") return Take(value, 0, kTrackColumns - 1, request.y_column);
  if (option == "--track") {
    if (!Take(value, 0, kTracks - 1, number)) return false;
    request.track = number;
  } else if (option == "--seed") {
    if (!Take(value, 0, std::numeric_limits<int>::max(), number)) return false;
    request.seed = number;
  } else if (option == "--parameters") {
    return Take(value, 3, 5, request.parameters) && request.parameters != 4;
  } else if (option == "--points") {
    const auto range = ParseIndexRange(value);
    if (!range) return false;
    request.points = *range;
  } else if (option == "--start") {
    const auto numbers = ParseNumbers(value);
    if (!numbers) return false;
    request.start = *numbers;
  }
  return true;
}
}  // namespace

Result<FitRequest> ParseFitRequest(const std::vector<std::string>& words) {
  FitRequest request;
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    if (!TakeOption(words[i], words[i + 1], request)) {
      return Status::Failure(words[i] + ": '" + words[i + 1] + "' makes no sense here");
    }
  }
  return request;
}

Result<FitAnswer> FitTrack(const FitRequest& request, Files& files) {
  FitAnswer answer;
  const auto tracks = ReadTrackFile(files, request.file, answer.notes);
  if (!tracks.ok()) return tracks.status();
  const auto data = TakeData(*tracks.value(), request, answer.notes);
  if (!data.ok()) return data.status().Within(TextFromPath(request.file));
  ExponentialFitOptions options;
  options.start = request.start;
  if (request.seed) options.random = RandomNumbers(*request.seed);
  const auto fit = FitExponential(data->x, data->y, request.parameters, options);
  if (!fit.ok()) {
    answer.outcome.refusal = fit.why();
    return answer;
  }
  if (!fit->converged) answer.notes.push_back("the fit has not come to a minimum");
  answer.outcome = OutcomeOf(fit.value(), data.value());
  answer.report = ReportOf(answer.outcome, data.value(), TextFromPath(request.file.filename()));
  return answer;
}

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
