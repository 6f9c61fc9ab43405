#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/workstation.h"
#include "devices/vendor/tables.h"

namespace zento {

// The PCI-9112 that analog input, analog output and outlets share. Whichever of them opens first
// registers it; Workstation::card_handle is -1 while nobody has.
class PciCard {
 public:
  PciCard(Workstation& workstation, vendor::Dask& dask) : workstation_(workstation), dask_(dask) {}
  PciCard(const PciCard&) = delete;
  PciCard& operator=(const PciCard&) = delete;

  // Registers the configured card unless it is registered. 0 = success, else negative: what the
  // vendor returned, or kNoLibrary.
  std::int32_t Register();
  // Releases a registered card, so that the next Register registers it anew.
  void Release();
  bool Registered() const { return workstation_.card_handle >= 0; }
  std::uint16_t Handle() const { return static_cast<std::uint16_t>(workstation_.card_handle); }
  // The number of the card in use: a change in the settings counts from the next registration.
  std::uint16_t Number() const;

  // Why the last Register failed; empty after a success.
  const std::string& Problem() const { return problem_; }

 private:
  Workstation& workstation_;
  vendor::Dask& dask_;
  std::optional<std::uint16_t> number_;
  std::string problem_;
};

// Status of an open whose vendor library is not there.
inline constexpr std::int16_t kNoLibrary = -1;

}  // namespace zento
