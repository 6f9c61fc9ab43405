// Any bytes as a number, a list, a format pattern, a file's text.

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "text/codepage.h"
#include "text/format.h"
#include "text/lines.h"
#include "text/number.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void CheckParsing(std::string_view text) {
  const double lenient = zento::ParseLenient(text);
  Require(std::isfinite(lenient));
  if (const auto strict = zento::ParseStrict(text)) Require(SameBits(*strict, lenient));
  double parsed = 0;
  const char* const last = text.data() + text.size();
  const char* const end = zento::ParseNumber(text.data(), last, parsed);
  double standard = 0;
  const auto result = std::from_chars(text.data(), last, standard);
  if (result.ec == std::errc() && std::isfinite(standard)) {
    Require(end == result.ptr && SameBits(parsed, standard));
  }
  Require(zento::SplitDoubles(text).size() == zento::SplitLongs(text).size());
}

void CheckWriting(double value, std::string_view pattern) {
  const std::string plain = zento::PlainNumber(value);
  const std::string sign = zento::SignedNumber(value);
  Require(zento::ParseStrict(plain) == zento::ParseStrict(sign));
  const std::string formatted = zento::Format(value, pattern);
  if (!std::isfinite(value)) return;
  Require(zento::ParseStrict(plain) == value);
  Require(formatted.size() <= pattern.size() + 400);
  char room[zento::kLongestFixed4];
  Require(std::string(room, zento::WriteFixed4(room, value)) == zento::Format(value, "0.0000"));
  Require(std::string(room, zento::WriteScientific(room, value)) ==
          zento::Format(value, "0.0###e+0"));
}

void CheckText(std::string_view bytes) {
  const std::string text = zento::DecodeFile(bytes);
  Require(zento::IsValidUtf8(text));
  Require(text.size() <= 3 * bytes.size());
  Require(zento::DecodeFile(zento::EncodeText(text)) == text);
  if (zento::IsValidUtf8(bytes)) {
    Require(zento::DecodeFile(zento::EncodeText(bytes)) == bytes);
  }
  zento::LineReader reader(bytes);
  std::size_t characters = 0;
  for (std::string_view line; reader.Next(line);) {
    Require(line.find_first_of("\r\n") == line.npos);
    characters += line.size() + 1;
  }
  Require(characters <= bytes.size() + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  CheckParsing(bytes);
  CheckText(bytes);
  double value = 0;
  if (size >= sizeof value) {
    std::memcpy(&value, bytes.data(), sizeof value);
    CheckWriting(value, std::string_view(bytes).substr(sizeof value));
  }
  CheckWriting(zento::ParseLenient(bytes), bytes);
  return 0;
}
