#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "devices/gpib.h"

namespace zento {

// The programmable function generator that puts the potential programme on the cell. It is the
// instrument at Settings::GPIBAddress; while its output is on, the one that was switched on,
// whatever the settings say meanwhile.
class FunctionGenerator {
 public:
  FunctionGenerator(const Settings& settings, GpibLink& link) : settings_(settings), link_(link) {}
  FunctionGenerator(const FunctionGenerator&) = delete;
  FunctionGenerator& operator=(const FunctionGenerator&) = delete;

  // A ramp to potentials[0], held `retain_time` seconds (0 to 999), then the segments P0, P1, P2,
  // and back to P0 when P2 is another potential, over and over. Potentials in V (only four digits
  // of millivolts are sent), scan rate in mV/s. The output stays off. All of potentials[0..2] are
  // read.
  void ProgrammeCyclicSweep(std::int32_t function, std::span<const double, 3> potentials,
                            double scan_rate, std::int32_t retain_time);

  // potentials[0] for `t1` seconds (0 to 999), then a step to potentials[1] for `t2` seconds.
  void ProgrammePotentialStep(std::int32_t function, std::span<const double> potentials,
                              std::int32_t t1, std::int32_t t2);

  void OutputOn();
  // The command that must not be lost: a failure initialises the link anew and tries once more.
  void OutputOff();

 private:
  bool Send(const std::string& command);

  const Settings& settings_;
  GpibLink& link_;
  std::optional<std::int32_t> on_address_;
};

// Parts of the generator's commands, for whoever reads or checks them.
std::string PotentialCode(double volts);     // signed millivolts: -0.2 gives "-0200"
std::string RateCode(double scan_rate);      // V/s from mV/s: 50 gives "50E-3"
std::string HoldCode(std::int32_t seconds);  // 5 gives "005"

// What the generator gets when it is sent a value: its commands have few digits.
struct SentValue {
  double value = 0;   // in the unit of what was asked for
  bool lost = false;  // another value altogether, not only a rounded one
  // What became of it, as a half sentence ("12 V is sent as 2 V: ..."); empty when it arrives as it
  // is.
  std::string remark;
};
SentValue PotentialAsSent(double volts);        // whole millivolts, four digits of them
SentValue RateAsSent(double millivolts_per_s);  // two digits

}  // namespace zento
