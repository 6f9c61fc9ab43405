#include "sim/parameters.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "text/number.h"
#include "text/status.h"

namespace zento::sim {
namespace {

using P = Parameters;

constexpr std::string_view kCells[] = {"couple", "oxygen", "array", "blank"};  // as CellKind
constexpr std::string_view kSwitch[] = {"off", "on"};

constexpr Parameter kTable[] = {
    {"cell", "", &P::cell, 0, 0, 0,
     "couple, oxygen (reduced at a ring-disk electrode), array (ten small cells of the couple), or "
     "blank (a double layer, nothing reacts)",
     true, kCells},
    {"n", "", &P::electrons, 1, 1, 6, "electrons of the couple", true},
    {"E0", "V", &P::formal_potential, 0.25, -5, 5,
     "formal potential of the couple; of an array, its middle"},
    {"k0", "cm/s", &P::rate_constant, 0.05, 1e-12, 1e6, "standard rate constant"},
    {"alpha", "", &P::transfer, 0.5, 0.05, 0.95, "transfer coefficient of the reduction"},
    {"D_ox", "cm2/s", &P::diffusion_ox, 7.2e-6, 1e-8, 1e-3, "diffusion coefficient of Ox"},
    {"D_red", "cm2/s", &P::diffusion_red, 6.5e-6, 1e-8, 1e-3, "diffusion coefficient of Red"},
    {"C_ox", "mmol/L", &P::bulk_ox, 0, 0, 1e4, "bulk concentration of Ox"},
    {"C_red", "mmol/L", &P::bulk_red, 5, 0, 1e4, "bulk concentration of Red"},
    {"spacing", "mV", &P::spacing, 60, 0, 1000, "array: E0 from each cell to the next"},
    {"D_O2", "cm2/s", &P::diffusion_oxygen, 1.9e-5, 1e-8, 1e-3, "diffusion coefficient of oxygen"},
    {"D_H2O2", "cm2/s", &P::diffusion_peroxide, 1.5e-5, 1e-8, 1e-3,
     "diffusion coefficient of peroxide (acts only while k_H2O2 is not 0)"},
    {"C_O2", "mmol/L", &P::bulk_oxygen, 1.2, 0, 1e3, "bulk concentration of oxygen"},
    {"k_O2", "cm/s", &P::oxygen_rate, 2.6e-3, 1e-12, 1e6,
     "rate constant of its reduction at 0.9 V"},
    {"slope_O2", "mV/decade", &P::oxygen_slope, 68, 10, 1000, "Tafel slope of its reduction"},
    {"x", "", &P::peroxide_share, 0.05, 0, 1, "share of the oxygen that becomes peroxide"},
    {"k_H2O2", "cm/s", &P::peroxide_oxidation, 0, 0, 1e6,
     "rate constant of peroxide's oxidation at the disk at 1.2 V"},
    {"N", "", &P::collection, 0.39, 0, 1, "collection efficiency of the ring"},
    {"ring_lag", "ms", &P::ring_lag, 50, 0, 1e4, "delay of the ring's current (first order)"},
    {"ring", "V", &P::ring_potential, 1.2, 1, 1.6,
     "potential of the ring, where all peroxide that reaches it is oxidised, input 2"},
    {"area", "cm2", &P::area, 0.2827, 1e-6, 1e3, "area of the disk, or of each disk"},
    {"C_dl", "uF/cm2", &P::capacitance, 20, 0, 1e4, "double layer capacitance"},
    {"R_u", "ohm", &P::resistance, 10, 0, 1e6, "uncompensated resistance"},
    {"nu", "cm2/s", &P::viscosity, 0.01, 1e-4, 1, "kinematic viscosity of the solution"},
    {"T", "K", &P::temperature, 298.15, 250, 400, "temperature of the cell"},

    {"rest", "V", &P::rest_potential, 0, -5, 5, "potential while no programme runs"},
    {"own", "", &P::own, 0, 0, 1,
     "the potentiostat runs its own programme while the generator is off", true, kSwitch},
    {"own_delay", "s", &P::own_delay, 10, 0, 1e6, "wait at own_1 before each of its programmes"},
    {"own_1", "V", &P::own_first, -0.199, -5, 5,
     "first potential of its programme (between two steps of 2.5 mV, so that its rest is quiet)"},
    {"own_2", "V", &P::own_second, 1.2, -5, 5, "second potential of its programme"},
    {"own_3", "V", &P::own_third, 0.6, -5, 5, "third potential of its programme"},
    {"own_rate", "mV/s", &P::own_rate, 50, 1e-3, 1e7, "scan rate of its programme"},
    {"own_cycles", "", &P::own_cycles, 0, 0, 1000,
     "cycles own_1, own_2, own_3, own_1 before it waits again; 0 for no end", true},
    {"disk_range", "A/V", &P::disk_range, 1e-3, 1e-12, 10, "current follower of the disk, input 1"},
    {"ring_range", "A/V", &P::ring_range, 1e-5, 1e-12, 10, "current follower of the ring, input 3"},
    {"gpib_address", "", &P::gpib_address, 7, 0, 30, "bus address of the function generator", true},

    {"motor_scale", "rpm/V", &P::motor_scale, 1000, 1, 1e4, "motor law of the calibration file"},
    {"rotor_gain", "", &P::rotor_gain, 0.985, 0, 2, "true rotation rate over the motor law's"},
    {"rotor_lag", "s", &P::rotor_lag, 0.4, 1e-3, 100, "time constant of the rotor"},
    {"rotor_noise", "rpm", &P::rotor_noise, 3, 0, 1e3,
     "wandering of the rotation rate (rms); none while noise is 0"},
    {"tach_scale", "rpm/V", &P::tach_scale, 1000, 1, 1e5, "rotation signal, input 4"},

    {"noise", "mV", &P::noise, 0.6, 0, 1e3, "white noise of every input (rms)"},
    {"mains", "mV", &P::mains, 0.5, 0, 1e3, "mains pick-up of every input (amplitude)"},
    {"mains_frequency", "Hz", &P::mains_frequency, 50, 1, 1e3, "frequency of the mains"},
    {"bits", "", &P::bits, 12, 0, 16,
     "resolution of the inputs, 0 for none (only the PCI-9112 carries anything but 12)", true},
    {"seed", "", &P::seed, 1, 0, 9007199254740992.0, "seed of all noise", true},
};

static_assert(std::size(kTable) <= 64, "a bit each in Parameters::given");

// Where a cell's default is not the table's.
struct OwnStandard {
  CellKind cell;
  double P::*member;
  double standard;
};

// Oxygen rests where it is in equilibrium with water, so that no time at rest uses any of it up.
// The array shows slow voltammograms of its own without any generator, at the range and within the
// time that a multichannel monitor is first opened with. A double layer's current is small.
constexpr OwnStandard kOwnStandards[] = {
    {kOxygen, &P::capacitance, 50},      {kOxygen, &P::resistance, 5},
    {kOxygen, &P::rest_potential, 1.23}, {kOxygen, &P::own_first, 1.001},
    {kOxygen, &P::own_second, 0.2},      {kOxygen, &P::own_third, 1.001},
    {kArray, &P::bulk_red, 50},          {kArray, &P::area, 0.2},
    {kArray, &P::disk_range, 5e-3},      {kArray, &P::own, 1},
    {kArray, &P::own_second, 0.7},       {kArray, &P::own_third, -0.199},
    {kArray, &P::own_rate, 5},           {kBlank, &P::disk_range, 1e-6},
};

std::string Spell(const Parameter& parameter, double value) {
  if (parameter.choices.empty()) return PlainNumber(value);
  return std::string(parameter.choices[static_cast<std::size_t>(value)]);
}

Status Refuse(const Parameter& parameter, std::string_view value) {
  std::string why =
      "bench parameter " + std::string(parameter.key) + ": '" + std::string(value) + "' is not ";
  if (!parameter.choices.empty()) {
    why += "one of";
    for (const std::string_view choice : parameter.choices) why += " " + std::string(choice);
    return Status::Failure(why);
  }
  why += parameter.whole ? "a whole number from " : "a number from ";
  why += PlainNumber(parameter.least) + " to " + PlainNumber(parameter.most);
  if (!parameter.unit.empty()) why += " " + std::string(parameter.unit);
  return Status::Failure(why);
}

}  // namespace

Parameters::Parameters() {
  for (const Parameter& parameter : kTable) this->*parameter.member = parameter.standard;
}

std::span<const Parameter> ParameterTable() {
  return kTable;
}

double Standard(const Parameter& parameter, CellKind cell) {
  const auto* own = std::ranges::find_if(kOwnStandards, [&](const OwnStandard& row) {
    return row.cell == cell && row.member == parameter.member;
  });
  return own == std::end(kOwnStandards) ? parameter.standard : own->standard;
}

std::string OtherStandards(const Parameter& parameter, CellKind cell) {
  std::string text;
  const double here = Standard(parameter, cell);
  for (std::size_t kind = 0; kind < std::size(kCells); ++kind) {
    const double there = Standard(parameter, static_cast<CellKind>(kind));
    if (there == here) continue;
    text += (text.empty() ? "" : ", ") + std::string(kCells[kind]) + " " + Spell(parameter, there);
  }
  return text;
}

namespace {

void UseCell(Parameters& parameters, CellKind cell) {
  for (std::size_t row = 0; row < std::size(kTable); ++row) {
    if ((parameters.given >> row & 1) != 0) continue;
    parameters.*kTable[row].member = Standard(kTable[row], cell);
  }
}

}  // namespace

Status Set(Parameters& parameters, std::string_view key, std::string_view value) {
  const auto* found = std::ranges::find(kTable, key, &Parameter::key);
  if (found == std::end(kTable)) {
    return Status::Failure("the bench has no parameter '" + std::string(key) + "'");
  }
  double accepted = 0.0;
  if (!found->choices.empty()) {
    const auto choice = std::ranges::find(found->choices, value);
    if (choice == found->choices.end()) return Refuse(*found, value);
    accepted = static_cast<double>(choice - found->choices.begin());
  } else {
    const std::optional<double> number = ParseStrict(value);
    if (!number || *number < found->least || *number > found->most ||
        (found->whole && *number != std::floor(*number))) {
      return Refuse(*found, value);
    }
    accepted = *number;
  }
  parameters.*found->member = accepted;
  parameters.given |= std::uint64_t{1} << (found - std::begin(kTable));
  if (found->member == &P::cell) UseCell(parameters, static_cast<CellKind>(accepted));
  return Status::Ok();
}

Status SetFromText(Parameters& parameters, std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) {
    return Status::Failure("'" + std::string(text) + "' is not KEY=VALUE");
  }
  return Set(parameters, text.substr(0, equals), text.substr(equals + 1));
}

std::string ValueText(const Parameters& parameters, const Parameter& parameter) {
  return Spell(parameter, parameters.*parameter.member);
}

}  // namespace zento::sim
