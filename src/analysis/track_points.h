#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/track_store.h"
#include "graph/preview_plot.h"
#include "host/controls.h"

namespace zento {

class TrackStore;

// What the windows tell of one point of a track of mode `mode`: "E:0.2500V   I:1.0000e-5A", with
// "t:" in s for potential steps, "rpm:" for rotation-rate sweeps. Empty in other modes.
std::string PointText(std::int32_t mode, double x, double current);
// The same for a point of a track; empty for a point that the track does not have.
std::string PointText(const TrackStore& tracks, int track, std::int32_t point);

// What a track has and how far it goes; empty slots have no points.
bool HoldsTrack(const TrackStore& tracks, int track);

// How long a track took, in ms; 0 when nobody can know. MaxTime where there is one. Tracks that
// came through the clipboard or from elsewhere have none: sweeps went their way at the scan rate,
// and potential steps have the time as x.
double TrackTime(TrackStore& tracks, int track);
// The same by x alone, whatever MaxTime says: that of a sweep is the planned one, also when it was
// stopped before.
double TrackTimeByX(TrackStore& tracks, int track);

// For a track with a column of times, which CopyTrackHeader and CopyTrackData do not copy in all
// modes: copies that column, and whether there is one, so that the target does not keep another
// track's. Does nothing for other modes.
void CopyTimeColumn(TrackStore& tracks, int from, int to);

// Writes `values` over the first points of a column and makes it long enough; pnum stays.
void PutPoints(TrackStore& tracks, int column, int slot, std::span<const double> values);

// The points of a track as they were once, to see whether they still are.
class KeptPoints {
 public:
  // Its first `columns` columns.
  void Keep(TrackStore& tracks, int track, int columns = kTrackColumns);
  // So many points as then, with the same values; one NaN is as good as another.
  bool AreStill(TrackStore& tracks, int track) const;
  const std::vector<double>& Column(int column) const {
    return columns_[static_cast<std::size_t>(column)];
  }

 private:
  std::vector<std::vector<double>> columns_;
};

// What most windows show of a track's header; of an empty slot that its mode is "None".
void ShowTrackHeader(const TrackStore& tracks, int track, Label& mode, TextBox& title,
                     TextBox& rpm);

// Clears the plot and gives it the track's range, steps, number formats and axis titles. False and
// only cleared when the slot is empty.
bool PrepareTrackPlot(PreviewPlot& plot, TrackStore& tracks, int track);

// Adds a track's points: those from `first` to `last` (both included) as markers, the others as
// dots, each in the colour that `colour` gives for its index and x value.
void DrawChosenPoints(PreviewPlot& plot, TrackStore& tracks, int track, std::int32_t first,
                      std::int32_t last,
                      const std::function<Colour(std::int32_t point, double x)>& colour);

// A preview of a track of which the points from `first` to `last` are chosen: light-red markers
// among light-blue dots. Empty for an empty slot.
void DrawSelection(PreviewPlot& plot, TrackStore& tracks, int track, std::int32_t first,
                   std::int32_t last);

}  // namespace zento
