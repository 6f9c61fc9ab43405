#pragma once

#include <span>
#include <string>
#include <string_view>

#include "text/status.h"

namespace zento::sim {

// Everything about the bench that a user may change, in the units of `ParameterTable`. Fresh
// parameters have the table's defaults.
struct Parameters {
  Parameters();

  double cell;
  double electrons, formal_potential, rate_constant, transfer;
  double diffusion_ox, diffusion_red, bulk_ox, bulk_red;
  double area, capacitance, resistance, viscosity, temperature;

  double rest_potential;
  double own, own_delay, own_first, own_second, own_third, own_rate, own_cycles;
  double disk_range, ring_range;
  double gpib_address;

  double motor_scale, rotor_gain, rotor_lag, rotor_noise, tach_scale;

  double noise, mains, mains_frequency, bits;
  double seed;
};

// One line of the table of parameters.
struct Parameter {
  std::string_view key;
  std::string_view unit;  // empty for a pure number
  double Parameters::*member;
  double standard;  // the default
  double least, most;
  std::string_view help;
  bool whole = false;  // takes whole numbers only
  // For a parameter that is chosen by name: its value is an index into these.
  std::span<const std::string_view> choices = {};
};

std::span<const Parameter> ParameterTable();

// Changes one parameter. The value is a decimal number in the parameter's unit, or one of its
// choices. Failure, changing nothing, when there is no such key or the value is not such a number
// or out of range.
Status Set(Parameters& parameters, std::string_view key, std::string_view value);

// "KEY=VALUE", as the command line has it.
Status SetFromText(Parameters& parameters, std::string_view text);

// The present value as `Set` reads it.
std::string ValueText(const Parameters& parameters, const Parameter& parameter);

}  // namespace zento::sim
