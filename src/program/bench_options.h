#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/parameters.h"
#include "text/status.h"

namespace CLI {
class App;
}

namespace zento {

// The options --seed and --bench-set, which both programs take.
class BenchOptions {
 public:
  // `app` keeps a reference to this object.
  void AddTo(CLI::App& app);
  bool given() const { return seed_ || !assignments_.empty(); }
  // The bench's parameters with what was given; fails on an unknown key or a bad value.
  Result<sim::Parameters> Parameters() const;

 private:
  std::optional<std::uint64_t> seed_;
  std::vector<std::string> assignments_;
};

}  // namespace zento
