#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/settings.h"
#include "devices/vendor/tables.h"

namespace zento {

// The PCI-9112 that analog input, analog output and outlets share. Whichever of them opens first
// registers it.
class PciCard {
 public:
  PciCard(const Settings& settings, vendor::Dask& dask) : settings_(settings), dask_(dask) {}
  PciCard(const PciCard&) = delete;
  PciCard& operator=(const PciCard&) = delete;

  // Registers the configured card unless it is registered. 0 = success; else negative, with the
  // problem: what the vendor returned, or kNoLibrary.
  std::int32_t Register(std::string& problem);
  // Releases a registered card, so that the next Register registers it anew.
  void Release();
  bool Registered() const { return handle_ >= 0; }
  // Most of the vendor's calls take the handle, reading and writing ports take the card's number.
  std::uint16_t Handle() const { return static_cast<std::uint16_t>(handle_); }
  // The number of the card in use: a change in the settings counts from the next registration.
  std::uint16_t Number() const;

 private:
  const Settings& settings_;
  vendor::Dask& dask_;
  std::int32_t handle_ = -1;  // -1 = not registered
  std::optional<std::uint16_t> number_;
};

// Status of an open whose vendor library is not there.
inline constexpr std::int16_t kNoLibrary = -1;

}  // namespace zento
