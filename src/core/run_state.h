#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zento {

// Why a run came to its end. The first reason given is the one that counts.
enum class EndReason {
  kPerson,    // the Stop button
  kTime,      // the planned time is over
  kCharge,    // the charge limit was reached
  kLimit,     // the limit rotation rate was exceeded
  kOverflow,  // no room for more points
  kDevice,    // nothing could be read any more
  kClosing,   // the window or the program is being closed
};

// How a measurement ended, for whoever follows it without its window.
struct RunReport {
  std::string what;  // the run as a person calls it ("Potential step")
  EndReason reason = EndReason::kPerson;
  std::string how;                 // in full, as in the log
  std::optional<int> first_track;  // where the points are; nothing = none were stored
  int last_track = 0;              // of a run that stores several tracks
  std::int32_t points = 0;
};

enum class RunPhase {
  kResting,    // held at its start for a set time, then it records
  kWaiting,    // until the potential or the rotation rate changes, whenever that is
  kRecording,  // points are kept
  kEnding,     // a stop was requested; the next tick ends the run
  kOver,       // devices off, points stored
};

// What was read last, as far as the run measures it.
struct RunReading {
  std::optional<double> potential;     // V
  std::optional<double> current;       // A
  std::optional<double> ring_current;  // A
  std::optional<double> rpm;
};

// Where a run stands.
struct RunState {
  std::string technique;  // the run as a person calls it
  RunPhase phase = RunPhase::kWaiting;
  std::int64_t elapsed = 0;             // ms since the start; once it records, since then
  std::optional<std::int64_t> planned;  // ms of recording, where time ends it
  RunReading last;
  std::optional<int> cycle;         // from 1, of sweeps
  std::optional<double> scan_rate;  // mV/s, as measured
  std::optional<double> charge;     // C, since recording began
  double sampling_rate = 0;         // Hz, at which the last point was taken
  std::int32_t points = 0;          // kept
  int gaps = 0;                     // in which readings failed
  int first_target = 0;             // tracks that receive the points
  int last_target = 0;
  std::string notice;               // worth telling the person, not worth a message box
  std::optional<RunReport> report;  // once it is over
};

// Tells whoever listens where the run of the moment stands: at its begin, at every tick, when a
// stop is requested, and when it is over.
class RunFeed {
 public:
  using Listener = std::function<void(const RunState&)>;
  // Listens as long as it is kept.
  using Subscription = std::shared_ptr<const Listener>;

  [[nodiscard]] Subscription Subscribe(Listener listener) {
    auto subscription = std::make_shared<const Listener>(std::move(listener));
    listeners_.push_back(subscription);
    return subscription;
  }

  void Publish(const RunState& state) {
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
    // By index: a listener may bring in another one.
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
      if (const Subscription listener = listeners_[i].lock()) (*listener)(state);
    }
  }

 private:
  std::vector<std::weak_ptr<const Listener>> listeners_;
};

}  // namespace zento
