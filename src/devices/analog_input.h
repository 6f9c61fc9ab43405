#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "core/workstation.h"
#include "devices/pci_card.h"
#include "devices/vendor/tables.h"

namespace zento {

// One face over the three kinds of analog input board. Settings::ADBoard says which one an open
// takes; the board that was opened stays in use until Close, so that editing the settings cannot
// send a running measurement's reads to a board nobody opened.
class AnalogInput {
 public:
  static constexpr int kChannels = 64;

  AnalogInput(Workstation& workstation, vendor::Libraries& libraries, PciCard& card)
      : workstation_(workstation),
        port_(libraries.port_io),
        aio_(libraries.aio),
        dask_(libraries.dask),
        card_(card) {}
  AnalogInput(const AnalogInput&) = delete;
  AnalogInput& operator=(const AnalogInput&) = delete;

  // 0 = success; else the vendor's status, the negative result of registering the card, or
  // kNoLibrary. Opening an open board is harmless; a failure leaves it as it is. An ADBoard that
  // names no board opens with success and reads 0 V.
  std::int32_t Open();

  // One conversion of channel 0 to 63, in volts at the board's input. Nothing when no board is
  // open, the channel does not exist, or the conversion never ended. A status that the vendor's
  // read returns does not change the value; LastProblem tells it.
  std::optional<double> Read(std::uint8_t channel);

  // The sum over `rounds` of one conversion of each channel in turn: sums[i] belongs to channels[i]
  // (at least as many sums as channels), in volts. False at the first conversion that fails as in
  // Read; the sums are then of no use. The board is looked up once, and nothing is allocated.
  [[nodiscard]] bool ReadSum(std::span<const std::uint8_t> channels, int rounds,
                             std::span<double> sums);

  // Whether a mean of readings, in volts, lies within one and a half steps of where the boards'
  // widest range ends, so that what is measured may be higher than that. All boards read +-2.5 V in
  // 12 bits.
  static bool AtUpperLimit(double volts);

  void Close();

  // What went wrong last, for a person; empty when nothing did since the last open.
  std::string LastProblem() const;

 private:
  enum class Board { kNone, kPort, kAio, kPci9112, kUnknown };

  Board Configured() const;
  std::int32_t OpenPort();
  std::int32_t OpenAio();
  std::int32_t OpenPci9112();
  bool ConvertOnPort(std::uint8_t channel, double& volts);
  double ConvertOnAio(std::uint8_t channel);
  double ConvertOnPci9112(std::uint16_t card, std::uint8_t channel);
  double ConvertInBestRange(std::uint16_t card, std::uint8_t channel);
  template <typename Convert>
  static bool Sum(std::span<const std::uint8_t> channels, int rounds, std::span<double> sums,
                  Convert convert);
  std::int32_t NoLibrary(const std::string& missing, const char* what);

  Workstation& workstation_;
  vendor::PortIo& port_;
  vendor::Aio& aio_;
  vendor::Dask& dask_;
  PciCard& card_;

  Board board_ = Board::kNone;
  std::int32_t aio_id_ = 0;
  // The library reaches these words by their address: this object never moves.
  std::uint16_t aio_data_ = 0;
  std::uint16_t aio_channel_ = 0;
  std::int32_t aio_data_address_ = 0;
  std::int32_t aio_channel_address_ = 0;
  std::array<std::uint8_t, kChannels> range_codes_{};
  std::int32_t read_status_ = 0;  // last status other than 0 that a vendor's read returned
  std::string problem_;
};

}  // namespace zento
