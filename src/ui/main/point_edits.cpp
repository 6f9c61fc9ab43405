#include "ui/main/point_edits.h"

#include <algorithm>
#include <cstddef>

#include "core/tables.h"
#include "core/track_store.h"
#include "core/track_table.h"

namespace zento {
namespace {

constexpr int kChannels = 10;  // tracks 0 to 9
constexpr int kTimeColumn = 2;

}  // namespace

int HeldColumns(const TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  if (record.Mode <= kModeNone || record.Mode >= kModes) return 0;
  return KeptColumns(record, track == 0);
}

std::vector<int> TracksOfRecord(const TrackStore& tracks, int track) {
  const TrackRecord& record = tracks.Record(track);
  if (record.Mode != kModeMulti || track >= kChannels) return {track};
  std::vector<int> channels;
  for (int channel = 0; channel < kChannels; ++channel) {
    const TrackRecord& other = tracks.Record(channel);
    if (other.Mode == kModeMulti && other.pnum == record.pnum) channels.push_back(channel);
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

}  // namespace zento
