#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>
#include <variant>

#include "core/track_file.h"
#include "core/track_header.h"
#include "core/track_store.h"
#include "text/codepage.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

struct Vertex {
  std::size_t index;
};
using R = TrackRecord;
using Field = std::variant<std::int32_t R::*, double R::*, std::string R::*, Vertex>;

struct Key {
  std::string_view name;
  Field field;
};

// In the order of the file.
constexpr Key kWritten[] = {
    {"Mode", &R::Mode},
    {"Title", &R::Title},
    {"MeasTime", &R::MeasTime},
    {"Scanrate", &R::Scanrate},
    {"V1st", Vertex{0}},
    {"V2nd", Vertex{1}},
    {"V3rd", Vertex{2}},
    {"Vxmax", &R::Vxmax},
    {"Vymax", &R::Vymax},
    {"Vxmin", &R::Vxmin},
    {"Vymin", &R::Vymin},
    {"MaxTime", &R::MaxTime},
    {"RingXValue", &R::RingXValue},
    {"RPM", &R::RPM},
    {"pnum", &R::pnum},
    {"Conc", &R::Conc},
    {"Area", &R::Area},
    {"Weight", &R::Weight},
    {"ref", &R::ref},
    {"ne", &R::ne},
    {"DiskYscale", &R::DiskYscale},
    {"RingYscale", &R::RingYscale},
    {"TimeRecording", &R::TimeRecording},
    {"pH", &R::pH},
};
// Understood, but not written.
constexpr Key kReadOnly[] = {{"VoltStep", &R::VoltStep}, {"StepTime", &R::StepTime}};

const Key* FindKey(std::string_view name) {
  const auto matches = [&](const Key& key) { return key.name == name; };
  if (const Key* key = std::find_if(std::begin(kWritten), std::end(kWritten), matches);
      key != std::end(kWritten)) {
    return key;
  }
  const Key* key = std::find_if(std::begin(kReadOnly), std::end(kReadOnly), matches);
  return key != std::end(kReadOnly) ? key : nullptr;
}

// The field as an lvalue, of a const or a changeable record.
template <typename Record, typename Visitor>
void VisitField(Record& record, const Field& field, Visitor visitor) {
  std::visit(
      [&](auto member) {
        if constexpr (std::is_same_v<decltype(member), Vertex>) {
          visitor(record.V[member.index]);
        } else {
          visitor(record.*member);
        }
      },
      field);
}

struct Setter {
  std::string_view value;
  void operator()(std::string& field) const { field = value; }
  void operator()(double& field) const { field = ParseLenient(value); }
  void operator()(std::int32_t& field) const { field = ToLong(ParseLenient(value)); }
};

struct Writer {
  std::string& out;
  void operator()(const std::string& field) const { out += MakeValidUtf8(OneLine(field)); }
  void operator()(double field) const { out += SignedNumber(field); }
  void operator()(std::int32_t field) const { out += SignedNumber(field); }
};

}  // namespace

void ApplyTrackKey(TrackRecord& record, std::string_view key, std::string_view value) {
  const Key* found = FindKey(key);
  if (found == nullptr) return;
  VisitField(record, found->field, Setter{value});
  record.pnum = std::clamp(record.pnum, 0, kMaxPoints);
}

void AppendTrackHeader(std::string& out, int number, const TrackRecord& record) {
  out.append("DataNum=").append(SignedNumber(number)).append("\r\n");
  for (const Key& key : kWritten) {
    out.append(key.name).append("=");
    VisitField(record, key.field, Writer{out});
    out += "\r\n";
  }
}

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view WithoutMark(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return bytes;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

TrackFileLines::TrackFileLines(std::string_view bytes)
    : bytes_(WithoutMark(bytes)), lines_(bytes_) {
  // A large file of another kind may be a single line.
  if (!bytes_.starts_with(kTrackFileSignature)) {
    lines_ = LineReader({});
    return;
  }
  std::string_view line;
  recognized_ = lines_.Next(line) && line == kTrackFileSignature;
  if (!recognized_) lines_ = LineReader({});
}

TrackFileLines::Kind TrackFileLines::Next() {
  for (std::string_view line; lines_.Next(line);) {
    if (line == "Table") return Kind::kTable;
    const std::size_t equals = line.find('=');
    if (equals == 0 || equals == line.npos) continue;
    key_ = line.substr(0, equals);
    value_ = line.substr(equals + 1);
    return Kind::kKey;
  }
  return Kind::kEnd;
}

std::string TrackFileLines::Text() {
  if (IsAscii(value_)) return std::string(value_);
  if (encoding_ == Encoding::kUnknown) {
    encoding_ = IsValidUtf8(bytes_) ? Encoding::kUtf8 : Encoding::kMixed;
  }
  if (encoding_ == Encoding::kUtf8) return std::string(value_);
  // With its line end, because the end of a file may be cut off in a character.
  std::string text = DecodeMixed(std::string(value_) + "\n");
  text.pop_back();
  return text;
}

std::int32_t TrackFileLines::Number() const {
  return ToLong(ParseLenient(value_));
}

namespace {

constexpr std::string_view kLineEnds = "\r\n";
// Longer than any key; what stands before a "=" so far into a line is none.
constexpr std::size_t kLongestKey = 32;

// The first line end from `from` on, which need not be there. (find_first_of looks up a set for
// every byte.)
std::size_t FindLineEnd(std::string_view text, std::size_t from = 0) {
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(from);
  const auto end = std::find_if(begin, text.end(), [](char c) { return c == '\n' || c == '\r'; });
  return end == text.end() ? text.npos : static_cast<std::size_t>(end - text.begin());
}

// A text of a file that is not UTF-8 as a whole.
void Decode(std::string& text) {
  // With its line end, because the end of a file may be cut off in a character.
  text = DecodeMixed(text + "\n");
  text.pop_back();
}

}  // namespace

bool TrackHeaderStream::Feed(std::string_view piece) {
  if (begin_ == Begin::kUnknown) {
    // The first line and the byte behind it, with a mark in front.
    constexpr std::size_t kEnough = kByteOrderMark.size() + kTrackFileSignature.size() + 1;
    const std::size_t taken = std::min(piece.size(), kEnough - line_.size());
    line_.append(piece.substr(0, taken));
    piece.remove_prefix(taken);
    if (line_.size() == kEnough) Recognize(false);
  }
  if (begin_ == Begin::kTrackFile) Scan(piece);
  return begin_ != Begin::kForeign;
}

void TrackHeaderStream::Recognize(bool complete) {
  std::string held = std::exchange(line_, {});
  std::string_view head = held;
  if (head.starts_with(kByteOrderMark)) head.remove_prefix(kByteOrderMark.size());
  const std::string_view behind =
      head.substr(std::min(head.size(), kTrackFileSignature.size())).substr(0, 1);
  const bool ended = behind.empty() ? complete : kLineEnds.find(behind) != kLineEnds.npos;
  const bool ours = head.starts_with(kTrackFileSignature) && ended;
  begin_ = ours ? Begin::kTrackFile : Begin::kForeign;
  if (ours) Scan(head);
}

TrackFileLoad TrackHeaderStream::Finish() {
  if (begin_ == Begin::kUnknown) Recognize(true);
  if (begin_ == Begin::kForeign) {
    return {TrackFileLoad::Outcome::kNotRecognized, Status::Failure("not a track file"), {}};
  }
  ReadLine(std::exchange(line_, {}));
  const bool utf8 = utf8_.Finish();
  for (std::size_t track = 0; track < records_.size() && !utf8; ++track) {
    if (undecided_[track].title) Decode(records_[track].Title);
    if (undecided_[track].time) Decode(records_[track].MeasTime);
  }
  return std::move(load_);
}

void TrackHeaderStream::Scan(std::string_view piece) {
  utf8_.Feed(piece);
  if (!line_.empty()) {
    const std::size_t end = FindLineEnd(piece);
    Keep(piece.substr(0, end));
    if (end == piece.npos) return;
    ReadLine(line_);
    line_.clear();
    piece.remove_prefix(end);
  }
  const std::size_t last = piece.find_last_of(kLineEnds);
  const std::size_t whole = last == piece.npos ? 0 : last + 1;
  ScanLines(piece.substr(0, whole));
  Keep(piece.substr(whole));
}

void TrackHeaderStream::Keep(std::string_view piece) {
  line_.append(piece.substr(0, kLongestLine - line_.size()));
}

void TrackHeaderStream::ScanLines(std::string_view lines) {
  while (!lines.empty()) {
    const void* found = std::memchr(lines.data(), '=', lines.size());
    if (found == nullptr) return;
    const auto equals = static_cast<std::size_t>(static_cast<const char*>(found) - lines.data());
    // The line's beginning, or so much before the "=" that there is no key.
    const std::size_t nearest = equals - std::min(equals, kLongestKey);
    const std::size_t before = lines.substr(nearest, equals - nearest).find_last_of(kLineEnds);
    const std::size_t begin = before == lines.npos ? nearest : nearest + before + 1;
    const std::size_t end = FindLineEnd(lines, equals);
    const bool has_key = before != lines.npos || nearest == 0;
    if (has_key) ReadLine(lines.substr(begin, std::min(end - begin, kLongestLine)));
    lines.remove_prefix(end);
  }
}

void TrackHeaderStream::ReadLine(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == 0 || equals == line.npos) return;
  ReadKey(line.substr(0, equals), line.substr(equals + 1));
}

void TrackHeaderStream::ReadKey(std::string_view key, std::string_view value) {
  if (key == "DataNum") {
    const std::int32_t number = ToLong(ParseLenient(value));
    target_ = number >= 0 && number < kTracks ? number : -1;
    if (target_ < 0) RemarkTrackPassedOver(load_, number);
  }
  if (target_ < 0) return;
  const auto track = static_cast<std::size_t>(target_);
  ApplyTrackKey(records_[track], key, value);
  if (key == "Title") undecided_[track].title = !IsAscii(value);
  if (key == "MeasTime") undecided_[track].time = !IsAscii(value);
}

}  // namespace zento
