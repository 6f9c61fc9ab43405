#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/virtual/memory_services.h"
#include "sim/parameters.h"
#include "text/status_fwd.h"

namespace zento {

// A cell whose properties are known, and how it is measured: the lines of a script, which makes the
// entries in a measurement window and presses Start as a person does.
struct Experiment {
  std::string_view name;                   // also its track file's, without extension
  std::span<const std::string_view> cell;  // bench parameters, "KEY=VALUE"
  std::string (*script)();
  // The bench's default noise and motor; else, unless the cell says so, none and a motor without
  // error.
  bool noise = false;
};

namespace experiments {
extern const Experiment kKinetics;   // oxygen at the foot of its wave, four rotation rates
extern const Experiment kPlateau;    // the whole wave of oxygen, four rotation rates
extern const Experiment kShares;     // the same slowly, both ways, with the ring
extern const Experiment kRates;      // limiting current of oxygen, rotation rate going up
extern const Experiment kStep;       // potential step of the couple
extern const Experiment kNoisyStep;  // the same under white noise
extern const Experiment kSlow;       // Tafel regions of a slow couple, oxidation and reduction
extern const Experiment kCapacitor;  // sweep of the double layer alone
extern const Experiment kDecay;      // step of a double layer behind a large resistance
extern const Experiment kNoisy;      // kPlateau with the bench's default noise
}  // namespace experiments

// The bench with the experiment's cell.
sim::Parameters BenchOf(const Experiment& experiment);

// The track file's place in `files`.
std::filesystem::path TrackFileOf(const Experiment& experiment);

// Carries the experiment out in virtual time on a bench of its own and saves its tracks in `files`.
// Fails when a line of the script cannot be carried out, or a window shows a message.
Status Measure(const Experiment& experiment, MemoryFiles& files);

}  // namespace zento
