#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zento {

class TrackStore;

struct Pasted {
  std::int32_t points = 0;    // now in the track
  std::int32_t left_out = 0;  // lines of points that a track has no room for
  bool has_mode = false;      // the track has a mode; without one it counts as empty
};

// Rebuilds a track from a tab-separated table, as TrackInfoText and DataTableText write it and as
// spreadsheets put it on the clipboard: lines end in CR LF, LF or CR, the last one may have no end;
// a cell without a point that is a number with one comma has it as its decimal point.
//
// Lines of the header block replace the track's fields, all others keep their values but V1st to
// V3rd and the points, which begin anew. A line whose first cell is a number is a point; its second
// and third cell are read leniently, and a missing one is 0. The display range is that of the
// points, though at least down to 10 and up to -10, and unless V2nd or V3rd are given, the vertices
// are where the first column changes its direction. Both are left alone when the track has no mode.
Pasted PasteText(std::string_view text, TrackStore& tracks, int track);

// What became of it, for a person.
std::string PasteNotice(const Pasted& pasted, int track);

}  // namespace zento
