#include "devices/outlets.h"

namespace zento {
namespace {

constexpr std::uint16_t kOutletPort = 0x40;

std::string LibraryMissing(const std::string& missing) {
  return WhyMissing(missing, "outlets: the output's");
}

void WritePort(vendor::PortIo& port, std::uint8_t bits, std::string& problem) {
  if (port.PortOutputByte) {
    port.PortOutputByte(kOutletPort, bits);
  } else {
    problem = LibraryMissing(port.missing);
  }
}

class PrinterPort final : public OutletOutput {
 public:
  explicit PrinterPort(vendor::PortIo& port) : port_(port) {}

  std::int16_t Open(std::string& problem) override {
    if (port_.PortOutputByte) return 0;
    problem = LibraryMissing(port_.missing);
    return kNoLibrary;
  }
  void Write(std::uint8_t bits, std::string& problem) override { WritePort(port_, bits, problem); }

 private:
  vendor::PortIo& port_;
};

class Pci9112Outlets final : public OutletOutput {
 public:
  Pci9112Outlets(vendor::Dask& dask, PciCard& card) : dask_(dask), card_(card) {}

  std::int16_t Open(std::string& problem) override {
    if (const std::int32_t status = card_.Register(problem)) {
      return static_cast<std::int16_t>(status);
    }
    if (dask_.DO_WritePort) return 0;
    problem = LibraryMissing(dask_.missing);
    return kNoLibrary;
  }
  void Write(std::uint8_t bits, std::string& problem) override {
    if (!dask_.DO_WritePort) {
      problem = LibraryMissing(dask_.missing);
      return;
    }
    const std::int16_t status = dask_.DO_WritePort(card_.Number(), 0, bits);
    if (status != 0) problem = "outlets: a write returned " + std::to_string(status);
  }
  void Close() override { card_.Release(); }

 private:
  vendor::Dask& dask_;
  PciCard& card_;
};

}  // namespace

std::unique_ptr<OutletOutput> MakePrinterPort(const DeviceParts& parts) {
  return std::make_unique<PrinterPort>(parts.libraries.port_io);
}

std::unique_ptr<OutletOutput> MakePci9112Outlets(const DeviceParts& parts) {
  return std::make_unique<Pci9112Outlets>(parts.libraries.dask, parts.card);
}

bool Outlets::Open() {
  if (InUse()) return true;
  problem_.clear();
  OutletOutput* const output = output_.Get();
  if (output != nullptr && output->Open(problem_) != 0) {
    if (on_refused) on_refused();
    return false;
  }
  output_.Keep(output_.Number());
  return true;
}

bool Outlets::Power(int ch, std::uint8_t sw) {
  if (!Open()) return false;
  if (ch < 0 || ch >= kCount) return true;
  const auto mask = static_cast<std::uint8_t>(1 << ch);
  return Send(static_cast<std::uint8_t>((state_ & ~mask) | ((sw & 1) != 0 ? mask : 0)));
}

bool Outlets::PowerOff() {
  return Open() && Send(0);
}

bool Outlets::Powerb(std::uint8_t b) {
  if (!Open()) return false;
  if (Control() != 0) WritePort(port_, b, problem_);
  return true;
}

bool Outlets::Send(std::uint8_t state) {
  state_ = state;
  if (on_change) on_change();
  if (OutletOutput* const output = output_.Get()) output->Write(state_, problem_);
  return true;
}

void Outlets::Release() {
  if (OutletOutput* const output = output_.Get()) output->Close();
  output_.LetGo();
}

}  // namespace zento
