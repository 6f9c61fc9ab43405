#pragma once

#include <string>

// What the function generator gets when it is sent a value: its commands have few digits.

namespace zento {

double PotentialOnBus(double volts);        // V; whole millivolts, four digits of them
double RateOnBus(double millivolts_per_s);  // mV/s; two digits

// What became of a potential or a rate, as a half sentence ("is sent as 2 V: ..."), empty when it
// gets there as it is. `lost` tells values that cannot be sent from those that are only rounded.
std::string PotentialRemark(double volts, bool& lost);
std::string RateRemark(double millivolts_per_s);

}  // namespace zento
