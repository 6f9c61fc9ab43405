#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/track_file.h"
#include "text/utf8_stream.h"

namespace zento {

// Reads the headers of a track file that comes in pieces of any size, in bounded memory and about
// as fast as the bytes come. Only what stands around a "=" matters, and data tables have none, so
// they are passed over by a search for that one byte. How many points a track claims to have is not
// relied on: whatever a table holds, the result is that of reading line by line.
class TrackHeaderStream {
 public:
  // Of a longer line only so many bytes count.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20;

  // Records of numbers that the file does not have stay as they are.
  explicit TrackHeaderStream(TrackHeaders& records) : records_(records) {}

  // The file's next bytes. False once it is known to be no track file; then nothing was changed.
  bool Feed(std::string_view piece);
  // After the last piece; the records are complete then. As ReadHeaders.
  TrackFileLoad Finish();

 private:
  enum class Begin { kUnknown, kTrackFile, kForeign };
  // A text of which it is not known yet how it is encoded.
  struct Undecided {
    bool title = false;
    bool time = false;
  };

  // Looks whether the file begins as it should; `rest` becomes what was held back for that.
  void Recognize(bool complete);
  void Scan(std::string_view piece);
  // Whole lines.
  void ScanLines(std::string_view lines);
  void Keep(std::string_view piece);
  void ReadLine(std::string_view line);
  void ReadKey(std::string_view key, std::string_view value);

  TrackHeaders& records_;
  Begin begin_ = Begin::kUnknown;
  std::string line_;  // the beginning of a line that is not at its end yet
  int target_ = 0;    // -1 = none
  std::array<Undecided, kTracks> undecided_{};
  Utf8Stream utf8_;
  TrackFileLoad load_;
};

}  // namespace zento
