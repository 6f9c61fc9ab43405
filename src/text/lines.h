#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace zento {

// Gives the lines of a text one after another without copying; the text must outlive them. A line
// ends at CR LF, at a lone LF or at a lone CR; CR CR LF, as a file has that was converted once too
// often, is one line end too. A last line without an end counts, the nothing behind the last line
// end does not. Linear in the size of the text.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : rest_(text) {}

  // Sets `line` to the next line, without its end; false when there is none left.
  bool Next(std::string_view& line) {
    if (rest_.empty()) return false;
    // Where the next LF is stays known while lone CRs before it cut lines.
    if (to_line_feed_ == kUnknown) to_line_feed_ = std::min(rest_.find('\n'), rest_.size());
    const std::size_t cr = rest_.substr(0, to_line_feed_).find('\r');
    if (cr == rest_.npos) {
      line = rest_.substr(0, to_line_feed_);
      Consume(to_line_feed_ + 1);
      return true;
    }
    line = rest_.substr(0, cr);
    const bool doubled = cr + 2 == to_line_feed_ && rest_[cr + 1] == '\r';
    const bool with_line_feed =
        to_line_feed_ < rest_.size() && (cr + 1 == to_line_feed_ || doubled);
    Consume(with_line_feed ? to_line_feed_ + 1 : cr + 1);
    return true;
  }

  // What has not been read yet.
  std::string_view rest() const { return rest_; }

 private:
  static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

  void Consume(std::size_t count) {
    to_line_feed_ = count > to_line_feed_ ? kUnknown : to_line_feed_ - count;
    rest_.remove_prefix(std::min(count, rest_.size()));
  }

  std::string_view rest_;
  std::size_t to_line_feed_ = kUnknown;
};

// The value of a key is one line, whatever a person or another program put into the text: line
// breaks become blanks.
inline std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return text;
}

}  // namespace zento
