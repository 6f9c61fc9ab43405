#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/track.h"

namespace zento {

// The Koutecky-Levich bookkeeping that travels with track files, one element a track.
struct KouteckyLevichLists {
  std::vector<std::int16_t> KLUseFlag;  // track takes part
  std::vector<std::int32_t> KLNStart;   // first and last point of the analysed range
  std::vector<std::int32_t> KLNEnd;
  std::vector<std::int16_t> KLBaseMode;   // kind of baseline correction
  std::vector<std::int16_t> KLBaseTrack;  // track used as baseline
  std::vector<std::int32_t> KLBaseNEnd;   // last point of the baseline range
  std::vector<double> KLSubVal;           // A, subtracted from the current

  // All seven to 21 elements: shorter ones gain zeros, longer ones lose what is beyond.
  void Resize();
  friend bool operator==(const KouteckyLevichLists&, const KouteckyLevichLists&) = default;
};

// The numbered tracks: headers and points. Point access is constant-time; points beyond what a
// column holds read as 0, and writing one makes room for it.
class TrackStore {
 public:
  TrackRecord& Record(int slot) { return records_[static_cast<std::size_t>(slot)]; }
  const TrackRecord& Record(int slot) const { return records_[static_cast<std::size_t>(slot)]; }

  double Value(int column, int slot, std::int32_t point) const;
  // `point` in 0 to kMaxPoints - 1; others are ignored.
  void SetValue(int column, int slot, std::int32_t point, double value);

  // The column's stored points; may be shorter or longer than the record's pnum.
  std::vector<double>& Column(int column, int slot);
  const std::vector<double>& Column(int column, int slot) const;
  // The record's pnum, held within 0 to kMaxPoints.
  std::int32_t PointCount(int slot) const;
  // Exactly PointCount points of the column, padded with 0 where it is shorter.
  std::span<const double> Points(int column, int slot);

  // Empties the header (ne becomes 1). V, Weight, the y scales, TimeRecording, ref, pH and the
  // points stay.
  void ClearTrack(int slot);
  // All of the header but the y scales and TimeRecording.
  void CopyTrackHeader(int from, int to);
  // Columns 0 and 1 of the source's pnum points, and column 2 in modes 2, 6 and 7.
  void CopyTrackData(int from, int to);

  // Resizes the Koutecky-Levich lists and forgets what they say of empty tracks: use flag, start,
  // end, base line's end. Done after opening a file and when the analysis window opens.
  void InitializeParameters();

  KouteckyLevichLists kl;

 private:
  std::array<TrackRecord, kSlots> records_;
  std::array<std::array<std::vector<double>, kTrackColumns>, kSlots> data_;
};

}  // namespace zento
