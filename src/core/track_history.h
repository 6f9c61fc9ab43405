#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/track.h"
#include "text/status_fwd.h"

namespace zento {

class TrackStore;
struct Workstation;

// What windows did to the tracks 0 to 20, a step each, to be taken back and done again. Headers and
// points belong to it; the Koutecky-Levich lists do not. Nothing else that writes tracks, such as a
// measurement, is a step: a step whose tracks were written since is refused and forgotten, so that
// taking one back never costs measured points.
class TrackHistory {
 public:
  // Steps that are kept however large they are; more are kept while all of them together stay
  // below kBytes.
  static constexpr std::size_t kLeastSteps = 20;
  static constexpr std::size_t kMostSteps = 200;
  static constexpr std::size_t kBytes = std::size_t{64} << 20;

  // What would be taken back or done again; empty = nothing.
  const std::string& UndoName() const { return NameOf(done_); }
  const std::string& RedoName() const { return NameOf(undone_); }

  // The tracks that changed, in rising order. Fails, changing nothing but this list, when there is
  // no step or its tracks were changed by something else since.
  Result<std::vector<int>> Undo(TrackStore& tracks);
  Result<std::vector<int>> Redo(TrackStore& tracks);

  // Tracks were replaced as a whole, as by opening a file.
  void Clear();

  // After the names above may have changed. May be empty.
  std::function<void()> on_change;

 private:
  friend class TrackChange;
  struct Slot {
    TrackRecord record;
    std::array<std::vector<double>, kTrackColumns> columns;
  };
  // A track as it was, and what it has to be now for that to be put back.
  struct Saved {
    int track = 0;
    Slot slot;
    std::size_t expected = 0;  // fingerprint
  };
  struct Step {
    std::string name;
    bool merges = false;
    std::vector<Saved> tracks;
  };
  using Steps = std::deque<Step>;

  static const std::string& NameOf(const Steps& steps);
  static Slot Copy(const TrackStore& tracks, int track);
  static bool Differs(const Slot& slot, const TrackStore& tracks, int track);
  static std::size_t Fingerprint(const TrackStore& tracks, int track);
  static std::size_t BytesOf(const Steps& steps);
  Result<std::vector<int>> Exchange(TrackStore& tracks, Steps& from, Steps& to,
                                    const std::string& doing);
  static Status Check(const TrackStore& tracks, const Step& step, const std::string& doing);
  void Put(Step step);
  void Changed() const;
  void Add(Step step);

  Steps done_;
  Steps undone_;
  int changes_under_way_ = 0;
};

// Put on the stack by a window before it changes tracks: when it goes, and one of the tracks
// differs from what it was, one step is added. Changes inside one another are one step, that of the
// outermost, which must name all their tracks.
//
// `name` reads well behind "Undo ": "Undo Smoothing of track 3".
class TrackChange {
 public:
  // kMerge: follows up a change of the same name and tracks, as typing into a box does, and is one
  // step with it.
  enum class Kind { kStep, kMerge };

  // Tracks outside 0 to 20 are ignored.
  TrackChange(Workstation& workstation, std::string name, const std::vector<int>& tracks,
              Kind kind = Kind::kStep);
  // Any of the 21 tracks.
  TrackChange(Workstation& workstation, std::string name);
  ~TrackChange();
  TrackChange(const TrackChange&) = delete;
  TrackChange& operator=(const TrackChange&) = delete;

 private:
  Workstation& workstation_;
  bool outermost_;
  TrackHistory::Step step_;
};

}  // namespace zento
