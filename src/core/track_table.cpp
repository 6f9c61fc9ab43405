#include "core/track_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "core/plain_rows.h"
#include "core/tables.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// The bytes that are left, with what a line is made of. Pieces are numbers with blanks around them,
// lines end as LineReader's do.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  bool AtEnd() const { return at_ == end_; }
  std::string_view Rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

  // False when what stands here, up to the next tab or line end, is no number.
  bool Number(double& value) {
    SkipBlanks();
    const char* behind = ParseNumber(at_, end_, value);
    if (behind == at_) return false;
    at_ = behind;
    SkipBlanks();
    return AtEnd() || *at_ == '\t' || IsLineEnd(*at_);
  }

  bool Tab() {
    if (AtEnd() || *at_ != '\t') return false;
    ++at_;
    return true;
  }

  // Passes over what is left of the line and its end.
  void NextLine() {
    while (at_ != end_ && !IsLineEnd(*at_)) ++at_;
    if (at_ != end_ && *at_ == '\n') {
      ++at_;
      return;
    }
    const char* p = at_;
    for (int i = 0; i < 2 && p != end_ && *p == '\r'; ++i) ++p;
    if (p != end_ && *p == '\n') {
      at_ = p + 1;
    } else if (at_ != end_) {
      ++at_;
    }
  }

 private:
  static bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }
  void SkipBlanks() {
    while (at_ != end_ && *at_ == ' ') ++at_;
  }

  const char* at_;
  const char* end_;
};

Status NotAPoint(std::int32_t point, std::string_view rest) {
  constexpr std::size_t kShown = 40;
  std::string line(rest.substr(0, std::min(rest.find_first_of("\r\n"), kShown)));
  std::replace(line.begin(), line.end(), '\t', ' ');
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return Status::Failure("point " + std::to_string(point) + ": \"" + line +
                         "\" does not hold its numbers");
}

using Columns = std::array<double*, kTrackColumns>;

// The shortest line a point can have is a digit a column and what separates them.
std::int32_t MostPoints(std::string_view rest, std::int32_t points, int columns) {
  const std::size_t fit = rest.size() / (2 * static_cast<std::size_t>(columns)) + 1;
  return static_cast<std::int32_t>(std::min(static_cast<std::size_t>(points), fit));
}

Columns MakeRoom(TrackStore& tracks, int slot, std::int32_t points, int columns) {
  Columns room{};
  for (int column = 0; column < columns; ++column) {
    std::vector<double>& values = tracks.Column(column, slot);
    if (values.size() < static_cast<std::size_t>(points)) {
      values.resize(static_cast<std::size_t>(points));
    }
    room[static_cast<std::size_t>(column)] = values.data();
  }
  return room;
}

// One row by the general rule. False, and the cursor stays, when it is not a row of numbers.
template <std::size_t kCount>
bool ReadRow(Cursor& cursor, std::array<double, kCount>& row) {
  Cursor at = cursor;
  for (std::size_t column = 0; column < kCount; ++column) {
    if ((column > 0 && !at.Tab()) || !at.Number(row[column])) return false;
  }
  at.NextLine();
  cursor = at;
  return true;
}

template <std::size_t kCount>
TableRead ReadRows(std::string_view& rest, const Columns& to, std::int32_t points) {
  TableRead read;
  const Columns columns = to;
  const char* const plain_end = PlainEnd(rest);
  const char* const end = rest.data() + rest.size();
  const char* at = rest.data();
  std::int32_t point = 0;
  std::array<double, kCount> row{};
  for (; point < points && at != end; ++point) {
    if (const char* const behind = ReadPlainRow(at, plain_end, row)) {
      at = behind;
    } else {
      Cursor cursor({at, static_cast<std::size_t>(end - at)});
      if (!ReadRow(cursor, row)) {
        read.status = NotAPoint(point, cursor.Rest());
        break;
      }
      at = cursor.Rest().data();
    }
    for (std::size_t column = 0; column < kCount; ++column) columns[column][point] = row[column];
  }
  rest.remove_prefix(static_cast<std::size_t>(at - rest.data()));
  read.points = point;
  return read;
}

// Collects the rows and hands them on in large pieces.
class RowWriter {
 public:
  explicit RowWriter(std::string& out) : out_(out) {}
  ~RowWriter() { Flush(); }
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  // There is room for one row of numbers of any size.
  void BeginRow() {
    if (at_ > block_.data() + block_.size() - kLongestRow) Flush();
  }
  void First(double value) { at_ = WriteFixed4(at_, value); }
  void Further(double value) {
    *at_++ = '\t';
    at_ = WriteScientific(at_, value);
  }
  void EndRow() {
    *at_++ = '\r';
    *at_++ = '\n';
  }

 private:
  static constexpr int kLongestRow =
      kLongestFixed4 + (kTrackColumns - 1) * (1 + kLongestScientific) + 2;

  void Flush() {
    out_.append(block_.data(), static_cast<std::size_t>(at_ - block_.data()));
    at_ = block_.data();
  }

  std::string& out_;
  std::array<char, 16384> block_;
  char* at_ = block_.data();
};

double At(const std::vector<double>& column, std::size_t point) {
  return point < column.size() ? column[point] : 0.0;
}

}  // namespace

int WrittenColumns(const TrackRecord& record, bool multi_time) {
  const ThirdColumnIn third = TraitsOf(record.Mode).third_in;
  if (third == ThirdColumnIn::kFirstChannel) return multi_time ? 3 : 2;
  return third == ThirdColumnIn::kNone ? 2 : 3;
}

int KeptColumns(const TrackRecord& record, bool multi_time) {
  const bool if_recorded = TraitsOf(record.Mode).third_in == ThirdColumnIn::kTimeRecording;
  if (if_recorded && record.TimeRecording != 1) return 2;
  return WrittenColumns(record, multi_time);
}

TableRead ReadTable(std::string_view& rest, TrackStore& tracks, int slot, std::int32_t points,
                    int columns) {
  points = MostPoints(rest, std::clamp(points, 0, kMaxPoints), columns);
  const Columns room = MakeRoom(tracks, slot, points, columns);
  return columns == 3 ? ReadRows<3>(rest, room, points) : ReadRows<2>(rest, room, points);
}

void AppendTable(std::string& out, const TrackStore& tracks, int slot, int columns) {
  const auto points = static_cast<std::size_t>(tracks.PointCount(slot));
  const std::vector<double>& first = tracks.Column(0, slot);
  const std::vector<double>& second = tracks.Column(1, slot);
  const std::vector<double>& third = tracks.Column(2, slot);
  RowWriter row(out);
  for (std::size_t point = 0; point < points; ++point) {
    row.BeginRow();
    row.First(At(first, point));
    row.Further(At(second, point));
    if (columns == 3) row.Further(At(third, point));
    row.EndRow();
  }
}

}  // namespace zento
