#include "text/codepage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "text/lines.h"

namespace zento {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kReplacementUtf8 = "\xEF\xBF\xBD";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

unsigned ByteAt(std::string_view bytes, std::size_t at) {
  return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
}

bool Between(unsigned byte, unsigned low, unsigned high) {
  return byte >= low && byte <= high;
}

// A well-formed sequence has its length in `length`. Of a malformed one, `length` counts the bytes
// that could have begun a character (at least one): they are replaced together, as browsers do.
struct Sequence {
  std::size_t length = 1;
  bool valid = false;
};

// `at` lies within the bytes. The ranges of the second byte shut out overlong forms, surrogates and
// what lies above U+10FFFF (Unicode Standard, table 3-7).
Sequence SequenceAt(std::string_view bytes, std::size_t at) {
  const unsigned first = ByteAt(bytes, at);
  if (first < 0x80) return {1, true};
  if (!Between(first, 0xC2, 0xF4)) return {1, false};
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  const unsigned low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const unsigned high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  if (!Between(ByteAt(bytes, at + 1), low, high)) return {1, false};
  for (std::size_t i = 2; i < length; ++i) {
    if (!Between(ByteAt(bytes, at + i), 0x80, 0xBF)) return {i, false};
  }
  return {length, true};
}

// Sixteen bytes at once, as every processor that the program runs on can take them.
using Sixteen = std::uint64_t __attribute__((vector_size(16)));

Sixteen SixteenAt(const char* bytes, std::size_t which) {
  Sixteen sixteen;
  std::memcpy(&sixteen, bytes + which * sizeof sixteen, sizeof sixteen);
  return sixteen;
}

// The end of the run of ASCII bytes from `at` on. Data tables are little else, so 128 at a time.
std::size_t SkipAscii(std::string_view bytes, std::size_t at) {
  constexpr std::size_t kBlock = 8 * sizeof(Sixteen);
  for (; at + kBlock <= bytes.size(); at += kBlock) {
    const char* const block = bytes.data() + at;
    const Sixteen any =
        (SixteenAt(block, 0) | SixteenAt(block, 1) | SixteenAt(block, 2) | SixteenAt(block, 3)) |
        (SixteenAt(block, 4) | SixteenAt(block, 5) | SixteenAt(block, 6) | SixteenAt(block, 7));
    if (((any[0] | any[1]) & 0x8080808080808080U) != 0) break;
  }
  for (; at + 8 <= bytes.size(); at += 8) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes.data() + at, 8);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  while (at < bytes.size() && ByteAt(bytes, at) < 0x80) ++at;
  return at;
}

// Where the first malformed sequence begins; the size when there is none.
std::size_t FindMalformed(std::string_view bytes) {
  for (std::size_t at = 0;;) {
    at = SkipAscii(bytes, at);
    if (at == bytes.size()) return at;
    const Sequence sequence = SequenceAt(bytes, at);
    if (!sequence.valid) return at;
    at += sequence.length;
  }
}

// Whether valid UTF-8 holds a character that code page 932 text would hardly show by accident: any
// but those whose two bytes are both half-width katakana there.
bool IsPlainlyUtf8(std::string_view line) {
  for (std::size_t at = SkipAscii(line, 0); at < line.size(); at = SkipAscii(line, at)) {
    const Sequence sequence = SequenceAt(line, at);
    if (sequence.length > 2 || ByteAt(line, at + 1) < 0xA1) return true;
    at += sequence.length;
  }
  return false;
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// The two-byte characters of code page 932: lead bytes 81 to 9F and E0 to FC, trail bytes 40 to 7E
// and 80 to FC.
constexpr std::size_t kTrails = 63 + 125;

bool IsLead(unsigned byte) {
  return Between(byte, 0x81, 0x9F) || Between(byte, 0xE0, 0xFC);
}
bool IsTrail(unsigned byte) {
  return Between(byte, 0x40, 0xFC) && byte != 0x7F;
}

// The units of all pairs, lead by lead; asked for when the first such text is met, and kept, as a
// call of the converter costs more than a look at a table of 22 kB.
const std::u16string& PairUnits() {
  static const std::u16string units = [] {
    std::vector<std::array<char, 2>> pairs;
    for (unsigned lead = 0; lead <= 0xFF; ++lead) {
      for (unsigned trail = 0; IsLead(lead) && trail <= 0xFF; ++trail) {
        if (IsTrail(trail)) pairs.push_back({static_cast<char>(lead), static_cast<char>(trail)});
      }
    }
    return ConvertPairs932(pairs);
  }();
  return units;
}

// Appends the character at `at`, which is not ASCII; returns its length in bytes.
std::size_t AppendCharacter932(std::string& out, std::string_view bytes, std::size_t at) {
  const unsigned byte = ByteAt(bytes, at);
  if (Between(byte, 0xA1, 0xDF)) {
    AppendUtf8(out, 0xFF61 + byte - 0xA1);
    return 1;
  }
  const unsigned trail = ByteAt(bytes, at + 1);
  if (IsLead(byte) && IsTrail(trail)) {
    const std::u16string& units = PairUnits();
    const std::size_t row = byte < 0xA0 ? byte - 0x81 : byte - 0xE0 + 31;
    const std::size_t at_pair = row * kTrails + trail - (trail < 0x7F ? 0x40 : 0x41);
    const char32_t c = units.empty() ? kReplacement : units[at_pair];
    if (c != kReplacement || units.empty()) {
      AppendUtf8(out, c);
      return 2;
    }
  }
  out += kReplacementUtf8;
  return 1;
}

void AppendCodePage932(std::string& out, std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t ascii_end = SkipAscii(bytes, at);
    out.append(bytes, at, ascii_end - at);
    at = ascii_end;
    if (at < bytes.size()) at += AppendCharacter932(out, bytes, at);
  }
}

// Whether a line of a file that is not all UTF-8 still is; so is a last one cut off in a character.
bool IsUtf8Line(std::string_view line) {
  const std::size_t good = FindMalformed(line);
  const bool whole = good == line.size() || good + SequenceAt(line, good).length == line.size();
  return whole && IsPlainlyUtf8(line.substr(0, good));
}

// As spreadsheets save "Unicode text". A lone surrogate becomes U+FFFD, a last odd byte as well.
std::string DecodeUtf16(std::string_view bytes, bool low_byte_first) {
  const auto unit = [&](std::size_t at) -> char32_t {
    const unsigned first = ByteAt(bytes, at), second = ByteAt(bytes, at + 1);
    return low_byte_first ? second << 8 | first : first << 8 | second;
  };
  std::string out;
  out.reserve(bytes.size() / 2 + bytes.size() / 8);
  std::size_t at = 0;
  for (; at + 1 < bytes.size(); at += 2) {
    char32_t c = unit(at);
    const bool high = c >= 0xD800 && c < 0xDC00;
    const char32_t low = high && at + 3 < bytes.size() ? unit(at + 2) : 0;
    if (low >= 0xDC00 && low < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
      at += 2;
    } else if (c >= 0xD800 && c < 0xE000) {
      c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  if (at < bytes.size()) out += kReplacementUtf8;
  return out;
}

// The length of a character that begins with this byte.
std::size_t LengthAfter(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// How many bytes at the end begin a character without ending it.
std::size_t CutOff(std::string_view piece) {
  constexpr std::size_t kMost = 3;
  for (std::size_t count = 1; count <= std::min(kMost, piece.size()); ++count) {
    const char first = piece[piece.size() - count];
    const bool begins = (static_cast<unsigned char>(first) & 0xC0U) != 0x80U;
    if (begins) return LengthAfter(first) > count ? count : 0;
  }
  return 0;
}

}  // namespace

bool IsValidUtf8(std::string_view bytes) {
  return FindMalformed(bytes) == bytes.size();
}

std::string MakeValidUtf8(std::string_view bytes) {
  std::string out;
  for (;;) {
    const std::size_t good = FindMalformed(bytes);
    out.append(bytes, 0, good);
    if (good == bytes.size()) return out;
    out += kReplacementUtf8;
    bytes.remove_prefix(good + SequenceAt(bytes, good).length);
  }
}

void Utf8Stream::Feed(std::string_view piece) {
  while (valid_ && !piece.empty() && !tail_.empty()) {
    tail_ += piece.front();
    piece.remove_prefix(1);
    if (tail_.size() >= LengthAfter(tail_.front())) {
      valid_ = IsValidUtf8(tail_);
      tail_.clear();
    }
  }
  if (!valid_ || piece.empty()) return;
  const std::size_t whole = piece.size() - CutOff(piece);
  valid_ = IsValidUtf8(piece.substr(0, whole));
  tail_ = piece.substr(whole);
}

std::string DecodeCodePage932(std::string_view bytes) {
  std::string out;
  AppendCodePage932(out, bytes);
  return out;
}

std::string DecodeMixed(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
    const std::string_view line = bytes.substr(0, end);
    if (IsUtf8Line(line)) {
      out += MakeValidUtf8(line);
    } else {
      AppendCodePage932(out, line);
    }
    bytes.remove_prefix(end);
  }
  return out;
}

std::string DecodeFile(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return DecodeUtf16(bytes.substr(2), true);
  if (bytes.starts_with("\xFE\xFF")) return DecodeUtf16(bytes.substr(2), false);
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return IsValidUtf8(bytes) ? std::string(bytes) : DecodeMixed(bytes);
}

std::string EncodeText(std::string_view text) {
  std::string bytes = MakeValidUtf8(text);
  // One mark at the front is dropped when the file is read.
  if (bytes.starts_with(kByteOrderMark)) bytes.insert(0, kByteOrderMark);
  return bytes;
}

}  // namespace zento
