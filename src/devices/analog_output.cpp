#include "devices/analog_output.h"

namespace zento {
namespace {

constexpr double kReferenceVolts = -5.0;
constexpr double kMostVolts = 5.0;

}  // namespace

std::int16_t AnalogOutput::Open() {
  problem_.clear();
  if (Board() != 1) return 0;
  if (const std::int32_t status = card_.Register()) {
    problem_ = card_.Problem();
    return static_cast<std::int16_t>(status);
  }
  if (!dask_.AO_9112_Config || !dask_.AO_VWriteChannel) {
    problem_ = dask_.missing.empty() ? "PCI-9112 output: its library is not there" : dask_.missing;
    return kNoLibrary;
  }
  const std::int16_t first = dask_.AO_9112_Config(card_.Handle(), 0, kReferenceVolts);
  const std::int16_t second = dask_.AO_9112_Config(card_.Handle(), 1, kReferenceVolts);
  if (first != 0 || second != 0) {
    problem_ = "PCI-9112 output: configuring returned " + std::to_string(first) +
               " for channel 0, " + std::to_string(second) + " for channel 1";
  }
  open_ = second == 0;
  return second;
}

void AnalogOutput::Write(std::int16_t channel, double& volts) {
  const std::int32_t board = Board();
  if (board == 0) return;
  if (volts >= kMostVolts) {
    volts = kMostVolts;
  } else if (!(volts >= 0)) {
    volts = 0;
  }
  if (board != 1) return;
  if (!dask_.AO_VWriteChannel) {
    problem_ = "PCI-9112 output: its library is not there";
    return;
  }
  if (!card_.Registered()) {
    problem_ = "PCI-9112 output: the card is not registered";
    return;
  }
  const std::int16_t status =
      dask_.AO_VWriteChannel(card_.Handle(), static_cast<std::uint16_t>(channel), volts);
  if (status != 0) problem_ = "PCI-9112 output: a write returned " + std::to_string(status);
}

void AnalogOutput::Release() {
  if (Board() == 1) card_.Release();
  open_ = false;
}

}  // namespace zento
