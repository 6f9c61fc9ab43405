#pragma once

#include <cstddef>
#include <string_view>

// The order in which a person looks for names.

namespace zento {

namespace natural {

inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

inline unsigned char Folded(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

// The run of digits at the beginning, without its leading zeros, is taken off the text.
inline std::string_view TakeDigits(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && IsDigit(text[end])) ++end;
  std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
  return digits;
}

}  // namespace natural

// Whether `a` stands before `b`: upper and lower case of a to z alike, runs of digits by their
// value, so that "run 2" stands before "Run 10". Names that are alike so far stand in the order of
// their bytes. A strict weak order.
inline bool NaturalLess(std::string_view a, std::string_view b) {
  std::string_view left = a;
  std::string_view right = b;
  while (!left.empty() && !right.empty()) {
    if (natural::IsDigit(left.front()) && natural::IsDigit(right.front())) {
      const std::string_view x = natural::TakeDigits(left);
      const std::string_view y = natural::TakeDigits(right);
      if (x.size() != y.size()) return x.size() < y.size();
      if (x != y) return x < y;
      continue;
    }
    const unsigned char x = natural::Folded(left.front());
    const unsigned char y = natural::Folded(right.front());
    if (x != y) return x < y;
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  if (left.empty() != right.empty()) return left.empty();
  return a < b;
}

}  // namespace zento
