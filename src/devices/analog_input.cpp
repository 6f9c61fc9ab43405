#include "devices/analog_input.h"

#include <algorithm>

#include "core/settings.h"

namespace zento {

std::int32_t AnalogInput::Open() {
  trouble_ = {};
  // A number that names no board is none that could be in use.
  if (board_.Get() == nullptr) board_.LetGo();
  InputBoard* const board = board_.Get();
  const std::int32_t status = board != nullptr ? board->Open(trouble_) : 0;
  if (status == 0) board_.Keep(board_.Number());
  return status;
}

bool AnalogInput::ReadSum(std::span<const std::uint8_t> channels, int rounds,
                          std::span<double> sums) {
  if (sums.size() < channels.size() ||
      std::any_of(channels.begin(), channels.end(), [](int c) { return c >= kChannels; })) {
    trouble_.problem = "analog input: there are only channels 0 to 63";
    return false;
  }
  if (!board_.Kept()) {
    trouble_.problem = "analog input: no board is open";
    return false;
  }
  if (InputBoard* const board = board_.Get()) {
    return board->ReadSum(channels, rounds, sums, trouble_);
  }
  std::fill_n(sums.begin(), channels.size(), 0.0);
  return true;
}

std::optional<double> AnalogInput::Read(std::uint8_t channel) {
  double volts = 0;
  if (!ReadSum({&channel, 1}, 1, {&volts, 1})) return std::nullopt;
  return volts;
}

bool AnalogInput::AtUpperLimit(double volts) {
  constexpr double kStep = 2 * InputBoard::kFullScale / InputBoard::kCodes;
  return volts >= InputBoard::kFullScale - 1.5 * kStep;
}

void AnalogInput::Close() {
  InputBoard* const board = board_.Kept() ? board_.Get() : nullptr;
  if (board != nullptr) board->Close();
  board_.LetGo();
}

std::string AnalogInput::LastProblem() const {
  if (!trouble_.problem.empty() || trouble_.read_status == 0) return trouble_.problem;
  return "analog input: a read returned status " + std::to_string(trouble_.read_status);
}

}  // namespace zento
