#include "program/bench_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace zento {

void BenchOptions::AddTo(CLI::App& app) {
  app.add_option("--seed", seed_, "seed of the simulated bench's noise");
  app.add_option("--bench-set", assignments_,
                 "KEY=VALUE, changes a parameter of the simulated bench; may be repeated. "
                 "zento-cli bench lists them")
      ->take_all()
      ->allow_extra_args(false);
}

Result<sim::Parameters> BenchOptions::Parameters() const {
  sim::Parameters parameters;
  for (const std::string& assignment : assignments_) {
    if (Status set = sim::SetFromText(parameters, assignment); !set.ok()) return set;
  }
  if (seed_) {
    const Status set = sim::Set(parameters, "seed", std::to_string(*seed_));
    if (!set.ok()) return set;
  }
  return parameters;
}

}  // namespace zento
