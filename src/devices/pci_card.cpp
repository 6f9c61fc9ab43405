#include "devices/pci_card.h"

namespace zento {
namespace {

constexpr std::uint16_t kPci9112 = 22;  // the vendor's card type

}  // namespace

std::int32_t PciCard::Register() {
  problem_.clear();
  if (Registered()) return 0;
  if (!dask_.Register_Card) {
    problem_ = dask_.missing.empty() ? "PCI-9112: its library is not there" : dask_.missing;
    return kNoLibrary;
  }
  const auto number = static_cast<std::uint16_t>(workstation_.settings.CardNumber);
  const std::int16_t handle = dask_.Register_Card(kPci9112, number);
  workstation_.card_handle = handle < 0 ? -1 : handle;
  if (handle < 0) {
    problem_ = "PCI-9112 card " + std::to_string(number) + " could not be registered: status " +
               std::to_string(handle);
    return handle;
  }
  number_ = number;
  return 0;
}

void PciCard::Release() {
  if (!Registered()) return;
  if (dask_.Release_Card) dask_.Release_Card(Handle());
  workstation_.card_handle = -1;
  number_.reset();
}

std::uint16_t PciCard::Number() const {
  return number_.value_or(static_cast<std::uint16_t>(workstation_.settings.CardNumber));
}

}  // namespace zento
