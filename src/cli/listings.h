#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "sim/parameters.h"
#include "text/status_fwd.h"

// What the command-line program prints without opening a window. All texts end with a line end.

namespace zento {

class Files;
class TrackStore;
struct Settings;
struct TrackRecord;

// The tracks of a file, which must be a complete track file.
Result<std::unique_ptr<TrackStore>> ReadTrackFile(Files& files, const std::filesystem::path& path);

// What a track's columns hold, in their order; as many as a track of its mode may have.
struct ColumnName {
  std::string name;
  std::string unit;
};
std::vector<ColumnName> ColumnNames(const TrackRecord& record);

// The information sheet of every track of a file that is not empty.
Result<std::string> TrackFileSheets(Files& files, const std::filesystem::path& path);

enum class TableForm {
  kTabs,  // cells apart by tabs, lines end in LF
  kCsv,   // comma-separated values as RFC 4180 (2005) has them: lines end in CR LF
};

// A track's points, one a line, in V, A, s, ms or rpm as the track's mode has it; with `headings`,
// a line that says so comes first. Numbers read back to the same double.
Result<std::string> TrackTable(Files& files, const std::filesystem::path& path, int track,
                               bool headings, TableForm form = TableForm::kTabs);

// Every setting: key, type, value, meaning, separated by tabs.
std::string SettingsListing(const Settings& settings);

// Every parameter of the simulated bench: key, value, unit, meaning, in aligned columns.
std::string BenchListing(const sim::Parameters& parameters);

}  // namespace zento
