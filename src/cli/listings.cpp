#include "cli/listings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <type_traits>
#include <variant>
#include <vector>

#include "core/settings_table.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "core/track_table.h"
#include "devices/device_table.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/number.h"
#include "ui/main/information_sheet.h"

namespace zento {

Result<std::unique_ptr<TrackStore>> ReadTrackFile(Files& files, const std::filesystem::path& path) {
  const auto bytes = files.Read(path);
  if (!bytes.ok()) return bytes.status();
  auto tracks = std::make_unique<TrackStore>();
  for (int track = 0; track < kTracks; ++track) tracks->ClearTrack(track);
  const TrackFileLoad load = ReadTracks(bytes.value(), *tracks);
  if (!load.complete()) return load.status.Within(TextFromPath(path));
  return tracks;
}

std::vector<ColumnName> ColumnNames(const TrackRecord& record) {
  switch (record.Mode) {
    case kModePS:
      return {{"t", "s"}, {"I", "A"}};
    case kModeRPMvsj:
      return {{"rotation rate", "rpm"}, {"I", "A"}, {"t", "ms"}};
    case kModeRDE:
    case kModeSSV:
      return {{"E", "V"}, {"disk I", "A"}, {"ring I", "A"}};
    default:
      return {{"E", "V"}, {"I", "A"}, {"t", "s"}};
  }
}

namespace {

// No cell has anything in it that CSV would quote: they are numbers and names of columns.
template <typename Cells>
void AppendRow(std::string& text, const Cells& cells, int columns, TableForm form) {
  for (int column = 0; column < columns; ++column) {
    if (column > 0) text += form == TableForm::kCsv ? ',' : '\t';
    text += cells(column);
  }
  text += form == TableForm::kCsv ? "\r\n" : "\n";
}

template <typename Owner>
void AppendSetting(std::string& text, const SettingRowOf<Owner>& row, const Owner& owner,
                   const std::string& suffix = {}) {
  constexpr std::string_view kTypes[] = {"integer", "short integer",    "number",
                                         "text",    "list of integers", "list of numbers"};
  std::string value = SettingText(row, owner);
  if (value.starts_with(' ')) value.erase(0, 1);
  text.append(row.key).append(suffix).append("\t").append(kTypes[row.member.index()]);
  text.append("\t").append(value).append("\t").append(row.meaning);
  if constexpr (std::is_same_v<Owner, Settings>) {
    const auto* const number = std::get_if<std::int32_t Settings::*>(&row.member);
    const std::string devices = number != nullptr ? DeviceNames(*number) : "";
    if (!devices.empty()) text.append(": ").append(devices);
  }
  text.append("\n");
}

}  // namespace

Result<std::string> TrackFileSheets(Files& files, const std::filesystem::path& path) {
  const auto tracks = ReadTrackFile(files, path);
  if (!tracks.ok()) return tracks.status();
  std::string text;
  for (int track = 0; track < kTracks; ++track) {
    const TrackRecord& record = tracks.value()->Record(track);
    if (record.Mode == kModeNone) continue;
    text += "Track\t" + std::to_string(track) + "\n";
    for (int row = 0; row < kSheetRows; ++row) {
      text.append(SheetLabel(row)).append("\t").append(SheetValue(row, record)).append("\n");
    }
    text.append("Reference\t").append(AtOrNone(RefName, record.ref)).append("\n");
  }
  return text;
}

Result<std::string> TrackTable(Files& files, const std::filesystem::path& path, int track,
                               bool headings, TableForm form) {
  const auto tracks = ReadTrackFile(files, path);
  if (!tracks.ok()) return tracks.status();
  TrackStore& store = *tracks.value();
  const TrackRecord& record = store.Record(track);
  if (record.Mode == kModeNone) {
    return Status::Failure("track " + std::to_string(track) + " is empty")
        .Within(TextFromPath(path));
  }
  // Reading gives each of a multichannel record's tracks 0 to 9 the time that track 0 carries.
  const int columns = KeptColumns(record, /*multi_time=*/track <= 9);
  std::string text;
  const auto names = ColumnNames(record);
  const auto heading = [&](int column) {
    const ColumnName& name = names[static_cast<std::size_t>(column)];
    return name.name + "/" + name.unit;
  };
  if (headings) AppendRow(text, heading, columns, form);
  for (std::int32_t point = 0; point < record.pnum; ++point) {
    AppendRow(
        text, [&](int column) { return PlainNumber(store.Value(column, track, point)); }, columns,
        form);
  }
  return text;
}

std::string SettingsListing(const Settings& settings) {
  std::string text = "key\ttype\tvalue\tmeaning\n";
  AppendSetting(text, CVNumRow(), settings);
  for (std::size_t preset = 0; preset < settings.CV.size(); ++preset) {
    for (const PresetRow& row : PresetRows()) {
      AppendSetting(text, row, settings.CV[preset], "(" + std::to_string(preset) + ")");
    }
  }
  for (const SettingRow& row : SettingRows()) AppendSetting(text, row, settings);
  return text;
}

std::string BenchListing(const sim::Parameters& parameters) {
  std::vector<std::array<std::string, 3>> rows;
  std::array<std::size_t, 3> widths{};
  for (const sim::Parameter& parameter : sim::ParameterTable()) {
    rows.push_back({std::string(parameter.key), sim::ValueText(parameters, parameter),
                    std::string(parameter.unit)});
    for (std::size_t i = 0; i < 3; ++i) widths[i] = std::max(widths[i], rows.back()[i].size());
  }
  std::string text;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t i = 0; i < 3; ++i) {
      text += rows[row][i] + std::string(widths[i] - rows[row][i].size() + 2, ' ');
    }
    const sim::Parameter& parameter = sim::ParameterTable()[row];
    text.append(parameter.help);
    const std::string others = OtherStandards(parameter, parameters.Kind());
    if (!others.empty()) text.append("; default of ").append(others);
    text.append("\n");
  }
  return text;
}

}  // namespace zento
