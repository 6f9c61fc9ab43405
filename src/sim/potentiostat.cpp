#include "sim/potentiostat.h"

#include <limits>

namespace zento::sim {
namespace {

Programme OwnProgramme(const Parameters& parameters) {
  const double rate = parameters.own_rate / 1000;
  Programme programme(parameters.own_first);
  const auto cycle = [&] {
    programme.Ramp(parameters.own_second, rate);
    programme.Ramp(parameters.own_third, rate);
    programme.Ramp(parameters.own_first, rate);
  };
  if (parameters.own_cycles == 0) {
    programme.Hold(parameters.own_delay);
    programme.BeginLoop();
    cycle();
  } else {
    programme.BeginLoop();
    programme.Hold(parameters.own_delay);
    for (int i = 0; i < static_cast<int>(parameters.own_cycles); ++i) cycle();
  }
  return programme;
}

}  // namespace

Potentiostat::Potentiostat(const Parameters& parameters)
    : has_own_(parameters.own != 0), rest_(parameters.rest_potential) {
  if (has_own_) own_.Start(OwnProgramme(parameters));
}

void Potentiostat::Advance(double dt) {
  generator_.Advance(dt);
  own_.Advance(dt);
}

double Potentiostat::VoltsAfter(double dt) const {
  if (generator_.output_on()) return generator_.VoltsAfter(dt);
  return has_own_ ? own_.VoltsAfter(dt) : rest_;
}

double Potentiostat::UntilCorner() const {
  if (generator_.output_on()) return generator_.UntilCorner();
  return has_own_ ? own_.UntilCorner() : std::numeric_limits<double>::infinity();
}

}  // namespace zento::sim
