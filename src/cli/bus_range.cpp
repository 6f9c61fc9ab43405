#include "cli/bus_range.h"

#include <cmath>

#include "devices/function_generator.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kLeastShift = 1e-9;  // V: less is the arithmetic's own

}  // namespace

double PotentialOnBus(double volts) {
  return ParseLenient(PotentialCode(volts)) / 1000;
}

double RateOnBus(double millivolts_per_s) {
  return ParseLenient(RateCode(millivolts_per_s)) * 1000;
}

std::string PotentialRemark(double volts, bool& lost) {
  const double sent = PotentialOnBus(volts);
  const double shift = std::abs(sent - volts);
  lost = shift > 0.000501;
  if (shift < kLeastShift) return {};
  return PlainNumber(volts) + " V is sent as " + PlainNumber(sent, 6) + " V" +
         (lost ? ": the bus takes less than 10 V" : "");
}

std::string RateRemark(double millivolts_per_s) {
  const double sent = RateOnBus(millivolts_per_s);
  if (std::abs(sent - millivolts_per_s) <= 1e-9 * std::abs(millivolts_per_s)) return {};
  return PlainNumber(millivolts_per_s) + " mV/s is sent as " + PlainNumber(sent, 6) +
         " mV/s: the bus takes two digits; the planned time is that of " +
         PlainNumber(millivolts_per_s) + " mV/s";
}

}  // namespace zento
