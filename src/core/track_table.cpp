#include "core/track_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/tables.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// The rows of data tables as this program writes them, read without a check for the end of the text
// at every byte: a text that ends in a line feed ends every run of digits by itself. Whatever looks
// different in any way (blanks, other forms of numbers, more digits than a double holds exactly) is
// left to the general reader, which gives the same values.

// Rows that begin before this may be read plainly; null when none may. Eight bytes behind it can
// still be read.
const char* PlainEnd(std::string_view text) {
  if constexpr (std::endian::native != std::endian::little) return nullptr;
  constexpr std::size_t kReadAhead = 8;
  constexpr std::size_t kLooked =
      4096;  // a text without line feeds is not searched from end to end
  text.remove_suffix(std::min(text.size(), kReadAhead));
  const std::string_view tail = text.substr(text.size() - std::min(text.size(), kLooked));
  const std::size_t feed = tail.rfind('\n');
  return feed == tail.npos ? nullptr : tail.data() + feed + 1;
}

namespace plain {

bool IsDigit(char c) {
  return static_cast<unsigned char>(c - '0') < 10;
}

// Powers of ten that a double holds exactly.
constexpr int kLargestPower = 22;
constexpr double kPower[kLargestPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr int kMostFraction = 8;
constexpr std::uint64_t kWholePower[kMostFraction + 1] = {
    1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000, 100'000'000};

// How many of the eight bytes, of which the first is the lowest, are digits before another byte
// comes. `eight` has "0" subtracted from each byte by exclusive or.
int CountDigits(std::uint64_t eight) {
  // A byte above 9 sets its highest bit, by itself or by the sum; sums do not reach the next byte
  // before the first of them.
  const std::uint64_t others = ((eight + 0x7676767676767676u) | eight) & 0x8080808080808080u;
  return std::countr_zero(others) / 8;
}

// The number that eight digits form: pairs, then fours, then all, each step in all places at once.
std::uint64_t JoinDigits(std::uint64_t eight) {
  eight = (eight * 10 + (eight >> 8)) & 0x00FF00FF00FF00FFu;
  eight = (eight * 100 + (eight >> 16)) & 0x0000FFFF0000FFFFu;
  return (eight * 10000 + (eight >> 32)) & 0xFFFFFFFFu;
}

// One to eight digits behind the point, all at once. Their count; 0 when it is another one.
int ReadFraction(const char* p, std::uint64_t& digits) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, p, sizeof eight);
  eight ^= 0x3030303030303030u;
  const int count = CountDigits(eight);
  if (count == 0) return 0;
  digits = JoinDigits(eight << (64 - 8 * count));
  return count == kMostFraction && IsDigit(p[kMostFraction]) ? 0 : count;
}

// "-d.ddd" or "-d.ddde-d"; null when it is of another form. The digits fit 53 bits and the power of
// ten is exact, so one operation rounds once and correctly (Clinger 1990).
const char* ReadNumber(const char* p, double& value) {
  const bool negative = *p == '-';
  p += negative;
  const char* const first = p;
  std::uint64_t digits = 0;
  for (; IsDigit(*p); ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  constexpr std::ptrdiff_t kMostWhole = 7;  // 15 digits with the fraction
  if (p == first || p - first > kMostWhole || *p != '.') return nullptr;
  std::uint64_t fraction = 0;
  const int count = ReadFraction(++p, fraction);
  if (count == 0) return nullptr;
  std::ptrdiff_t power = 0;
  // Most numbers have four. Guessing that lets the next number begin before this one's end is
  // known.
  if (count == 4) {
    digits = digits * 10000 + fraction;
    p += 4;
    power = -4;
  } else {
    digits = digits * kWholePower[count] + fraction;
    p += count;
    power = -count;
  }
  if (*p == 'e') {
    const bool below = p[1] == '-';
    // As this program writes it, so that the length does not wait for the byte.
    if (!below && p[1] != '+') return nullptr;
    p += 2;
    if (!IsDigit(*p)) return nullptr;
    std::ptrdiff_t exponent = *p++ - '0';
    if (IsDigit(*p)) exponent = exponent * 10 + (*p++ - '0');
    power += below ? -exponent : exponent;
    if (power < -kLargestPower || power > kLargestPower) return nullptr;
  }
  const auto whole = static_cast<double>(static_cast<std::int64_t>(digits));
  const double magnitude = power < 0 ? whole / kPower[-power] : whole * kPower[power];
  value = negative ? -magnitude : magnitude;
  return p;
}

}  // namespace plain

// Numbers separated by single tabs, CR LF or LF behind the last; returns the position behind it, or
// null when the row looks different.
template <std::size_t kCount>
const char* ReadPlainRow(const char* p, const char* plain_end, std::array<double, kCount>& row) {
  if (p >= plain_end) return nullptr;
  for (std::size_t column = 0; column < kCount; ++column) {
    if (column > 0 && *p++ != '\t') return nullptr;
    p = plain::ReadNumber(p, row[column]);
    if (p == nullptr) return nullptr;
  }
  if (*p == '\r') ++p;
  return *p == '\n' ? p + 1 : nullptr;
}

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
