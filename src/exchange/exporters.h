#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/track_store.h"
#include "exchange/table_text.h"
#include "exchange/thinning.h"
#include "text/status.h"

// The formats that a track is exported in: on the clipboard, by the command line. A new one is a
// function in a file of its own and a row in the table of exporters.cpp; menu and command line
// follow the table.

namespace zento {

// What a person may choose besides the format; each format takes what it knows.
struct ExportOptions {
  bool headings = false;     // "points": say first what the columns are
  bool header_block = true;  // "special": the track's record before the table, and:
  TableOptions table;        // its `points` are chosen by cycle and thinning
  std::optional<int> cycle;  // from 1 on, held within the track's; nothing = all of them
  Thinning thinning;
};

struct ExportRequest {
  TrackStore& tracks;
  int track = 0;  // not empty
  std::string_view file_title;
  ExportOptions options = {};
};

// Fails when the track has not what the format is made of.
using StartedExport = Result<std::unique_ptr<TableJob>>;

struct Exporter {
  std::string_view id;          // on the command line: --as ID
  std::string_view caption;     // in menus
  std::string_view extension;   // of files, with the dot
  std::string_view menu_entry;  // of the main window's Edit menu; empty = none
  StartedExport (*start)(const ExportRequest& request);
};

std::span<const Exporter> Exporters();
// Null when there is none of that name.
const Exporter* FindExporter(std::string_view id);

// Begins to write the track. Fails when it is empty or not one of those that the format is for.
StartedExport StartExport(const Exporter& exporter, const ExportRequest& request);
// The same to its end.
Result<std::string> ExportText(const Exporter& exporter, const ExportRequest& request);

// Fails when a "special" table cannot be calculated from the track: there is no area, weight or
// collection efficiency to divide by.
Status CheckTableOptions(const TrackRecord& record, const TableOptions& options);

}  // namespace zento
