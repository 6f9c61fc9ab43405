#include "exchange/exporters.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/track_table.h"
#include "text/number.h"

namespace zento {
namespace {

// Every point in V, A, s, ms or rpm as the track's mode has it. Numbers read back to the same
// double.
class PointTable : public TableJob {
 public:
  struct Form {
    char separator;
    std::string_view line_end;
  };

  PointTable(const ExportRequest& request, const Form& form, bool headings)
      : form_(form), names_(ColumnNames(request.tracks.Record(request.track), request.track)) {
    total_ = request.tracks.PointCount(request.track);
    for (int column = 0; column < static_cast<int>(names_.size()); ++column) {
      const auto points = request.tracks.Points(column, request.track);
      columns_[static_cast<std::size_t>(column)].assign(points.begin(), points.end());
    }
    if (!headings) return;
    AppendRow([&](std::size_t column) { return names_[column].name + "/" + names_[column].unit; });
  }

 protected:
  void WriteRows(std::int32_t begin, std::int32_t end) override {
    for (auto point = static_cast<std::size_t>(begin); point < static_cast<std::size_t>(end);
         ++point) {
      AppendRow([&](std::size_t column) { return PlainNumber(columns_[column][point]); });
    }
  }

 private:
  // No cell has anything in it that CSV would quote: they are numbers and names of columns.
  template <typename Cell>
  void AppendRow(Cell cell) {
    for (std::size_t column = 0; column < names_.size(); ++column) {
      if (column > 0) text += form_.separator;
      text += cell(column);
    }
    text += form_.line_end;
  }

  Form form_;
  std::vector<ColumnName> names_;
  std::array<std::vector<double>, kTrackColumns> columns_;
};

StartedExport StartPoints(const ExportRequest& request) {
  return StartedExport(std::make_unique<PointTable>(request, PointTable::Form{'\t', "\n"},
                                                    request.options.headings));
}

// Comma-separated values as RFC 4180 (2005) has them: lines end in CR LF.
StartedExport StartCsv(const ExportRequest& request) {
  return StartedExport(std::make_unique<PointTable>(request, PointTable::Form{',', "\r\n"},
                                                    /*headings=*/true));
}

std::unique_ptr<TableJob> TableBehind(const std::string& head, const ExportRequest& request,
                                      const TableOptions& options) {
  auto table = std::make_unique<DataTable>(request.tracks, request.track, options);
  table->text.insert(0, head);
  return table;
}

std::string HeaderBlock(const ExportRequest& request) {
  return TrackInfoText(request.tracks, request.track, request.file_title) + "\r\n";
}

StartedExport StartAll(const ExportRequest& request) {
  return TableBehind(HeaderBlock(request), request, {});
}

StartedExport StartData(const ExportRequest& request) {
  const std::string& title = request.tracks.Record(request.track).Title;
  return TableBehind(CellText(title) + "\r\n\r\n", request, {});
}

StartedExport StartMulti(const ExportRequest& request, MultiTableKind kind) {
  if (!IsMultichannel(request.tracks.Record(request.track).Mode)) {
    return Status::Failure("track " + PlainNumber(request.track) +
                           " is not of the mode that this table is for");
  }
  return StartedExport(
      std::make_unique<MultiTable>(request.tracks, request.track, request.file_title, kind));
}

StartedExport StartCurrentTime(const ExportRequest& request) {
  return StartMulti(request, MultiTableKind::kCurrentTime);
}

StartedExport StartPotentialCurrent(const ExportRequest& request) {
  return StartMulti(request, MultiTableKind::kPotentialCurrent);
}

StartedExport StartSpecial(const ExportRequest& request) {
  const TrackRecord& record = request.tracks.Record(request.track);
  TableOptions table = request.options.table;
  if (Status checked = CheckTableOptions(record, table); !checked.ok()) return checked;
  // A time in the third column is no current.
  if (!HasRing(record.Mode)) table.ring_unit = 1;
  table.points =
      ChosenPoints(request.tracks, request.track, request.options.cycle, request.options.thinning);
  return TableBehind(request.options.header_block ? HeaderBlock(request) : std::string(), request,
                     table);
}

constexpr Exporter kExporters[] = {
    {"points", "Points as Text Data", ".txt", "", StartPoints},
    {"csv", "Comma-Separated Values", ".csv", "", StartCsv},
    {"all", "Copy All as Text Data", ".txt", "mnuCopyAll", StartAll},
    {"data", "Copy I-E(or t) Data as Text Data", ".txt", "mnuCopyOnlyExpData", StartData},
    {"i-t", "Copy I-t table (Multipotentiostat Only)", ".txt", "mnuCopyI_ttable", StartCurrentTime},
    {"v-i", "Copy V-I Table (Multipotentiostat Only)", ".txt", "mnuCopyV_ITable",
     StartPotentialCurrent},
    {"special", "Special Copy", ".txt", "", StartSpecial},
};

}  // namespace

std::span<const Exporter> Exporters() {
  return kExporters;
}

const Exporter* FindExporter(std::string_view id) {
  const auto* const found = std::ranges::find(kExporters, id, &Exporter::id);
  return found == std::end(kExporters) ? nullptr : found;
}

StartedExport StartExport(const Exporter& exporter, const ExportRequest& request) {
  if (request.tracks.Record(request.track).IsEmpty()) {
    return Status::Failure("track " + PlainNumber(request.track) + " is empty");
  }
  return exporter.start(request);
}

Result<std::string> ExportText(const Exporter& exporter, const ExportRequest& request) {
  auto job = StartExport(exporter, request);
  if (!job.ok()) return job.status();
  while (job.value()->Continue(job.value()->total())) {
  }
  return std::move(job.value()->text);
}

Status CheckTableOptions(const TrackRecord& record, const TableOptions& options) {
  if (options.normalisation == Normalisation::kPerArea && !(record.Area > 0)) {
    return Status::Failure(
        "The track's electrode area is not above 0, so there is no current per area.");
  }
  if (options.normalisation == Normalisation::kPerWeight && !(record.Weight > 0)) {
    return Status::Failure("The track's weight is not above 0, so there is no current per weight.");
  }
  const bool water = options.water_fraction && HasWaterFraction(record.Mode);
  if (water && !(options.collection_efficiency > 0)) {
    return Status::Failure("The collection efficiency N must be above 0 for %H2O.");
  }
  return Status::Ok();
}

}  // namespace zento
