#include "devices/digital_output.h"

namespace zento {
namespace {

constexpr std::int32_t kByPort = 1;
constexpr std::int32_t kByCard = 2;

std::string Missing(const std::string& why) {
  return why.empty() ? "outlets: the output's library is not there" : why;
}

}  // namespace

std::int16_t DigitalOutput::Open() {
  problem_.clear();
  if (control_ == 0) control_.reset();
  const std::int32_t control = Control();
  if (control == kByPort && !port_.PortOutputByte) {
    problem_ = Missing(port_.missing);
    return kNoLibrary;
  }
  if (control == kByCard) {
    if (const std::int32_t status = card_.Register()) {
      problem_ = card_.Problem();
      return static_cast<std::int16_t>(status);
    }
    if (!dask_.DO_WritePort) {
      problem_ = Missing(dask_.missing);
      return kNoLibrary;
    }
  }
  control_ = control;
  return 0;
}

void DigitalOutput::Write(std::uint8_t bits) {
  if (Control() == kByPort) WritePort(bits);
  if (Control() != kByCard) return;
  if (!dask_.DO_WritePort) {
    problem_ = Missing(dask_.missing);
    return;
  }
  // The vendor's port write takes the card's number, not the handle.
  const std::int16_t status = dask_.DO_WritePort(card_.Number(), 0, bits);
  if (status != 0) problem_ = "outlets: a write returned " + std::to_string(status);
}

void DigitalOutput::WritePort(std::uint8_t bits) {
  if (Control() == 0) return;
  if (port_.PortOutputByte) {
    port_.PortOutputByte(kOutletPort, bits);
  } else {
    problem_ = Missing(port_.missing);
  }
}

void DigitalOutput::Release() {
  if (Control() == kByCard) card_.Release();
  control_.reset();
}

}  // namespace zento
