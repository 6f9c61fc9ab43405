#include "exchange/table_text.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "core/tables.h"
#include "core/track_table.h"
#include "text/format.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

// Rows with numbers of any size, tabs and the line's end.
constexpr std::size_t kLongestRow = 4 * (kLongestFixed4 + 1) + 2;
constexpr std::size_t kLongestMultiRow = (1 + kMultiChannels) * (kLongestPlain + 1) + 2;
constexpr std::size_t kUsualCell = 17;
constexpr double kLeastLogged = 1e-9;  // what a current of 0 counts as

const char* FirstLabel(std::int32_t mode) {
  switch (TraitsOf(mode).x) {
    case XQuantity::kTime:
      return "time/s";
    case XQuantity::kRotationRate:
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

std::vector<double> CopyOf(const std::vector<double>& from, std::size_t count) {
  std::vector<double> values(
      from.begin(), from.begin() + static_cast<std::ptrdiff_t>(std::min(count, from.size())));
  values.resize(count);
  return values;
}

// Collects rows and hands them on in large pieces. `kLongestRow` is the room a row may need.
template <std::size_t kLongestRow>
class RowBlock {
 public:
  explicit RowBlock(std::string& out) : out_(out) {}
  ~RowBlock() { Flush(); }
  RowBlock(const RowBlock&) = delete;
  RowBlock& operator=(const RowBlock&) = delete;

  // Where the next row begins.
  char* Begin() {
    if (at_ > block_.data() + block_.size() - kLongestRow) Flush();
    return at_;
  }
  // `at` is where the row ends.
  void End(char* at) {
    *at++ = '\r';
    *at++ = '\n';
    at_ = at;
  }

 private:
  void Flush() {
    out_.append(block_.data(), static_cast<std::size_t>(at_ - block_.data()));
    at_ = block_.data();
  }

  std::string& out_;
  std::array<char, 4096 + kLongestRow> block_;
  char* at_ = block_.data();
};

// Unlike that of text files, with the zero before the point, as spreadsheets write it.
std::string BlankSigned(double value) {
  const std::string number = PlainNumber(value);
  return number.front() == '-' ? number : " " + number;
}

class Lines {
 public:
  void Add(std::string_view label, std::string_view value) {
    text.append(label).append("\t").append(value).append("\r\n");
  }
  std::string text;
};

}  // namespace

bool HasWaterFraction(std::int32_t mode) {
  return HasRing(mode) || mode == kModeSSVAll;
}

std::vector<ColumnName> ColumnNames(const TrackRecord& record, int track) {
  std::vector<ColumnName> names;
  const ModeTraits& traits = TraitsOf(record.Mode);
  switch (traits.x) {
    case XQuantity::kNone:
      return names;
    case XQuantity::kPotential:
      names.push_back({"E", "V"});
      break;
    case XQuantity::kTime:
      names.push_back({"t", "s"});
      break;
    case XQuantity::kRotationRate:
      names.push_back({"rotation rate", "rpm"});
      break;
  }
  const bool ring = HasRing(record.Mode);
  names.push_back({ring ? "disk I" : "I", "A"});
  if (KeptColumns(record, /*multi_time=*/track < kMultiChannels) < kTrackColumns) return names;
  if (ring) {
    names.push_back({"ring I", "A"});
  } else {
    names.push_back({"t", traits.x == XQuantity::kRotationRate ? "ms" : "s"});
  }
  return names;
}

std::string CellText(std::string text) {
  text = OneLine(std::move(text));
  std::replace(text.begin(), text.end(), '\t', ' ');
  return text;
}

std::string TrackInfoText(const TrackStore& tracks, int track, std::string_view file_title) {
  const TrackRecord& record = tracks.Record(track);
  if (record.IsEmpty()) return "No Data";
  Lines lines;
  lines.Add("Filename", CellText(std::string(file_title)));
  lines.Add("Mode", AtOrNone(ModeCaption, record.Mode));
  lines.Add("Title", CellText(record.Title));
  lines.Add("MeasTime", CellText(record.MeasTime));
  if (record.Mode == kModeSSV) {
    lines.Add("StepTime", BlankSigned(record.StepTime));
  } else {
    lines.Add("Scanrate", BlankSigned(record.Scanrate));
  }
  lines.Add("Ref", AtOrNone(RefName, record.ref));
  if (record.Mode == kModePS) {
    lines.Add("V1st", Format(record.V[0], "0.000"));
    lines.Add("V2nd", Format(record.V[1], "0.000"));
  }
  if (HasRing(record.Mode)) lines.Add("RingXValue=", PlainNumber(record.RingXValue));
  if (record.Mode == kModeRPMvsj) lines.Add("DiskXValue=", PlainNumber(record.V[0]));
  lines.Add("RPM", BlankSigned(record.RPM));
  lines.Add("Conc/molcm-3", Format(record.Conc, "0.000e+0"));
  lines.Add("Area/cm2", Format(record.Area, "0.0000"));
  lines.Add("Weight/mg", Format(record.Weight, "0.000e+0"));
  lines.Add("ne", PlainNumber(record.ne));
  if (IsMultichannel(record.Mode)) lines.Add("Track", BlankSigned(track));
  return std::move(lines.text);
}

DataTable::DataTable(const TrackStore& tracks, int track, const TableOptions& options)
    : record_(tracks.Record(track)),
      options_(options),
      shown_columns_(KeptColumns(record_, track == 0)),
      third_is_current_(HasRing(record_.Mode)),
      water_(options.water_fraction && HasWaterFraction(record_.Mode)),
      divisor_(Divisor(record_, options.normalisation)),
      disk_factor_(FactorOf(options.disk_unit)),
      ring_factor_(FactorOf(options.ring_unit)) {
  const auto count = static_cast<std::size_t>(tracks.PointCount(track));
  for (int column = 0; column < std::max(shown_columns_, 2); ++column) {
    columns_[static_cast<std::size_t>(column)] = CopyOf(tracks.Column(column, track), count);
  }
  if (options_.points)
    std::erase_if(*options_.points, [&](std::int32_t point) {
      return point < 0 || static_cast<std::size_t>(point) >= count;
    });
  total_ = static_cast<std::int32_t>(options_.points ? options_.points->size() : count);
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

MultiTable::MultiTable(const TrackStore& tracks, int track, std::string_view file_title,
                       MultiTableKind kind) {
  total_ = tracks.PointCount(0);
  const auto count = static_cast<std::size_t>(total_);
  columns_[0] = CopyOf(tracks.Column(kind == MultiTableKind::kCurrentTime ? 2 : 0, 0), count);
  text.reserve(count * kUsualCell * columns_.size() + 1000);
  text.append("Filename\t").append(CellText(std::string(file_title))).append("\r\n");
  text.append("MeasTime\t").append(CellText(tracks.Record(track).MeasTime)).append("\r\n");
  for (int channel = 0; channel < kMultiChannels; ++channel) {
    columns_[static_cast<std::size_t>(channel) + 1] = CopyOf(tracks.Column(1, channel), count);
    text.append("\t").append(CellText(tracks.Record(channel).Title));
  }
  text.append("\r\n");
}

void MultiTable::WriteRows(std::int32_t begin, std::int32_t end) {
  RowBlock<kLongestMultiRow> rows(text);
  for (std::int32_t row = begin; row < end; ++row) {
    const auto point = static_cast<std::size_t>(row);
    char* out = WritePlain(rows.Begin(), columns_[0][point]);
    for (int channel = 1; channel <= kMultiChannels; ++channel) {
      *out++ = '\t';
      out = WritePlain(out, columns_[static_cast<std::size_t>(channel)][point]);
    }
    rows.End(out);
  }
}

}  // namespace zento
