#include "devices/function_generator.h"

#include <algorithm>
#include <cmath>

#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

std::string Last(const std::string& text, std::size_t count) {
  return text.substr(text.size() - std::min(count, text.size()));
}

// Less is the arithmetic's own: 0.1 + 0.2 is sent as it is.
constexpr double kLeastShift = 1e-9;  // V
// Half a millivolt is what rounding may take; a lost leading digit takes volts.
constexpr double kRounding = 0.000501;  // V

std::string SelectFunction(std::int32_t function) {
  return "F" + Last(std::to_string(function), 1) + "ED1";
}

}  // namespace

std::string PotentialCode(double volts) {
  const double millivolts = volts * 1000;
  return (millivolts < 0 ? "-" : "+") + Last(Format(std::abs(millivolts), "0000"), 4);
}

std::string RateCode(double scan_rate) {
  return Format(scan_rate / 1000, "00E+0");
}

std::string HoldCode(std::int32_t seconds) {
  return Last(Format(seconds, "000"), 3);
}

SentValue PotentialAsSent(double volts) {
  SentValue sent{ParseLenient(PotentialCode(volts)) / 1000, false, {}};
  const double shift = std::abs(sent.value - volts);
  sent.lost = shift > kRounding;
  if (shift < kLeastShift) return sent;
  sent.remark = PlainNumber(volts) + " V is sent as " + PlainNumber(sent.value, 6) + " V" +
                (sent.lost ? ": the bus takes less than 10 V" : "");
  return sent;
}

SentValue RateAsSent(double millivolts_per_s) {
  SentValue sent{ParseLenient(RateCode(millivolts_per_s)) * 1000, false, {}};
  if (std::abs(sent.value - millivolts_per_s) <= 1e-9 * std::abs(millivolts_per_s)) return sent;
  sent.remark = PlainNumber(millivolts_per_s) + " mV/s is sent as " + PlainNumber(sent.value, 6) +
                " mV/s: the bus takes two digits; the planned time is that of " +
                PlainNumber(millivolts_per_s) + " mV/s";
  return sent;
}

void FunctionGenerator::ProgrammeCyclicSweep(std::int32_t function,
                                             std::span<const double, 3> potentials,
                                             double scan_rate, std::int32_t retain_time) {
  const std::string rate = "RT" + RateCode(scan_rate);
  const auto segment = [&](const char* name, double potential) {
    Send(name);
    Send("VF" + PotentialCode(potential));
    Send(rate);
    Send("HT000E0");
    Send("YF0");
  };
  Send("SR0");
  Send(SelectFunction(function));
  Send("VF" + PotentialCode(potentials[0]));
  Send(rate);
  Send("STEP");
  Send("HT" + HoldCode(retain_time) + "E0");
  Send("YF1");
  segment("F101", potentials[0]);
  segment("F102", potentials[1]);
  segment("F103", potentials[2]);
  if (potentials[0] == potentials[2]) {
    Send("ET3");
  } else {
    segment("F104", potentials[0]);
    Send("ET4");
  }
  Send("ED0");
}

void FunctionGenerator::ProgrammePotentialStep(std::int32_t function,
                                               std::span<const double> potentials, std::int32_t t1,
                                               std::int32_t t2) {
  if (potentials.size() < 2) return;
  Send("SR0");
  Send(SelectFunction(function));
  Send("VF" + PotentialCode(potentials[0]));
  Send("RT10E9");
  Send("STEP");
  Send("HT" + HoldCode(t1) + "E0");
  Send("YF1");
  Send("F101");
  Send("VF" + PotentialCode(potentials[1]));
  Send("RT10E9");
  Send("STEP");
  Send("HT" + Last(Format(t2, "000E+0"), 6));
  Send("YF1");
  Send("ET1");
  Send("ED0");
}

void FunctionGenerator::OutputOn() {
  on_address_ = settings_.GPIBAddress;
  Send("A1");
}

void FunctionGenerator::OutputOff() {
  if (!Send("A0") && link_.Control() != 0 && link_.Recover()) Send("A0");
  on_address_.reset();
}

bool FunctionGenerator::Send(const std::string& command) {
  return link_.Send(on_address_.value_or(settings_.GPIBAddress), command);
}

}  // namespace zento
