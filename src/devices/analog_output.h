#pragma once

#include <cstdint>
#include <string>

#include "core/workstation.h"
#include "devices/pci_card.h"
#include "devices/vendor/tables.h"

namespace zento {

// The PCI-9112's analog outputs. Channel 0 carries the motor voltage, 0 to 5 V.
class AnalogOutput {
 public:
  AnalogOutput(Workstation& workstation, vendor::Libraries& libraries, PciCard& card)
      : workstation_(workstation), dask_(libraries.dask), card_(card) {}
  AnalogOutput(const AnalogOutput&) = delete;
  AnalogOutput& operator=(const AnalogOutput&) = delete;

  // 0 = success, also when the settings name no output; else the vendor's status, the negative
  // result of registering the card, or kNoLibrary.
  std::int16_t Open();

  // Sends `volts`, clamped to 0 to 5 (what is not a number becomes 0), and leaves what was sent in
  // `volts`. Does nothing at all without an output. Reports nothing; LastProblem tells.
  void Write(std::int16_t channel, double& volts);

  // Releases the card; harmless when nothing is open.
  void Release();

  // Settings::DABoard, or 1 from a successful open to the release: a change in the settings never
  // takes a turning motor out of the program's hands.
  std::int32_t Board() const { return open_ ? 1 : workstation_.settings.DABoard; }

  // What went wrong last, for a person; empty when nothing did since the last open.
  const std::string& LastProblem() const { return problem_; }

 private:
  Workstation& workstation_;
  vendor::Dask& dask_;
  PciCard& card_;
  bool open_ = false;
  std::string problem_;
};

}  // namespace zento
