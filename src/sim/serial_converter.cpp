#include "sim/serial_converter.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace zento::sim {
namespace {

constexpr std::size_t kLongest = 4096;  // bytes of a line or a text; a real one has less memory

// The whole of `text` as a number, or -1.
int WholeNumber(std::string_view text) {
  int value = -1;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end ? value : -1;
}

}  // namespace

void SerialConverter::Receive(std::string_view bytes) {
  while (!bytes.empty()) {
    if (expected_ > 0) {
      const std::size_t taken = std::min(expected_, bytes.size());
      pending_ += bytes.substr(0, taken);
      bytes.remove_prefix(taken);
      expected_ -= taken;
      if (expected_ == 0) EndText();
      continue;
    }
    const char byte = bytes.front();
    bytes.remove_prefix(1);
    if (byte == '\r' || byte == '\n') {
      EndLine();
    } else if (pending_.size() < kLongest) {
      pending_ += byte;
    }
  }
}

void SerialConverter::EndLine() {
  const std::string line = std::exchange(pending_, {});
  constexpr std::string_view kWrite = "WRT #";
  const std::size_t comma = line.find(',');
  if (!line.starts_with(kWrite) || comma == std::string::npos || comma < kWrite.size()) return;
  const std::string_view view = line;
  const int count = WholeNumber(view.substr(kWrite.size(), comma - kWrite.size()));
  address_ = WholeNumber(view.substr(comma + 1));
  if (count > 0 && static_cast<std::size_t>(count) <= kLongest && address_ >= 0) {
    expected_ = static_cast<std::size_t>(count);
  }
}

void SerialConverter::EndText() {
  const std::string text = std::exchange(pending_, {});
  std::string_view view = text;
  while (view.ends_with('\r') || view.ends_with('\n')) view.remove_suffix(1);
  if (!view.empty()) talk_(address_, view);
}

}  // namespace zento::sim
