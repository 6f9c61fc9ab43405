#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/status.h"

// The data tables of track files: one line a point, the columns separated by tabs. The hot path of
// opening and saving.

namespace zento {

struct TrackRecord;
class TrackStore;

// Columns that the file's table has, and those of them that a reader keeps: a sweep of the rotation
// rate has its third one written always, but means it only with TimeRecording. `multi_time`: the
// track is track 0 of a multichannel record, which carries the time for all channels.
int WrittenColumns(const TrackRecord& record, bool multi_time);
int KeptColumns(const TrackRecord& record, bool multi_time);

struct TableRead {
  std::int32_t points = 0;  // complete lines, now in the store
  Status status;            // a line that is not a point's: the table was left there
};

// Reads at most `points` lines from the front of `rest` into the first `columns` columns of the
// slot, from point 0 on, and moves `rest` behind them. Further cells of a line are passed over.
// Does not make room for more points than `rest` can hold.
TableRead ReadTable(std::string_view& rest, TrackStore& tracks, int slot, std::int32_t points,
                    int columns);

// Appends the first `columns` columns of the track's points.
void AppendTable(std::string& out, const TrackStore& tracks, int slot, int columns);

}  // namespace zento
