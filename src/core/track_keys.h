#pragma once

#include <string>
#include <string_view>

#include "core/track.h"

// The header lines of a track in a track file, "key=value".

namespace zento {

// Sets the field that the key names; unknown keys are ignored. Numbers are read leniently, integers
// rounded to nearest (halves to even). A number of points outside what a track can hold becomes the
// nearest that it can. Text is taken as it is: UTF-8 is the caller's business.
void ApplyTrackKey(TrackRecord& record, std::string_view key, std::string_view value);

// Appends the header lines of the track numbered `number`, without StepTime and VoltStep, in the
// order of the file, ended by CR LF. Line breaks in texts become blanks.
void AppendTrackHeader(std::string& out, int number, const TrackRecord& record);

}  // namespace zento
