#pragma once

#include "sim/command_generator.h"
#include "sim/parameters.h"
#include "sim/programme.h"

namespace zento::sim {

// What commands the cell's potential: the function generator while its output is on; else, if it
// is set to, the potentiostat's own programme, which has been running since the bench was switched
// on; else the rest potential.
class Potentiostat {
 public:
  explicit Potentiostat(const Parameters& parameters);

  CommandGenerator& generator() { return generator_; }
  const CommandGenerator& generator() const { return generator_; }

  void Advance(double dt);
  // Volts against the reference `dt` seconds from now.
  double VoltsAfter(double dt) const;
  // Seconds until the potential turns or jumps; may be infinite.
  double UntilCorner() const;

 private:
  CommandGenerator generator_;
  bool has_own_;
  double rest_;
  Player own_;
};

}  // namespace zento::sim
