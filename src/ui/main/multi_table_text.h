#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "ui/main/table_job.h"

namespace zento {

class TrackStore;

inline constexpr int kMultiChannels = 10;  // tracks 0 to 9

// What the first column of a multichannel table holds: the time (s) or the potential (V), both
// those of track 0.
enum class MultiTableKind { kCurrentTime, kPotentialCurrent };

// The ten channels of a multichannel record as one table: file and time of the measurement, the
// titles, then a line a point of track 0 with the currents of all channels (A).
class MultiTable : public TableJob {
 public:
  // The time of the measurement is that of `track`, one of the record's.
  MultiTable(const TrackStore& tracks, int track, std::string_view file_title, MultiTableKind kind);

 protected:
  void WriteRows(std::int32_t begin, std::int32_t end) override;

 private:
  // Of the first cell, then of the channels.
  std::array<std::vector<double>, 1 + kMultiChannels> columns_;
};

}  // namespace zento
