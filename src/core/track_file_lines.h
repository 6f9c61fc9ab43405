#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/lines.h"

namespace zento {

// Walks the header lines of a track file; whoever meets a table reads it from rest().
class TrackFileLines {
 public:
  enum class Kind { kKey, kTable, kEnd };

  explicit TrackFileLines(std::string_view bytes);

  // Whether the first line is the signature. Without it there are no lines.
  bool recognized() const { return recognized_; }

  // Goes to the next line that is a key's or begins a table; others are passed over.
  Kind Next();
  std::string_view key() const { return key_; }
  // As in the file.
  std::string_view value() const { return value_; }
  // The value as text.
  std::string Text();
  // The value as a whole number.
  std::int32_t Number() const;

  std::string_view rest() const { return lines_.rest(); }
  void Continue(std::string_view rest) { lines_ = LineReader(rest); }

 private:
  std::string_view bytes_;
  LineReader lines_;
  bool recognized_ = false;
  enum class Encoding { kUnknown, kUtf8, kMixed };
  Encoding encoding_ = Encoding::kUnknown;  // looked into when a text first needs it
  std::string_view key_;
  std::string_view value_;
};

}  // namespace zento
