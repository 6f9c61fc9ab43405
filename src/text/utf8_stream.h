#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "text/codepage.h"

namespace zento {

// IsValidUtf8 of a text that comes in pieces of any size.
class Utf8Stream {
 public:
  void Feed(std::string_view piece) {
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
  // Whether all of it was.
  bool Finish() const { return valid_ && tail_.empty(); }

 private:
  static std::size_t LengthAfter(char first) {
    const auto byte = static_cast<unsigned char>(first);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
  }
  // Bytes at the end that begin a character without ending it.
  static std::size_t CutOff(std::string_view piece) {
    constexpr std::size_t kMost = 3;
    for (std::size_t count = 1; count <= std::min(kMost, piece.size()); ++count) {
      const char first = piece[piece.size() - count];
      const bool begins = (static_cast<unsigned char>(first) & 0xC0U) != 0x80U;
      if (begins) return LengthAfter(first) > count ? count : 0;
    }
    return 0;
  }

  bool valid_ = true;
  std::string tail_;
};

}  // namespace zento
