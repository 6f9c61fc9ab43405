#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/track.h"
#include "ui/main/table_job.h"

namespace zento {

class TrackStore;

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
  // A column of 100 (Id - Ir/N) / (Id + Ir/N), an empty cell where that has no value; modes 2, 6
  // and 7 only.
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

}  // namespace zento
