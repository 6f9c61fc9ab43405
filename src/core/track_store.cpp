#include "core/track_store.h"

#include <algorithm>

namespace zento {

void KouteckyLevichLists::Resize() {
  KLUseFlag.resize(kTracks);
  KLNStart.resize(kTracks);
  KLNEnd.resize(kTracks);
  KLBaseMode.resize(kTracks);
  KLBaseTrack.resize(kTracks);
  KLBaseNEnd.resize(kTracks);
  KLSubVal.resize(kTracks);
}

void TrackStore::InitializeParameters() {
  kl.Resize();
  for (std::size_t track = 0; track < kTracks; ++track) {
    if (records_[track].Mode != kModeNone) continue;
    kl.KLUseFlag[track] = 0;
    kl.KLNStart[track] = 0;
    kl.KLNEnd[track] = 0;
    kl.KLBaseNEnd[track] = 0;
  }
}

std::vector<double>& TrackStore::Column(int column, int slot) {
  return data_[static_cast<std::size_t>(slot)][static_cast<std::size_t>(column)];
}

const std::vector<double>& TrackStore::Column(int column, int slot) const {
  return data_[static_cast<std::size_t>(slot)][static_cast<std::size_t>(column)];
}

double TrackStore::Value(int column, int slot, std::int32_t point) const {
  const std::vector<double>& values = Column(column, slot);
  const auto at = static_cast<std::size_t>(point);  // a negative one becomes huge
  return at < values.size() ? values[at] : 0.0;
}

void TrackStore::SetValue(int column, int slot, std::int32_t point, double value) {
  if (point < 0 || point >= kMaxPoints) return;
  std::vector<double>& values = Column(column, slot);
  const auto at = static_cast<std::size_t>(point);
  if (at >= values.size()) values.resize(at + 1);
  values[at] = value;
}

std::int32_t TrackStore::PointCount(int slot) const {
  return std::clamp(Record(slot).pnum, 0, kMaxPoints);
}

std::span<const double> TrackStore::Points(int column, int slot) {
  const auto count = static_cast<std::size_t>(PointCount(slot));
  std::vector<double>& values = Column(column, slot);
  if (values.size() < count) values.resize(count);
  return {values.data(), count};
}

void TrackStore::ClearTrack(int slot) {
  TrackRecord& record = Record(slot);
  record.Mode = kModeNone;
  record.Title.clear();
  record.MeasTime.clear();
  record.Scanrate = 0;
  record.Vxmin = record.Vymin = record.Vxmax = record.Vymax = 0;
  record.RingXValue = 0;
  record.MaxTime = 0;
  record.RPM = 0;
  record.pnum = 0;
  record.Conc = 0;
  record.Area = 0;
  record.ne = 1.0;
  record.StepTime = 0;
  record.VoltStep = 0;
}

void TrackStore::CopyTrackHeader(int from, int to) {
  TrackRecord copy = Record(from);
  TrackRecord& target = Record(to);
  copy.DiskYscale = target.DiskYscale;
  copy.RingYscale = target.RingYscale;
  copy.TimeRecording = target.TimeRecording;
  target = std::move(copy);
}

void TrackStore::CopyTrackData(int from, int to) {
  if (from == to) return;
  const bool third = TraitsOf(Record(from).Mode).third_in == ThirdColumnIn::kEveryTrack;
  for (int column = 0; column < (third ? 3 : 2); ++column) {
    const std::span<const double> source = Points(column, from);
    std::vector<double>& target = Column(column, to);
    if (target.size() < source.size()) target.resize(source.size());
    std::copy(source.begin(), source.end(), target.begin());
  }
}

}  // namespace zento
