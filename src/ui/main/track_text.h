#pragma once

#include <string>
#include <string_view>

namespace zento {

class TrackStore;

// The header block of a track for the clipboard, a label, a tab and a value a line, each line ended
// by CR LF; "No Data" alone for an empty track. `file_title` is that of the opened track file.
std::string TrackInfoText(const TrackStore& tracks, int track, std::string_view file_title);

// A text as a cell of a tab-separated table: line breaks and tabs become blanks.
std::string CellText(std::string text);

}  // namespace zento
