#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "text/status_fwd.h"

namespace zento::sim {

// What may be in the cell, as values of the parameter "cell".
enum CellKind { kCouple, kOxygen, kArray, kBlank };

// Everything about the bench that a user may change, in the units of `ParameterTable`. Fresh
// parameters have the table's defaults.
struct Parameters {
  Parameters();
  CellKind Kind() const { return static_cast<CellKind>(cell); }

  double cell;  // a CellKind
  double electrons, formal_potential, rate_constant, transfer;
  double diffusion_ox, diffusion_red, bulk_ox, bulk_red;
  double spacing;
  double diffusion_oxygen, diffusion_peroxide, bulk_oxygen, oxygen_rate, oxygen_slope;
  double peroxide_share, peroxide_oxidation, collection, ring_lag, ring_potential;
  double area, capacitance, resistance, viscosity, temperature;

  double rest_potential;
  double own, own_delay, own_first, own_second, own_third, own_rate, own_cycles;
  double disk_range, ring_range;
  double gpib_address;

  double motor_scale, rotor_gain, rotor_lag, rotor_noise, tach_scale;

  double noise, mains, mains_frequency, bits;
  double seed;

  std::uint64_t given = 0;  // rows of the table that `Set` was called for, a bit each
};

// One line of the table of parameters.
struct Parameter {
  std::string_view key;
  std::string_view unit;  // empty for a pure number
  double Parameters::*member;
  double standard;  // the default, unless the cell has one of its own
  double least, most;
  std::string_view help;
  bool whole = false;  // takes whole numbers only
  // For a parameter that is chosen by name: its value is an index into these.
  std::span<const std::string_view> choices = {};
};

std::span<const Parameter> ParameterTable();

// The default of a parameter with the given cell, and the names and own defaults of the other cells
// where they differ, such as "oxygen 50"; empty when all agree.
double Standard(const Parameter& parameter, CellKind cell);
std::string OtherStandards(const Parameter& parameter, CellKind cell);

// Changes one parameter. The value is a decimal number in the parameter's unit, or one of its
// choices. Changing the cell gives every parameter that was not set, before or after, that cell's
// own default. Failure, changing nothing, when there is no such key or the value is not such a
// number or out of range.
Status Set(Parameters& parameters, std::string_view key, std::string_view value);

// "KEY=VALUE", as the command line has it.
Status SetFromText(Parameters& parameters, std::string_view text);

// The present value as `Set` reads it.
std::string ValueText(const Parameters& parameters, const Parameter& parameter);

}  // namespace zento::sim
