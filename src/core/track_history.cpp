#include "core/track_history.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <string_view>
#include <utility>

#include "core/track_file.h"
#include "core/track_store.h"
#include "core/workstation.h"

namespace zento {
namespace {

std::vector<int> AllTracks() {
  std::vector<int> tracks(kTracks);
  std::iota(tracks.begin(), tracks.end(), 0);
  return tracks;
}

std::size_t Mix(std::size_t hash, std::string_view bytes) {
  return (hash ^ std::hash<std::string_view>()(bytes)) * 0x9E3779B97F4A7C15U;
}

// What a column says of a track's points. -0.0 and 0.0 differ, and a NaN is the same as itself:
// these are bits that are put back. Zeros at the end do not count, as a column that is too short is
// filled up with them when somebody reads it.
std::string_view BitsOf(const std::vector<double>& values, std::int32_t points) {
  auto size = std::min(values.size(), static_cast<std::size_t>(std::max(points, 0)));
  while (size > 0 && values[size - 1] == 0 && !std::signbit(values[size - 1])) --size;
  return {reinterpret_cast<const char*>(values.data()), size * sizeof(double)};
}

template <typename Number>
std::size_t Mix(std::size_t hash, const Number& number) {
  return Mix(hash, std::string_view(reinterpret_cast<const char*>(&number), sizeof number));
}

std::size_t FingerprintOf(const TrackRecord& r) {
  std::size_t hash = Mix(Mix(0, std::string_view(r.Title)), std::string_view(r.MeasTime));
  for (const double number :
       {r.Scanrate, r.V[0],       r.V[1],       r.V[2], r.Vxmin,    r.Vymin,   r.Vxmax,
        r.Vymax,    r.RingXValue, r.MaxTime,    r.RPM,  r.Conc,     r.Area,    r.Weight,
        r.ne,       r.DiskYscale, r.RingYscale, r.pH,   r.StepTime, r.VoltStep}) {
    hash = Mix(hash, number);
  }
  for (const std::int32_t number : {r.Mode, r.pnum, r.TimeRecording, r.ref}) {
    hash = Mix(hash, number);
  }
  return hash;
}

}  // namespace

const std::string& TrackHistory::NameOf(const Steps& steps) {
  static const std::string none;
  return steps.empty() ? none : steps.back().name;
}

TrackHistory::Slot TrackHistory::Copy(const TrackStore& tracks, int track) {
  Slot slot{tracks.Record(track), {}};
  for (int column = 0; column < kTrackColumns; ++column) {
    slot.columns[static_cast<std::size_t>(column)] = tracks.Column(column, track);
  }
  return slot;
}

std::size_t TrackHistory::Fingerprint(const TrackStore& tracks, int track) {
  std::size_t hash = FingerprintOf(tracks.Record(track));
  for (int column = 0; column < kTrackColumns; ++column) {
    hash = Mix(hash, BitsOf(tracks.Column(column, track), tracks.Record(track).pnum));
  }
  return hash;
}

std::size_t TrackHistory::BytesOf(const Steps& steps) {
  std::size_t bytes = 0;
  for (const Step& step : steps) {
    for (const Saved& saved : step.tracks) {
      for (const std::vector<double>& column : saved.slot.columns) {
        bytes += column.size() * sizeof(double);
      }
    }
  }
  return bytes;
}

bool TrackHistory::Differs(const Slot& slot, const TrackStore& tracks, int track) {
  if (FingerprintOf(slot.record) != FingerprintOf(tracks.Record(track))) return true;
  for (int column = 0; column < kTrackColumns; ++column) {
    if (BitsOf(slot.columns[static_cast<std::size_t>(column)], slot.record.pnum) !=
        BitsOf(tracks.Column(column, track), slot.record.pnum)) {
      return true;
    }
  }
  return false;
}

Status TrackHistory::Check(const TrackStore& tracks, const Step& step, const std::string& doing) {
  for (const Saved& saved : step.tracks) {
    if (Fingerprint(tracks, saved.track) == saved.expected) continue;
    return Status::Failure("Cannot " + doing + " " + step.name + ": track " +
                           std::to_string(saved.track) +
                           " was measured or changed otherwise since.");
  }
  return Status::Ok();
}

Result<std::vector<int>> TrackHistory::Exchange(TrackStore& tracks, Steps& from, Steps& to,
                                                const std::string& doing) {
  if (from.empty()) return Status::Failure("There is nothing to " + doing + ".");
  Step step = std::move(from.back());
  from.pop_back();
  if (Status possible = Check(tracks, step, doing); !possible.ok()) {
    Changed();
    return possible;
  }
  std::vector<int> changed;
  for (Saved& saved : step.tracks) {
    Slot was = Copy(tracks, saved.track);
    tracks.Record(saved.track) = std::move(saved.slot.record);
    for (int column = 0; column < kTrackColumns; ++column) {
      tracks.Column(column, saved.track) =
          std::move(saved.slot.columns[static_cast<std::size_t>(column)]);
    }
    saved.slot = std::move(was);
    saved.expected = Fingerprint(tracks, saved.track);
    changed.push_back(saved.track);
  }
  step.merges = false;
  to.push_back(std::move(step));
  Changed();
  return changed;
}

Result<std::vector<int>> TrackHistory::Undo(TrackStore& tracks) {
  return Exchange(tracks, done_, undone_, "undo");
}

Result<std::vector<int>> TrackHistory::Redo(TrackStore& tracks) {
  return Exchange(tracks, undone_, done_, "redo");
}

void TrackHistory::Clear() {
  done_.clear();
  undone_.clear();
  Changed();
}

void TrackHistory::Changed() const {
  if (on_change) on_change();
}

void TrackHistory::Add(Step step) {
  undone_.clear();
  const auto same_track = [](const Saved& a, const Saved& b) { return a.track == b.track; };
  Step* last = done_.empty() ? nullptr : &done_.back();
  if (last != nullptr && step.merges && last->merges && last->name == step.name &&
      std::ranges::equal(last->tracks, step.tracks, same_track)) {
    for (std::size_t i = 0; i < step.tracks.size(); ++i) {
      last->tracks[i].expected = step.tracks[i].expected;
    }
  } else {
    Put(std::move(step));
  }
  Changed();
}

void TrackHistory::Put(Step step) {
  done_.push_back(std::move(step));
  while (done_.size() > kMostSteps || (done_.size() > kLeastSteps && BytesOf(done_) > kBytes)) {
    done_.pop_front();
  }
}

TrackChange::TrackChange(Workstation& workstation, std::string name, const std::vector<int>& tracks,
                         Kind kind)
    : workstation_(workstation), outermost_(workstation.history.changes_under_way_++ == 0) {
  if (!outermost_) return;
  step_.name = std::move(name);
  step_.merges = kind == Kind::kMerge;
  std::array<bool, kTracks> named{};
  for (const int track : tracks) {
    if (track >= 0 && track < kTracks) named[static_cast<std::size_t>(track)] = true;
  }
  for (int track = 0; track < kTracks; ++track) {
    if (!named[static_cast<std::size_t>(track)]) continue;
    step_.tracks.push_back({track, TrackHistory::Copy(workstation.tracks, track), 0});
  }
}

TrackChange::TrackChange(Workstation& workstation, std::string name)
    : TrackChange(workstation, std::move(name), AllTracks()) {}

TrackChange::~TrackChange() {
  --workstation_.history.changes_under_way_;
  if (!outermost_) return;
  const TrackStore& tracks = workstation_.tracks;
  std::erase_if(step_.tracks, [&](const TrackHistory::Saved& saved) {
    return !TrackHistory::Differs(saved.slot, tracks, saved.track);
  });
  if (step_.tracks.empty()) return;
  for (TrackHistory::Saved& saved : step_.tracks) {
    saved.expected = TrackHistory::Fingerprint(tracks, saved.track);
  }
  workstation_.history.Add(std::move(step_));
}

}  // namespace zento
