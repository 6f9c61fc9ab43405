#include "devices/pci_card.h"

#include "core/settings.h"

namespace zento {
namespace {

constexpr std::uint16_t kPci9112 = 22;  // the vendor's card type

}  // namespace

std::int32_t PciCard::Register(std::string& problem) {
  if (Registered()) return 0;
  if (!dask_.Register_Card) {
    problem = dask_.missing.empty() ? "PCI-9112: its library is not there" : dask_.missing;
    return kNoLibrary;
  }
  const auto number = static_cast<std::uint16_t>(settings_.CardNumber);
  const std::int16_t handle = dask_.Register_Card(kPci9112, number);
  if (handle < 0) {
    problem = "PCI-9112 card " + std::to_string(number) + " could not be registered: status " +
              std::to_string(handle);
    return handle;
  }
  handle_ = handle;
  number_ = number;
  return 0;
}

void PciCard::Release() {
  if (!Registered()) return;
  if (dask_.Release_Card) dask_.Release_Card(Handle());
  handle_ = -1;
  number_.reset();
}

std::uint16_t PciCard::Number() const {
  return number_.value_or(static_cast<std::uint16_t>(settings_.CardNumber));
}

}  // namespace zento
