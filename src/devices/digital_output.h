#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/workstation.h"
#include "devices/pci_card.h"
#include "devices/vendor/tables.h"

namespace zento {

// The byte of outlet switches, one bit an outlet. Settings::PowerControl says where it goes.
class DigitalOutput {
 public:
  static constexpr std::uint16_t kOutletPort = 0x40;

  DigitalOutput(Workstation& workstation, vendor::Libraries& libraries, PciCard& card)
      : workstation_(workstation), port_(libraries.port_io), dask_(libraries.dask), card_(card) {}
  DigitalOutput(const DigitalOutput&) = delete;
  DigitalOutput& operator=(const DigitalOutput&) = delete;

  // 0 = success, also when the settings name no output; else the negative result of registering
  // the card, or kNoLibrary.
  std::int16_t Open();
  // Reports nothing; LastProblem tells.
  void Write(std::uint8_t bits);
  // Straight to the outlet port, whichever output is in use; nothing when none is.
  void WritePort(std::uint8_t bits);
  // The outlets stay as they are.
  void Release();

  // Settings::PowerControl as it was at the last successful open, so that an outlet is switched off
  // by the output that switched it on; before any open, as it is now.
  std::int32_t Control() const { return control_.value_or(workstation_.settings.PowerControl); }

  // What went wrong last, for a person; empty when nothing did since the last open.
  const std::string& LastProblem() const { return problem_; }

 private:
  Workstation& workstation_;
  vendor::PortIo& port_;
  vendor::Dask& dask_;
  PciCard& card_;
  std::optional<std::int32_t> control_;
  std::string problem_;
};

}  // namespace zento
