#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "devices/device_table.h"

namespace zento {

// The analog input board that Settings::ADBoard chooses. The board that was opened stays in use
// until Close, so that editing the settings cannot send a running measurement's reads to a board
// nobody opened.
class AnalogInput {
 public:
  static constexpr int kChannels = InputBoard::kChannels;

  explicit AnalogInput(const DeviceParts& parts)
      : board_(kInputBoards, &Settings::ADBoard, parts) {}
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
  // Read; the sums are then of no use.
  [[nodiscard]] bool ReadSum(std::span<const std::uint8_t> channels, int rounds,
                             std::span<double> sums);

  // Whether a mean of readings, in volts, lies within one and a half steps of where the boards'
  // widest range ends, so that what is measured may be higher than that.
  static bool AtUpperLimit(double volts);

  void Close();

  // What went wrong last, for a person; empty when nothing did since the last open.
  std::string LastProblem() const;

 private:
  ChosenDevice<InputBoard> board_;
  InputBoard::Trouble trouble_;
};

}  // namespace zento
