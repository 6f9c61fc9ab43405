#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/track_store.h"

// Changes of single points of a track, and what they have to know about the columns of tracks.

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

enum class BasicOperation { kAdd = 0, kSubtract = 1, kMultiply = 2, kDivide = 3 };

// An operation with `value` on the flagged columns of the points from `first` to `last`.
struct PointOperation {
  std::array<bool, kTrackColumns> columns{};
  BasicOperation operation = BasicOperation::kAdd;
  double value = 0;
  std::int32_t first = 0;
  std::int32_t last = -1;

  double Of(double x) const;
};

// Every result would be a finite number.
bool HasFiniteResult(TrackStore& tracks, int track, const PointOperation& operation);

// Puts the track as the operation makes it into the scratch slot 21, with a header that fits: the
// axes that were calculated with show all points, or a track in other units would leave the
// preview, and the turning points of a sweep go along with its potentials, or its cycles would not
// be found again. Those are one set for all cycles, and so stay when only some points were moved.
void CalculateInScratch(TrackStore& tracks, int track, const PointOperation& operation);

}  // namespace zento
