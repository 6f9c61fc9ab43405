#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/track.h"
#include "core/track_file.h"
#include "text/codepage.h"
#include "text/lines.h"

// The header lines of a track in a track file, "key=value".

namespace zento {

// Sets the field that the key names; unknown keys are ignored. Numbers are read leniently, integers
// rounded to nearest (halves to even). A number of points outside what a track can hold becomes the
// nearest that it can. Text is taken as it is: UTF-8 is the caller's business.
void ApplyTrackKey(TrackRecord& record, std::string_view key, std::string_view value);

// Appends the header lines of the track numbered `number`, without StepTime and VoltStep, in the
// order of the file, ended by CR LF. Line breaks in texts become blanks.
void AppendTrackHeader(std::string& out, int number, const TrackRecord& record);

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
