#include "ui/main/point_edits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "core/reference_scale.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "core/track_table.h"

namespace zento {
namespace {

constexpr int kTimeColumn = 2;

// The least and the greatest of the values of some columns.
struct Extent {
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();
  bool any() const { return least <= most; }
  void Cover(std::span<const double> values) {
    for (const double value : values) {
      least = std::min(least, value);
      most = std::max(most, value);
    }
  }
};

void FitHeader(TrackStore& tracks, const PointOperation& operation) {
  TrackRecord& record = tracks.Record(kScratchSlot);
  if (IsMultichannel(record.Mode)) return;
  const bool ring = HasRing(record.Mode);
  Extent x, y;
  if (operation.columns[0]) x.Cover(tracks.Points(0, kScratchSlot));
  if (operation.columns[1] || (ring && operation.columns[2])) {
    y.Cover(tracks.Points(1, kScratchSlot));
    if (ring) y.Cover(tracks.Points(2, kScratchSlot));
  }
  if (x.any()) record.Vxmin = x.least, record.Vxmax = x.most;
  if (y.any()) record.Vymin = y.least, record.Vymax = y.most;
  const bool whole = operation.first == 0 && operation.last == tracks.PointCount(kScratchSlot) - 1;
  if (!operation.columns[0] || !whole || !HasReferencedPotentials(record)) return;
  for (double& vertex : record.V) vertex = operation.Of(vertex);
}

}  // namespace

int HeldColumns(const TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  return IsMeasured(record.Mode) ? KeptColumns(record, track == 0) : 0;
}

std::vector<int> TracksOfRecord(const TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  if (!IsMultichannel(record.Mode) || track >= kMultiChannels) return {track};
  std::vector<int> channels;
  for (int channel = 0; channel < kMultiChannels; ++channel) {
    const TrackRecord& other = tracks.Record(channel);
    if (IsMultichannel(other.Mode) && other.pnum == record.pnum) channels.push_back(channel);
  }
  return channels;
}

void SetPoint(TrackStore& tracks, int track, int column, std::int32_t point, double value) {
  if (column != kTimeColumn) return tracks.SetValue(column, track, point, value);
  for (const int channel : TracksOfRecord(tracks, track)) {
    tracks.SetValue(column, channel, point, value);
  }
}

void RemovePoints(TrackStore& tracks, int track, const std::vector<char>& goes) {
  for (int column = 0; column < kTrackColumns; ++column) {
    std::vector<double>& values = tracks.Column(column, track);
    std::size_t left = 0;
    for (std::size_t point = 0; point < std::min(goes.size(), values.size()); ++point) {
      if (goes[point] == 0) values[left++] = values[point];
    }
  }
  tracks.Record(track).pnum = static_cast<std::int32_t>(std::count(goes.begin(), goes.end(), 0));
}

double PointOperation::Of(double x) const {
  switch (operation) {
    case BasicOperation::kAdd:
      return x + value;
    case BasicOperation::kSubtract:
      return x - value;
    case BasicOperation::kMultiply:
      return x * value;
    case BasicOperation::kDivide:
      return x / value;
  }
  return x;
}

bool HasFiniteResult(TrackStore& tracks, int track, const PointOperation& operation) {
  for (int column = 0; column < kTrackColumns; ++column) {
    if (!operation.columns[static_cast<std::size_t>(column)]) continue;
    for (std::int32_t point = operation.first; point <= operation.last; ++point) {
      if (!std::isfinite(operation.Of(tracks.Value(column, track, point)))) return false;
    }
  }
  return true;
}

void CalculateInScratch(TrackStore& tracks, int track, const PointOperation& operation) {
  tracks.CopyTrackHeader(track, kScratchSlot);
  for (int column = 0; column < kTrackColumns; ++column) {
    const auto points = tracks.Points(column, track);
    std::vector<double> values(points.begin(), points.end());
    if (operation.columns[static_cast<std::size_t>(column)]) {
      for (std::int32_t point = operation.first; point <= operation.last; ++point) {
        double& value = values[static_cast<std::size_t>(point)];
        value = operation.Of(value);
      }
    }
    std::vector<double>& scratch = tracks.Column(column, kScratchSlot);
    if (scratch.size() < values.size()) scratch.resize(values.size());
    std::copy(values.begin(), values.end(), scratch.begin());
  }
  FitHeader(tracks, operation);
}

}  // namespace zento
