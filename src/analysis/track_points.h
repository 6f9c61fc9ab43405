#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/track_store.h"
#include "graph/preview_plot.h"

namespace zento {

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
