#pragma once

// For the tests of this room and of those above it that play with the generator.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "sim/command_generator.h"
#include "sim/parameters.h"
#include "text/status.h"

namespace zento::sim {

// Parameters with the given changes ("KEY=VALUE"), all of which must be right.
inline Parameters With(std::initializer_list<std::string_view> changes,
                       Parameters parameters = Parameters()) {
  for (const std::string_view change : changes) {
    if (!SetFromText(parameters, change).ok()) parameters.area = 0.0;  // no test survives this
  }
  return parameters;
}

// The cell as the textbooks have it: no resistance, no double layer, no noise; a couple (or each of
// an array) with equal diffusion coefficients and as fast as mass transport allows unless k0 is
// given; a ring that follows at once.
inline Parameters Textbook(std::initializer_list<std::string_view> changes = {}) {
  return With(changes, With({"R_u=0", "C_dl=0", "k0=1e5", "D_ox=6.5e-6", "ring_lag=0", "noise=0",
                             "mains=0"}));
}

// The lines that programme a cyclic sweep, as the workstation sends them: potentials as
// "+1200" (mV), rate as "50E-3" (V/s), hold as "005" (s).
inline std::vector<std::string> CyclicSweep(const std::string& first, const std::string& second,
                                            const std::string& third, const std::string& rate,
                                            const std::string& hold) {
  std::vector<std::string> lines = {"SR0", "F1ED1", "VF" + first, "RT" + rate, "STEP"};
  lines.insert(lines.end(), {"HT" + hold + "E0", "YF1"});
  const auto segment = [&](const char* name, const std::string& potential) {
    lines.insert(lines.end(), {name, "VF" + potential, "RT" + rate, "HT000E0", "YF0"});
  };
  segment("F101", first);
  segment("F102", second);
  segment("F103", third);
  if (first == third) {
    lines.push_back("ET3");
  } else {
    segment("F104", first);
    lines.push_back("ET4");
  }
  lines.push_back("ED0");
  return lines;
}

// The lines that programme a potential step.
inline std::vector<std::string> PotentialStep(const std::string& first, const std::string& second,
                                              const std::string& hold) {
  return {"SR0", "F1ED1", "VF" + first,  "RT10E9", "STEP", "HT" + hold + "E0",
          "YF1", "F101",  "VF" + second, "RT10E9", "STEP", "HT100E+0",
          "YF1", "ET1",   "ED0"};
}

}  // namespace zento::sim
