#include "devices/analog_output.h"

namespace zento {
namespace {

class Pci9112Output final : public VoltageOutput {
 public:
  Pci9112Output(vendor::Dask& dask, PciCard& card) : dask_(dask), card_(card) {}

  std::int16_t Open(std::string& problem) override {
    if (const std::int32_t status = card_.Register(problem)) {
      return static_cast<std::int16_t>(status);
    }
    if (!dask_.AO_9112_Config || !dask_.AO_VWriteChannel) {
      problem = WhyMissing(dask_.missing, kIts);
      return kNoLibrary;
    }
    const std::int16_t first = dask_.AO_9112_Config(card_.Handle(), 0, kReferenceVolts);
    const std::int16_t second = dask_.AO_9112_Config(card_.Handle(), 1, kReferenceVolts);
    if (first != 0 || second != 0) {
      problem = "PCI-9112 output: configuring returned " + std::to_string(first) +
                " for channel 0, " + std::to_string(second) + " for channel 1";
    }
    return second;
  }

  void Write(std::int16_t channel, double volts, std::string& problem) override {
    if (!dask_.AO_VWriteChannel) {
      problem = WhyMissing("", kIts);
      return;
    }
    if (!card_.Registered()) {
      problem = "PCI-9112 output: the card is not registered";
      return;
    }
    const std::int16_t status =
        dask_.AO_VWriteChannel(card_.Handle(), static_cast<std::uint16_t>(channel), volts);
    if (status != 0) problem = "PCI-9112 output: a write returned " + std::to_string(status);
  }

  void Close() override { card_.Release(); }

 private:
  static constexpr double kReferenceVolts = -5.0;
  static constexpr const char* kIts = "PCI-9112 output: its";

  vendor::Dask& dask_;
  PciCard& card_;
};

}  // namespace

std::unique_ptr<VoltageOutput> MakePci9112Output(const DeviceParts& parts) {
  return std::make_unique<Pci9112Output>(parts.libraries.dask, parts.card);
}

std::int16_t AnalogOutput::Open() {
  problem_.clear();
  VoltageOutput* const output = output_.Get();
  if (output == nullptr) return 0;
  const std::int16_t status = output->Open(problem_);
  if (status == 0) output_.Keep(output_.Number());
  return status;
}

double AnalogOutput::Write(std::int16_t channel, double volts) {
  if (Board() == 0) return volts;
  // The order of the comparisons makes 0 of what is not a number.
  const double sent = volts >= kMostVolts ? kMostVolts : volts >= 0 ? volts : 0;
  if (VoltageOutput* const output = output_.Get()) output->Write(channel, sent, problem_);
  return sent;
}

void AnalogOutput::Release() {
  if (VoltageOutput* const output = output_.Get()) output->Close();
  output_.LetGo();
}

}  // namespace zento
