#include "devices/analog_input.h"

#include <algorithm>
#include <cmath>

namespace zento {
namespace {

constexpr std::uint16_t kDataPort = 0x1D0;
constexpr std::uint16_t kStatusPort = 0x1D1;
constexpr std::uint8_t kStart = 0x10;  // added to the channel: select it and convert
constexpr std::uint8_t kDone = 0x40;
// A port read takes about a microsecond and a conversion some tens, so a board that is not done
// after this many looks will never be.
constexpr int kMostLooks = 10'000;

// Full scale in volts by the vendor's range code, and the codes in use.
constexpr std::uint8_t kCoarsest = 3;
constexpr std::uint8_t kFinest = 5;
constexpr std::array<double, kFinest + 1> kFullScale = {0, 0, 0, 2.5, 1.25, 0.625};

}  // namespace

AnalogInput::Board AnalogInput::Configured() const {
  switch (workstation_.settings.ADBoard) {
    case 0:
      return Board::kPort;
    case 1:
      return Board::kAio;
    case 2:
      return Board::kPci9112;
    default:
      return Board::kUnknown;
  }
}

std::int32_t AnalogInput::Open() {
  problem_.clear();
  read_status_ = 0;
  const bool open = board_ != Board::kNone && board_ != Board::kUnknown;
  const Board board = open ? board_ : Configured();
  std::int32_t status = 0;
  switch (board) {
    case Board::kPort:
      status = OpenPort();
      break;
    case Board::kAio:
      status = OpenAio();
      break;
    case Board::kPci9112:
      status = OpenPci9112();
      break;
    default:
      break;
  }
  if (status == 0) board_ = board;
  return status;
}

std::int32_t AnalogInput::OpenPort() {
  if (!port_.PortInputByte || !port_.PortOutputByte) {
    return NoLibrary(port_.missing, "port-mapped input board");
  }
  port_.PortOutputByte(kStatusPort, 1);
  port_.PortInputByte(kDataPort);
  return 0;
}

std::int32_t AnalogInput::OpenAio() {
  if (!aio_.AioOpenEx || !aio_.AioSetRange || !aio_.AioInp || !aio_.BinaryToVI || !aio_.AioClose ||
      !aio_.LpWord) {
    return NoLibrary(aio_.missing, "analog I/O board");
  }
  const std::string& device = workstation_.settings.DeviceName;
  std::int32_t id = 0;
  std::int32_t status = aio_.AioOpenEx(device.c_str(), &id);
  const char* step = "AioOpenEx";
  if (status == 0) {
    aio_id_ = id;
    aio_data_address_ = aio_.LpWord(&aio_data_);
    aio_channel_address_ = aio_.LpWord(&aio_channel_);
    status = aio_.AioSetRange(aio_id_, 0, 0, 0, 2);
    step = "AioSetRange";
  }
  if (status != 0) {
    problem_ = "analog I/O board " + device + ": " + step + " returned " + std::to_string(status);
  }
  return status;
}

std::int32_t AnalogInput::OpenPci9112() {
  const std::int32_t status = card_.Register();
  if (status != 0) {
    problem_ = card_.Problem();
    return status;
  }
  if (!dask_.AI_VReadChannel) return NoLibrary(dask_.missing, "PCI-9112 input");
  range_codes_.fill(kCoarsest);
  return 0;
}

std::int32_t AnalogInput::NoLibrary(const std::string& missing, const char* what) {
  problem_ = missing.empty() ? std::string(what) + ": its library is not there" : missing;
  return kNoLibrary;
}

bool AnalogInput::ConvertOnPort(std::uint8_t channel, double& volts) {
  port_.PortOutputByte(kDataPort, static_cast<std::uint8_t>(channel + kStart));
  int looks = 0;
  while ((port_.PortInputByte(kStatusPort) & kDone) == 0) {
    if (++looks == kMostLooks) {
      problem_ = "port-mapped input board: a conversion did not end";
      return false;
    }
  }
  const int low = port_.PortInputByte(kDataPort);
  const int high = port_.PortInputByte(kStatusPort) & 0x0F;
  volts = (high * 256 + low) * 5.0 / 4096 - 2.5;
  return true;
}

double AnalogInput::ConvertOnAio(std::uint8_t channel) {
  aio_channel_ = channel;
  vendor::AioTransfer transfer{aio_data_address_, aio_channel_address_, 1};
  if (const std::int32_t status = aio_.AioInp(aio_id_, &transfer)) read_status_ = status;
  return static_cast<double>(
      aio_.BinaryToVI(-2.5f, 2.5f, 1, 12, static_cast<std::int16_t>(aio_data_)));
}

// The vendor's read takes the card's number, not the handle.
double AnalogInput::ConvertOnPci9112(std::uint16_t card, std::uint8_t channel) {
  double volts = 0;
  if (const auto status = dask_.AI_VReadChannel(card, channel, kCoarsest, &volts)) {
    read_status_ = status;
  }
  return volts;
}

// The range learnt from this reading serves the channel's next one.
double AnalogInput::ConvertInBestRange(std::uint16_t card, std::uint8_t channel) {
  std::uint8_t& code = range_codes_[channel];
  double volts = 0;
  if (const auto status = dask_.AI_VReadChannel(card, channel, code, &volts)) {
    read_status_ = status;
  }
  if (std::abs(volts / kFullScale[code]) < 0.2 && code < kFinest) ++code;
  if (std::abs(volts / kFullScale[code]) > 0.8 && code > kCoarsest) --code;
  return volts;
}

template <typename Convert>
bool AnalogInput::Sum(std::span<const std::uint8_t> channels, int rounds, std::span<double> sums,
                      Convert convert) {
  std::fill_n(sums.begin(), channels.size(), 0.0);
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < channels.size(); ++i) {
      double volts = 0;
      if (!convert(channels[i], volts)) return false;
      sums[i] += volts;
    }
  }
  return true;
}

bool AnalogInput::ReadSum(std::span<const std::uint8_t> channels, int rounds,
                          std::span<double> sums) {
  if (sums.size() < channels.size() ||
      std::any_of(channels.begin(), channels.end(), [](int c) { return c >= kChannels; })) {
    problem_ = "analog input: there are only channels 0 to 63";
    return false;
  }
  switch (board_) {
    case Board::kPort:
      return Sum(channels, rounds, sums, [this](std::uint8_t channel, double& volts) {
        return ConvertOnPort(channel, volts);
      });
    case Board::kAio:
      return Sum(channels, rounds, sums, [this](std::uint8_t channel, double& volts) {
        volts = ConvertOnAio(channel);
        return true;
      });
    case Board::kPci9112: {
      const std::uint16_t card = card_.Number();
      if (workstation_.settings.DynamicRange == 0) {
        return Sum(channels, rounds, sums, [this, card](std::uint8_t channel, double& volts) {
          volts = ConvertOnPci9112(card, channel);
          return true;
        });
      }
      return Sum(channels, rounds, sums, [this, card](std::uint8_t channel, double& volts) {
        volts = ConvertInBestRange(card, channel);
        return true;
      });
    }
    case Board::kUnknown:
      return Sum(channels, rounds, sums, [](std::uint8_t, double&) { return true; });
    case Board::kNone:
      break;
  }
  problem_ = "analog input: no board is open";
  return false;
}

std::optional<double> AnalogInput::Read(std::uint8_t channel) {
  double volts = 0;
  if (!ReadSum({&channel, 1}, 1, {&volts, 1})) return std::nullopt;
  return volts;
}

bool AnalogInput::AtUpperLimit(double volts) {
  constexpr double kStep = 2 * kFullScale[kCoarsest] / 4096;
  return volts >= kFullScale[kCoarsest] - 1.5 * kStep;
}

void AnalogInput::Close() {
  if (board_ == Board::kAio) aio_.AioClose(aio_id_);
  if (board_ == Board::kPci9112) card_.Release();
  board_ = Board::kNone;
}

std::string AnalogInput::LastProblem() const {
  if (!problem_.empty() || read_status_ == 0) return problem_;
  return "analog input: a read returned status " + std::to_string(read_status_);
}

}  // namespace zento
