#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/track_store.h"

// Tracks as texts for the clipboard: cells apart by tabs, lines ended by CR LF.

namespace zento {

// The header block of a track, a label and a value a line; "No Data" alone for an empty track.
// `file_title` is that of the opened track file.
std::string TrackInfoText(const TrackStore& tracks, int track, std::string_view file_title);

// A text as a cell of a tab-separated table: line breaks and tabs become blanks.
std::string CellText(std::string text);

// What a track's columns hold, in their order; as many as the track has, none for an empty one. A
// file gives each channel of a multichannel record the times that track 0 carries.
struct ColumnName {
  std::string name;
  std::string unit;
};
std::vector<ColumnName> ColumnNames(const TrackRecord& record, int track);

// A table for the clipboard that is written piece by piece, so that a window can show how far it
// is. It works on a copy of the points: what happens to the track meanwhile does not show.
class TableJob {
 public:
  virtual ~TableJob() = default;

  // Writes up to `points` further points; false when the table is complete.
  bool Continue(std::int32_t points) {
    const std::int32_t end = position_ + std::min(points, total_ - position_);
    if (end > position_) WriteRows(position_, end);
    position_ = end;
    return position_ < total_;
  }
  // How many points are written, and of how many.
  std::int32_t position() const { return position_; }
  std::int32_t total() const { return total_; }

  std::string text;

 protected:
  // Appends the rows of the points `begin` to `end` - 1.
  virtual void WriteRows(std::int32_t begin, std::int32_t end) = 0;

  std::int32_t total_ = 0;

 private:
  std::int32_t position_ = 0;
};

// A water fraction can be calculated from the track's columns.
bool HasWaterFraction(std::int32_t mode);

enum class Normalisation { kNone = 0, kPerArea = 1, kPerWeight = 2 };
enum class PointFilter { kAll = 0, kPositive = 1, kNegative = 2 };

// What a data table shows and how.
struct TableOptions {
  // Indices of UnitName. That of the ring is the third column's factor whatever the column is:
  // leave 1 where it is a time.
  std::int32_t disk_unit = 1;
  std::int32_t ring_unit = 1;
  // Currents are divided by the track's Area (cm2) or Weight (mg), which must not be 0.
  Normalisation normalisation = Normalisation::kNone;
  // A column of 100 (Id - Ir/N) / (Id + Ir/N), an empty cell where that has no value; only
  // for modes with HasWaterFraction.
  bool water_fraction = false;
  double collection_efficiency = 0;  // N, not 0
  // Currents as the decimal logarithm of their absolute value in amperes, per area or weight if
  // so normalised, whatever the units are; 0 counts as 1e-9.
  bool logarithm = false;
  // The absolute values of the middle one of three columns.
  bool absolute = false;
  // Those of the current of a track with two columns.
  bool absolute_last = false;
  PointFilter filter = PointFilter::kAll;  // by the sign of column 1
  // The points to be written, in rising order; nothing = all of them.
  std::optional<std::vector<std::int32_t>> points;
};

// The data table of a track: a line of labels, then a line a point, ended by CR LF.
class DataTable : public TableJob {
 public:
  // `track` is not empty.
  DataTable(const TrackStore& tracks, int track, const TableOptions& options);

 protected:
  void WriteRows(std::int32_t begin, std::int32_t end) override;

 private:
  void WriteLabels();
  std::string CurrentLabel(const char* plain, const char* log, std::int32_t unit) const;
  std::string ThirdLabel() const;
  bool LeftOut(double current) const;
  char* WriteMiddle(char* out, double value) const;
  char* WriteLast(char* out, double value, double factor, bool current) const;
  char* WriteWaterFraction(char* out, double disk, double ring) const;

  TrackRecord record_;
  TableOptions options_;
  std::array<std::vector<double>, kTrackColumns> columns_;
  int shown_columns_;
  bool third_is_current_;
  bool water_;
  double divisor_ = 1;
  double disk_factor_;
  double ring_factor_;
};

// The same at once.
std::string DataTableText(const TrackStore& tracks, int track, const TableOptions& options = {});

// What the first column of a multichannel table holds: the time (s) or the potential (V), both
// those of track 0.
enum class MultiTableKind { kCurrentTime, kPotentialCurrent };

// The ten channels of a multichannel record as one table: file and time of the measurement, the
// titles, then a line a point of track 0 with the currents of all channels (A).
class MultiTable : public TableJob {
 public:
  // The time of the measurement is that of `track`, one of the record's.
  MultiTable(const TrackStore& tracks, int track, std::string_view file_title, MultiTableKind kind);

 protected:
  void WriteRows(std::int32_t begin, std::int32_t end) override;

 private:
  // Of the first cell, then of the channels.
  std::array<std::vector<double>, 1 + kMultiChannels> columns_;
};

}  // namespace zento
