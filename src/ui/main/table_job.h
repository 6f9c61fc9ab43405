#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace zento {

// A table for the clipboard that is written piece by piece, so that a window can show how far it
// is. It works on a copy of the points: what happens to the track meanwhile does not show.
class TableJob {
 public:
  virtual ~TableJob() = default;

  // Writes up to `points` further points; false when the table is complete.
  bool Continue(std::int32_t points) {
    const std::int32_t end = position_ + std::min(points, total_ - position_);
    if (end > position_) WriteRows(position_, end);
    position_ = end;
    return position_ < total_;
  }
  // How many points are written, and of how many.
  std::int32_t position() const { return position_; }
  std::int32_t total() const { return total_; }

  std::string text;

 protected:
  // Appends the rows of the points `begin` to `end` - 1.
  virtual void WriteRows(std::int32_t begin, std::int32_t end) = 0;

  std::int32_t total_ = 0;

 private:
  std::int32_t position_ = 0;
};

// Collects rows and hands them on in large pieces. `kLongestRow` is the room a row may need.
template <std::size_t kLongestRow>
class RowBlock {
 public:
  explicit RowBlock(std::string& out) : out_(out) {}
  ~RowBlock() { Flush(); }
  RowBlock(const RowBlock&) = delete;
  RowBlock& operator=(const RowBlock&) = delete;

  // Where the next row begins.
  char* Begin() {
    if (at_ > block_.data() + block_.size() - kLongestRow) Flush();
    return at_;
  }
  // `at` is where the row ends.
  void End(char* at) {
    *at++ = '\r';
    *at++ = '\n';
    at_ = at;
  }

 private:
  void Flush() {
    out_.append(block_.data(), static_cast<std::size_t>(at_ - block_.data()));
    at_ = block_.data();
  }

  std::string& out_;
  std::array<char, 4096 + kLongestRow> block_;
  char* at_ = block_.data();
};

}  // namespace zento
