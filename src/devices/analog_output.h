#pragma once

#include <cstdint>
#include <string>

#include "core/settings.h"
#include "core/workstation.h"
#include "devices/device_table.h"
#include "devices/pci_card.h"
#include "devices/vendor/tables.h"

namespace zento {

// The analog output that Settings::DABoard chooses. Channel 0 carries the motor voltage, 0 to 5 V.
// From a successful open to the release it stays the one that was opened: a change in the settings
// never takes a turning motor out of the program's hands.
class AnalogOutput {
 public:
  static constexpr double kMostVolts = 5.0;

  explicit AnalogOutput(const DeviceParts& parts)
      : output_(kMotorOutputs, &Settings::DABoard, parts) {}
  AnalogOutput(const AnalogOutput&) = delete;
  AnalogOutput& operator=(const AnalogOutput&) = delete;

  // 0 = success, also when the settings name no output; else the vendor's status, the negative
  // result of registering the card, or kNoLibrary.
  std::int16_t Open();

  // Sends `volts`, clamped to 0 to 5 (what is not a number becomes 0), and returns what was sent;
  // without an output does nothing at all. Reports nothing; LastProblem tells.
  double Write(std::int16_t channel, double volts);

  // Closes the output; harmless when nothing is open.
  void Release();

  // Of the output in use, else Settings::DABoard; 0 = none.
  std::int32_t Board() const { return output_.Number(); }

  // What went wrong last, for a person; empty when nothing did since the last open.
  const std::string& LastProblem() const { return problem_; }

 private:
  ChosenDevice<VoltageOutput> output_;
  std::string problem_;
};

}  // namespace zento
