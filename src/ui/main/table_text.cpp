#include "ui/main/table_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "core/tables.h"
#include "core/track_store.h"
#include "core/track_table.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// Numbers of any size, tabs and the line's end.
constexpr std::size_t kLongestRow = 4 * (kLongestFixed4 + 1) + 2;
constexpr double kLeastLogged = 1e-9;  // what a current of 0 counts as

const char* FirstLabel(std::int32_t mode) {
  switch (mode) {
    case kModePS:
      return "time/s";
    case kModeRPMvsj:
      return "rpm";
    default:
      return "Potential/V";
  }
}

const char* Per(Normalisation normalisation) {
  switch (normalisation) {
    case Normalisation::kPerArea:
      return "cm-2";
    case Normalisation::kPerWeight:
      return "mg-1";
    default:
      return "";
  }
}

double Divisor(const TrackRecord& record, Normalisation normalisation) {
  switch (normalisation) {
    case Normalisation::kPerArea:
      return record.Area;
    case Normalisation::kPerWeight:
      return record.Weight;
    default:
      return 1;
  }
}

double FactorOf(std::int32_t unit) {
  return ParseLenient(AtOrNone(UnitFactor, unit));
}

char* WriteLog(char* out, double current) {
  const double magnitude = std::fabs(current);
  return WriteFixed4(out, std::log10(magnitude == 0 ? kLeastLogged : magnitude));
}

}  // namespace

DataTable::DataTable(const TrackStore& tracks, int track, const TableOptions& options)
    : record_(tracks.Record(track)),
      options_(options),
      shown_columns_(KeptColumns(record_, track == 0)),
      third_is_current_(HasRing(record_.Mode)),
      water_(options.water_fraction && (HasRing(record_.Mode) || record_.Mode == kModeSSVAll)),
      divisor_(Divisor(record_, options.normalisation)),
      disk_factor_(FactorOf(options.disk_unit)),
      ring_factor_(FactorOf(options.ring_unit)) {
  const auto count = static_cast<std::size_t>(tracks.PointCount(track));
  for (int column = 0; column < std::max(shown_columns_, 2); ++column) {
    const std::vector<double>& from = tracks.Column(column, track);
    std::vector<double>& values = columns_[static_cast<std::size_t>(column)];
    values.reserve(count);
    values.assign(from.begin(),
                  from.begin() + static_cast<std::ptrdiff_t>(std::min(count, from.size())));
    values.resize(count);
  }
  if (options_.points)
    std::erase_if(*options_.points, [&](std::int32_t point) {
      return point < 0 || static_cast<std::size_t>(point) >= count;
    });
  total_ = static_cast<std::int32_t>(options_.points ? options_.points->size() : count);
  constexpr std::size_t kUsualCell = 17;
  text.reserve(static_cast<std::size_t>(total_) * kUsualCell *
                   static_cast<std::size_t>(shown_columns_) +
               100);
  WriteLabels();
}

std::string DataTable::CurrentLabel(const char* plain, const char* log, std::int32_t unit) const {
  if (options_.logarithm) return std::string(log) + "A" + Per(options_.normalisation) + ")";
  return std::string(plain).append(AtOrNone(UnitName, unit)) + Per(options_.normalisation);
}

std::string DataTable::ThirdLabel() const {
  if (third_is_current_) return CurrentLabel("Ring/", "log10(iring", options_.ring_unit);
  return record_.Mode == kModeRPMvsj ? "Time/ms" : "Time/s";
}

void DataTable::WriteLabels() {
  text += FirstLabel(record_.Mode);
  text += "\t" + CurrentLabel("Disk/", "log10(idisk", options_.disk_unit);
  if (shown_columns_ == 3) text += "\t" + ThirdLabel();
  if (water_) text += "\t%H2O";
  text += "\r\n";
}

bool DataTable::LeftOut(double current) const {
  switch (options_.filter) {
    case PointFilter::kPositive:
      return !(current > 0);
    case PointFilter::kNegative:
      return !(current < 0);
    default:
      return false;
  }
}

char* DataTable::WriteMiddle(char* out, double value) const {
  value /= divisor_;
  if (options_.logarithm) return WriteLog(out, value);
  if (options_.absolute) value = std::fabs(value);
  return WriteScientific4(out, value * disk_factor_);
}

char* DataTable::WriteLast(char* out, double value, double factor, bool current) const {
  if (!current) return WritePlain(out, value * factor);
  value /= divisor_;
  return options_.logarithm ? WriteLog(out, value) : WritePlain(out, value * factor);
}

char* DataTable::WriteWaterFraction(char* out, double disk, double ring) const {
  const double peroxide = ring / options_.collection_efficiency;
  const double share = 100 * (disk - peroxide) / (disk + peroxide);
  if (!std::isfinite(share)) return out;
  const std::string written = Format(share, "##0.0");
  return std::copy(written.begin(), written.end(), out);
}

void DataTable::WriteRows(std::int32_t begin, std::int32_t end) {
  RowBlock<kLongestRow> rows(text);
  const bool three = shown_columns_ == 3;
  for (std::int32_t row = begin; row < end; ++row) {
    const auto at = static_cast<std::size_t>(row);
    const auto point = options_.points ? static_cast<std::size_t>((*options_.points)[at]) : at;
    const double disk = columns_[1][point];
    if (LeftOut(disk)) continue;
    char* out = WriteFixed4(rows.Begin(), columns_[0][point]);
    *out++ = '\t';
    if (three) {
      out = WriteMiddle(out, disk);
      *out++ = '\t';
      out = WriteLast(out, columns_[2][point], ring_factor_, third_is_current_);
    } else {
      out = WriteLast(out, options_.absolute_last ? std::fabs(disk) : disk, disk_factor_, true);
    }
    if (water_) {
      *out++ = '\t';
      out = WriteWaterFraction(out, disk, columns_[2][point]);
    }
    rows.End(out);
  }
}

std::string DataTableText(const TrackStore& tracks, int track, const TableOptions& options) {
  DataTable table(tracks, track, options);
  while (table.Continue(table.total())) {
  }
  return std::move(table.text);
}

}  // namespace zento
