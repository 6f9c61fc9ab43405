#include "core/track_file_lines.h"

#include <algorithm>
#include <cstddef>

#include "core/track_file.h"
#include "text/codepage.h"
#include "text/number.h"

namespace zento {
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

}  // namespace zento
