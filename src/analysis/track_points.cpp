#include "analysis/track_points.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "core/palette.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "graph/track_preview.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// The way of a potential that goes to and fro. Steps back that are small beside the whole range are
// noise, no turns, so that a measured potential does not seem to have gone farther than it did.
double WayOf(std::span<const double> x) {
  if (x.size() < 2) return 0;
  const auto [low, high] = std::minmax_element(x.begin(), x.end());
  const double noise = 0.05 * (*high - *low);
  double way = 0;
  double turn = x.front();  // where it turned last
  double extreme = turn;    // the farthest since
  for (const double now : x) {
    const bool farther = std::fabs(now - turn) > std::fabs(extreme - turn);
    const bool same_side = (now - turn) * (extreme - turn) >= 0;
    if (farther && same_side) {
      extreme = now;
    } else if (std::fabs(now - extreme) > noise) {
      way += std::fabs(extreme - turn);
      turn = extreme;
      extreme = now;
    }
  }
  return way + std::fabs(extreme - turn);
}

}  // namespace

double TrackTime(TrackStore& tracks, int track) {
  const double recorded = tracks.Record(track).MaxTime;
  return recorded > 0 ? recorded : TrackTimeByX(tracks, track);
}

double TrackTimeByX(TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  const std::span<const double> x = tracks.Points(0, track);
  if (x.size() < 2) return 0;
  const auto points = static_cast<double>(x.size());
  const double all = points / (points - 1);  // the last point's interval, too
  if (XIsTime(record.Mode)) return std::fabs(x.back() - x.front()) * 1000 * all;
  if (!IsSweep(record.Mode) || !(record.Scanrate > 0)) return 0;
  return WayOf(x) / (record.Scanrate / 1000) * 1000 * all;
}

std::string PointText(std::int32_t mode, double x, double current) {
  std::string text;
  if (IsMultichannel(mode)) return {};
  switch (TraitsOf(mode).x) {
    case XQuantity::kNone:
      return {};
    case XQuantity::kPotential:
      text = "E:" + Format(x, "0.0000") + "V   ";
      break;
    case XQuantity::kTime:
      text = "t:" + Format(x, "#0.000") + "s   ";
      break;
    case XQuantity::kRotationRate:
      text = "rpm:" + Format(x, "###0") + "   ";
      break;
  }
  return text + "I:" + Format(current, "0.0000e+0") + "A";
}

std::string PointText(const TrackStore& tracks, int track, std::int32_t point) {
  if (point < 0 || point >= tracks.PointCount(track)) return {};
  return PointText(tracks.Record(track).Mode, tracks.Value(0, track, point),
                   tracks.Value(1, track, point));
}

bool HoldsTrack(const TrackStore& tracks, int track) {
  return IsMeasured(tracks.Record(track).Mode);
}

void CopyTimeColumn(TrackStore& tracks, int from, int to) {
  const std::int32_t mode = tracks.Record(from).Mode;
  if (!HasTimeColumn(mode) || from == to) return;
  if (TraitsOf(mode).third_in == ThirdColumnIn::kTimeRecording) {
    tracks.Record(to).TimeRecording = tracks.Record(from).TimeRecording;
  }
  PutPoints(tracks, 2, to, tracks.Points(2, from));
}

void PutPoints(TrackStore& tracks, int column, int slot, std::span<const double> values) {
  std::vector<double>& points = tracks.Column(column, slot);
  if (points.size() < values.size()) points.resize(values.size());
  std::copy(values.begin(), values.end(), points.begin());
}

void KeptPoints::Keep(TrackStore& tracks, int track, int columns) {
  columns_.clear();
  for (int c = 0; c < columns; ++c) {
    const std::span<const double> points = tracks.Points(c, track);
    columns_.emplace_back(points.begin(), points.end());
  }
}

bool KeptPoints::AreStill(TrackStore& tracks, int track) const {
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    if (!SameValues(tracks.Points(static_cast<int>(c), track), columns_[c])) return false;
  }
  return true;
}

void ShowTrackHeader(const TrackStore& tracks, int track, Label& mode, TextBox& title,
                     TextBox& rpm) {
  const TrackRecord& record = tracks.Record(track);
  const bool holds = HoldsTrack(tracks, track);
  mode.SetText(std::string(AtOrNone(ModeName, record.Mode)));
  title.SetText(holds ? record.Title : std::string());
  rpm.SetText(holds ? PlainNumber(record.RPM) : std::string());
}

bool PrepareTrackPlot(PreviewPlot& plot, TrackStore& tracks, int track) {
  plot.Clear();
  if (!HoldsTrack(tracks, track)) return false;
  const DisplayRange range = RangeOf(tracks, track);
  plot.SetFormats(PreviewXFormat(tracks.Record(track).Mode), "0.0e+0");
  plot.SetRange(range.x_min, range.y_min, range.x_max, range.y_max);
  plot.SetSteps(TickStep(range.x_min, range.x_max), TickStep(range.y_min, range.y_max));
  plot.SetAxisTitles("Potential /V", "Current /A");
  return true;
}

void DrawChosenPoints(PreviewPlot& plot, TrackStore& tracks, int track, std::int32_t first,
                      std::int32_t last,
                      const std::function<Colour(std::int32_t point, double x)>& colour) {
  // Sorted by colour and kind, so that the plot holds few series however the colours alternate.
  struct Part {
    Colour colour;
    bool chosen;
    std::vector<Point> points;
  };
  std::vector<Part> parts;
  std::size_t open = 0;
  const std::span<const double> x = tracks.Points(0, track);
  const std::span<const double> y = tracks.Points(1, track);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const auto point = static_cast<std::int32_t>(i);
    const bool chosen = point >= first && point <= last;
    const Colour its = colour(point, x[i]);
    const auto fits = [&](const Part& part) { return part.chosen == chosen && part.colour == its; };
    if (parts.empty() || !fits(parts[open])) {
      for (open = 0; open < parts.size() && !fits(parts[open]); ++open) {
      }
      if (open == parts.size()) parts.push_back({its, chosen, {}});
    }
    parts[open].points.push_back({x[i], y[i]});
  }
  for (const bool chosen : {false, true}) {
    for (const Part& part : parts) {
      if (part.chosen != chosen) continue;
      if (!chosen) {
        plot.Dots(part.points, part.colour);
        continue;
      }
      for (const Point& point : part.points) plot.Mark(point.x, point.y, part.colour);
    }
  }
}

void DrawSelection(PreviewPlot& plot, TrackStore& tracks, int track, std::int32_t first,
                   std::int32_t last) {
  if (!PrepareTrackPlot(plot, tracks, track)) return;
  DrawChosenPoints(plot, tracks, track, first, last, [=](std::int32_t point, double) {
    return point >= first && point <= last ? kLightRed : kLightBlue;
  });
}

}  // namespace zento
