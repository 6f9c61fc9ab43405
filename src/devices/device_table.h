#pragma once

// The devices that the settings can choose, by kind: what each kind must be able to do, and one
// table of the devices there are. A device's number, the value of its setting, is its place in the
// table. The settings window, the listing of the settings and the opening of devices all read these
// rows: a new device is a row here and a class of its own.

#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "devices/pci_card.h"
#include "devices/vendor/tables.h"

namespace zento {

// What a device is built from; all of it outlives the device. A device may look at settings of its
// own, such as a name, but never at the ones that choose between devices.
struct DeviceParts {
  const Settings& settings;
  vendor::Libraries& libraries;
  PciCard& card;
};

// Converts voltages of -2.5 to 2.5 V in 12 bits, on channels 0 to 63.
class InputBoard {
 public:
  static constexpr int kChannels = 64;
  static constexpr double kFullScale = 2.5;  // V, of the widest range
  static constexpr int kCodes = 4096;

  struct Trouble {
    std::string problem;           // for a person
    std::int32_t read_status = 0;  // last status other than 0 that a vendor's read returned
  };

  virtual ~InputBoard() = default;
  // 0 = success; else the vendor's status or kNoLibrary, with the problem. Harmless on an open
  // board, which a failure leaves as it is.
  virtual std::int32_t Open(Trouble& trouble) = 0;
  // The sum over `rounds` of one conversion of each channel in turn, in volts: sums[i] belongs to
  // channels[i]. False, with the problem, at the first conversion that did not take place. Called
  // for thousands of conversions a tick, so it allocates nothing.
  virtual bool ReadSum(std::span<const std::uint8_t> channels, int rounds, std::span<double> sums,
                       Trouble& trouble) = 0;
  virtual void Close() {}

 protected:
  // ReadSum over `convert(channel, volts)`, which is false when there is no value.
  template <typename Convert>
  static bool Sum(std::span<const std::uint8_t> channels, int rounds, std::span<double> sums,
                  Convert convert) {
    for (std::size_t i = 0; i < channels.size(); ++i) sums[i] = 0;
    for (int round = 0; round < rounds; ++round) {
      for (std::size_t i = 0; i < channels.size(); ++i) {
        double volts = 0;
        if (!convert(channels[i], volts)) return false;
        sums[i] += volts;
      }
    }
    return true;
  }
};

// Puts voltages of 0 to 5 V out.
class VoltageOutput {
 public:
  virtual ~VoltageOutput() = default;
  // 0 = success; else the vendor's status or kNoLibrary.
  virtual std::int16_t Open(std::string& problem) = 0;
  virtual void Write(std::int16_t channel, double volts, std::string& problem) = 0;
  virtual void Close() {}
};

// Carries the byte of outlet switches, bit i = outlet i.
class OutletOutput {
 public:
  virtual ~OutletOutput() = default;
  // 0 = success; else the vendor's status or kNoLibrary.
  virtual std::int16_t Open(std::string& problem) = 0;
  virtual void Write(std::uint8_t bits, std::string& problem) = 0;
  // The outlets stay as they are.
  virtual void Close() {}
};

// Carries command lines to the instruments on the bus. `text` tells what a call came to.
class BusLink {
 public:
  virtual ~BusLink() = default;
  // Harmless on a link that works.
  virtual bool Initialise(std::string& text) = 0;
  // Forgets a link that failed, so that the next Initialise begins from scratch.
  virtual void Reset() {}
  // Returns when the line was handed over, at the latest after the link's timeout.
  virtual bool Send(std::int32_t address, std::string_view command, std::string& text) = 0;
};

template <typename Device>
struct DeviceRow {
  std::string_view name;                                // in the listing of the settings
  std::string_view caption;                             // of its option in the settings window
  std::unique_ptr<Device> (*make)(const DeviceParts&);  // null: no device
};

std::unique_ptr<InputBoard> MakePortBoard(const DeviceParts& parts);
std::unique_ptr<InputBoard> MakeAioBoard(const DeviceParts& parts);
std::unique_ptr<InputBoard> MakePci9112Input(const DeviceParts& parts);
inline constexpr DeviceRow<InputBoard> kInputBoards[] = {
    {"port-mapped", "Port-mapped 12-bit board", MakePortBoard},
    {"AD12-16U(PCI)E", "AD12-16U(PCI)E", MakeAioBoard},
    {"PCI-9112", "PCI-9112", MakePci9112Input},
};

std::unique_ptr<VoltageOutput> MakePci9112Output(const DeviceParts& parts);
inline constexpr DeviceRow<VoltageOutput> kMotorOutputs[] = {
    {"none", "No Control", nullptr},
    {"PCI-9112 analog output", "Controlled by PCI-9112 DA Output", MakePci9112Output},
};

std::unique_ptr<OutletOutput> MakePrinterPort(const DeviceParts& parts);
std::unique_ptr<OutletOutput> MakePci9112Outlets(const DeviceParts& parts);
inline constexpr DeviceRow<OutletOutput> kOutletOutputs[] = {
    {"none", "No Control", nullptr},
    {"printer port", "Printer Port", MakePrinterPort},
    {"PCI-9112", "PCI-9112", MakePci9112Outlets},
};

std::unique_ptr<BusLink> MakeSerialConverter(const DeviceParts& parts);
std::unique_ptr<BusLink> MakeBusBoard(const DeviceParts& parts);
inline constexpr DeviceRow<BusLink> kBusLinks[] = {
    {"none", "No Control", nullptr},
    {"serial converter", "Controll by GPIB-232CT-A", MakeSerialConverter},
    {"bus board", "Controll by Contec GPIB Boards/9801-29n", MakeBusBoard},
};

template <typename Device, std::size_t count>
std::vector<std::string> Captions(const DeviceRow<Device> (&rows)[count]) {
  std::vector<std::string> captions;
  for (const DeviceRow<Device>& row : rows) captions.emplace_back(row.caption);
  return captions;
}

// The devices that a setting chooses between, as "0 none, 1 printer port"; empty for a setting that
// chooses no device.
std::string DeviceNames(std::int32_t Settings::*setting);

// Why a function of a vendor's table cannot be called: the table's own reason, else that
// `whose` library, such as "bus board: its", is not there.
inline std::string WhyMissing(const std::string& missing, const char* whose) {
  return missing.empty() ? std::string(whose) + " library is not there" : missing;
}

// The device that a setting chooses; one that was put to use stays chosen until it is let go, so
// that editing the settings never takes a running device out of the program's hands.
template <typename Device>
class ChosenDevice {
 public:
  ChosenDevice(std::span<const DeviceRow<Device>> rows, std::int32_t Settings::*setting,
               const DeviceParts& parts)
      : rows_(rows), setting_(setting), parts_(parts), made_(rows.size()) {}

  std::int32_t Number() const { return kept_.value_or(parts_.settings.*setting_); }
  // The device of that number; null where it names none. Lives as long as this object.
  Device* Get(std::int32_t number) {
    const auto at = static_cast<std::size_t>(number);
    if (number < 0 || at >= rows_.size() || rows_[at].make == nullptr) return nullptr;
    if (!made_[at]) made_[at] = rows_[at].make(parts_);
    return made_[at].get();
  }
  Device* Get() { return Get(Number()); }

  void Keep(std::int32_t number) { kept_ = number; }
  void LetGo() { kept_.reset(); }
  bool Kept() const { return kept_.has_value(); }

 private:
  std::span<const DeviceRow<Device>> rows_;
  std::int32_t Settings::*setting_;
  DeviceParts parts_;
  std::vector<std::unique_ptr<Device>> made_;  // by number
  std::optional<std::int32_t> kept_;
};

}  // namespace zento
