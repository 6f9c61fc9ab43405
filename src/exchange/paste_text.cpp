#include "exchange/paste_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/tables.h"
#include "core/track_store.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::size_t kCells = kTrackColumns;
using Row = std::array<double, kCells>;

std::optional<double> NumberIn(std::string_view cell) {
  if (const auto number = ParseStrict(cell)) return number;
  if (cell.find('.') != cell.npos) return std::nullopt;
  const std::size_t comma = cell.find(',');
  if (comma == cell.npos || cell.find(',', comma + 1) != cell.npos) return std::nullopt;
  std::string with_point(cell);
  with_point[comma] = '.';
  return ParseStrict(with_point);
}

double ValueOf(std::string_view cell) {
  const auto number = NumberIn(cell);
  return number ? *number : ParseLenient(cell);
}

// The first cells of a line.
struct Cells {
  std::array<std::string_view, kCells> cell;
  std::size_t count = 0;  // at most kCells
};

Cells Split(std::string_view line) {
  Cells cells;
  while (cells.count < kCells) {
    const std::size_t tab = line.find('\t');
    cells.cell[cells.count++] = line.substr(0, tab);
    if (tab == line.npos) break;
    line.remove_prefix(tab + 1);
  }
  return cells;
}

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

// Behind a line's end that begins at `p`: LF, CR LF, CR CR LF or CR.
const char* BehindLineEnd(const char* p, const char* end) {
  const std::string_view rest(p, static_cast<std::size_t>(end - p));
  if (rest.starts_with("\r\r\n")) return p + 3;
  if (rest.starts_with("\r\n")) return p + 2;
  return rest.empty() ? p : p + 1;
}

// A line of two or more plain numbers, of which the first three are taken. Null when the line looks
// different in any way.
const char* ReadPlainLine(const char* p, const char* end, Row& row) {
  row.fill(0);
  for (std::size_t count = 0;; ++count) {
    double value = 0;
    const char* const behind = ParseNumber(p, end, value);
    if (behind == p) return nullptr;
    if (count < kCells) row[count] = value;
    if (behind == end || IsLineEnd(*behind)) {
      return count > 0 ? BehindLineEnd(behind, end) : nullptr;
    }
    if (*behind != '\t') return nullptr;
    p = behind + 1;
  }
}

double* FieldOf(TrackRecord& record, std::string_view label) {
  struct Field {
    std::string_view label;
    double& value;
  };
  // Also as the header block spells them.
  const Field fields[] = {
      {"Scanrate", record.Scanrate},
      {"StepTime", record.StepTime},
      {"V1st", record.V[0]},
      {"V2nd", record.V[1]},
      {"V3rd", record.V[2]},
      {"RingXValue", record.RingXValue},
      {"RingXValue=", record.RingXValue},
      {"RPM", record.RPM},
      {"Conc/molcm-3", record.Conc},
      {"Area/cm2", record.Area},
      {"Weight/mg", record.Weight},
      {"ne", record.ne},
      {"pH", record.pH},
  };
  for (const Field& field : fields) {
    if (field.label == label) return &field.value;
  }
  return nullptr;
}

// Collects the points, and the header values on the way.
class Paste {
 public:
  Paste(TrackStore& tracks, int track, std::size_t text_size) : record_(tracks.Record(track)) {
    record_.V.fill(0);
    record_.pnum = 0;
    constexpr std::size_t kShortestLine = 3;  // a digit, a tab and an end; the last has none
    const std::size_t most =
        std::min(text_size / kShortestLine + 1, static_cast<std::size_t>(kMaxPoints));
    for (std::size_t column = 0; column < kCells; ++column) {
      std::vector<double>& values = tracks.Column(static_cast<int>(column), track);
      if (values.size() < most) values.resize(most);
      columns_[column] = values.data();
    }
  }

  void Read(std::string_view text) {
    const char* p = text.data();
    const char* const end = p + text.size();
    Row row{};
    while (p != end) {
      if (const char* const behind = ReadPlainLine(p, end, row)) {
        AddPoint(row);
        p = behind;
        continue;
      }
      const char* const line_end = std::find_if(p, end, IsLineEnd);
      TakeLine({p, static_cast<std::size_t>(line_end - p)});
      p = BehindLineEnd(line_end, end);
    }
  }

  Pasted Finish() {
    record_.pnum = points_;
    if (!record_.IsEmpty()) {
      SetRange();
      if (record_.V[1] == 0 && record_.V[2] == 0) FindVertices();
      // A rotation-rate sweep has no vertices; its first potential is that of the disk.
      if (disk_potential_) record_.V[0] = *disk_potential_;
    }
    return {points_, left_out_, !record_.IsEmpty()};
  }

 private:
  void AddPoint(const Row& row) {
    if (points_ == kMaxPoints) {
      ++left_out_;
      return;
    }
    for (std::size_t column = 0; column < kCells; ++column) columns_[column][points_] = row[column];
    ++points_;
  }

  void TakeLine(std::string_view line) {
    const Cells cells = Split(line);
    if (cells.count < 2) return;
    const auto first = NumberIn(cells.cell[0]);
    if (!first) return TakeHeader(cells);
    Row row{*first};
    for (std::size_t i = 1; i < cells.count; ++i) row[i] = ValueOf(cells.cell[i]);
    AddPoint(row);
  }

  void TakeHeader(const Cells& cells) {
    const std::string_view label = cells.cell[0];
    const std::string_view value = cells.cell[1];
    if (label == "Mode") {
      TakeMode(value);
    } else if (label == "Title") {
      record_.Title = value;
    } else if (label == "MeasTime") {
      record_.MeasTime = value;
    } else if (label == "DiskXValue=") {
      disk_potential_ = ValueOf(value);
    } else if (label == "rpm" && cells.count > 2) {
      record_.TimeRecording = cells.cell[2] == "Time/ms" ? 1 : record_.TimeRecording;
    } else if (double* const field = FieldOf(record_, label)) {
      *field = ValueOf(value);
    }
  }

  void TakeMode(std::string_view value) {
    for (std::size_t mode = 0; mode < ModeName.size(); ++mode) {
      if (value.find(ModeName[mode]) != value.npos) record_.Mode = static_cast<std::int32_t>(mode);
    }
  }

  void SetRange() {
    constexpr double kLeast = 10;
    record_.Vxmin = record_.Vymin = kLeast;
    record_.Vxmax = record_.Vymax = -kLeast;
    for (std::int32_t i = 0; i < points_; ++i) {
      record_.Vxmin = std::min(record_.Vxmin, columns_[0][i]);
      record_.Vxmax = std::max(record_.Vxmax, columns_[0][i]);
      record_.Vymin = std::min(record_.Vymin, columns_[1][i]);
      record_.Vymax = std::max(record_.Vymax, columns_[1][i]);
    }
  }

  void FindVertices() {
    const double* const x = columns_[0];
    int direction = 0;
    std::size_t vertex = 0;
    for (std::int32_t i = 1; i < points_ && vertex < record_.V.size(); ++i) {
      const int next = (x[i] > x[i - 1]) - (x[i] < x[i - 1]);
      if (next == direction) continue;
      record_.V[vertex++] = x[i - 1];
      direction = next;
    }
  }

  TrackRecord& record_;
  std::array<double*, kCells> columns_{};
  std::optional<double> disk_potential_;  // V
  std::int32_t points_ = 0;
  std::int32_t left_out_ = 0;
};

}  // namespace

Pasted PasteText(std::string_view text, TrackStore& tracks, int track) {
  Paste paste(tracks, track, text.size());
  paste.Read(text);
  return paste.Finish();
}

std::string PasteNotice(const Pasted& pasted, int track) {
  const std::string name = "track " + std::to_string(track);
  std::string notice = "Pasted " + std::to_string(pasted.points) + " points into " + name;
  if (pasted.left_out > 0) {
    notice += "; " + std::to_string(pasted.left_out) + " MORE HAD NO ROOM in it";
  }
  if (!pasted.has_mode) notice += ", which stays empty: the text has no line that says the mode";
  return notice;
}

}  // namespace zento
