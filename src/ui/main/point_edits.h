#pragma once

#include <cstdint>
#include <vector>

// What editing single points has to know about the columns of tracks.

namespace zento {

class TrackStore;

// How many of the three columns hold what belongs to the track and is saved with it; 0 for an empty
// track.
int HeldColumns(const TrackStore& tracks, int track);

// The track, and those that have to lose the same points: the channels of a multichannel record
// share one column of times, so that a point taken from one alone would move its times against its
// currents.
std::vector<int> TracksOfRecord(const TrackStore& tracks, int track);

// Sets one value. A time of a multichannel record counts for all its channels.
void SetPoint(TrackStore& tracks, int track, int column, std::int32_t point, double value);

// Takes the points whose flag is set out of all three columns, and shortens the track. As many
// flags as the track has points.
void RemovePoints(TrackStore& tracks, int track, const std::vector<char>& goes);

}  // namespace zento
