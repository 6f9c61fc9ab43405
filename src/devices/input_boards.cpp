// The analog input boards.

#include <array>
#include <cmath>
#include <utility>

#include "devices/device_table.h"

namespace zento {
namespace {

using Channels = std::span<const std::uint8_t>;
using Sums = std::span<double>;

// The converter on two I/O ports.
class PortBoard final : public InputBoard {
 public:
  explicit PortBoard(vendor::PortIo& port) : port_(port) {}

  std::int32_t Open(Trouble& trouble) override {
    if (!port_.PortInputByte || !port_.PortOutputByte) {
      trouble.problem = WhyMissing(port_.missing, "port-mapped input board: its");
      return kNoLibrary;
    }
    port_.PortOutputByte(kStatusPort, 1);
    port_.PortInputByte(kDataPort);
    return 0;
  }

  bool ReadSum(Channels channels, int rounds, Sums sums, Trouble& trouble) override {
    const bool done = Sum(channels, rounds, sums, [this](std::uint8_t channel, double& volts) {
      return Convert(channel, volts);
    });
    if (!done) trouble.problem = "port-mapped input board: a conversion did not end";
    return done;
  }

 private:
  static constexpr std::uint16_t kDataPort = 0x1D0;
  static constexpr std::uint16_t kStatusPort = 0x1D1;
  static constexpr std::uint8_t kStart = 0x10;  // added to the channel: select it and convert
  static constexpr std::uint8_t kDone = 0x40;
  // A port read takes about a microsecond and a conversion some tens, so a board that is not done
  // after this many looks will never be.
  static constexpr int kMostLooks = 10'000;

  bool Convert(std::uint8_t channel, double& volts) {
    port_.PortOutputByte(kDataPort, static_cast<std::uint8_t>(channel + kStart));
    int looks = 0;
    while ((port_.PortInputByte(kStatusPort) & kDone) == 0) {
      if (++looks == kMostLooks) return false;
    }
    const int low = port_.PortInputByte(kDataPort);
    const int high = port_.PortInputByte(kStatusPort) & 0x0F;
    volts = (high * 256 + low) * (2 * kFullScale) / kCodes - kFullScale;
    return true;
  }

  vendor::PortIo& port_;
};

// The analog I/O board, found by its device name.
class AioBoard final : public InputBoard {
 public:
  AioBoard(const Settings& settings, vendor::Aio& aio) : settings_(settings), aio_(aio) {}

  std::int32_t Open(Trouble& trouble) override {
    if (!aio_.AioOpenEx || !aio_.AioSetRange || !aio_.AioInp || !aio_.BinaryToVI ||
        !aio_.AioClose || !aio_.LpWord) {
      trouble.problem = WhyMissing(aio_.missing, "analog I/O board: its");
      return kNoLibrary;
    }
    const std::string& device = settings_.DeviceName;
    std::int32_t id = 0;
    std::int32_t status = aio_.AioOpenEx(device.c_str(), &id);
    const char* step = "AioOpenEx";
    if (status == 0) {
      id_ = id;
      data_address_ = aio_.LpWord(&data_);
      channel_address_ = aio_.LpWord(&channel_);
      status = aio_.AioSetRange(id_, 0, 0, 0, 2);
      step = "AioSetRange";
    }
    if (status != 0) {
      trouble.problem =
          "analog I/O board " + device + ": " + step + " returned " + std::to_string(status);
    }
    return status;
  }

  bool ReadSum(Channels channels, int rounds, Sums sums, Trouble& trouble) override {
    return Sum(channels, rounds, sums, [&](std::uint8_t channel, double& volts) {
      channel_ = channel;
      vendor::AioTransfer transfer{data_address_, channel_address_, 1};
      if (const std::int32_t status = aio_.AioInp(id_, &transfer)) trouble.read_status = status;
      constexpr auto kEnd = static_cast<float>(kFullScale);
      volts = aio_.BinaryToVI(-kEnd, kEnd, 1, 12, static_cast<std::int16_t>(data_));
      return true;
    });
  }

  void Close() override { aio_.AioClose(id_); }

 private:
  const Settings& settings_;
  vendor::Aio& aio_;
  std::int32_t id_ = 0;
  // The library reaches these words by their address: this object never moves.
  std::uint16_t data_ = 0;
  std::uint16_t channel_ = 0;
  std::int32_t data_address_ = 0;
  std::int32_t channel_address_ = 0;
};

class Pci9112Input final : public InputBoard {
 public:
  Pci9112Input(const Settings& settings, vendor::Dask& dask, PciCard& card)
      : settings_(settings), dask_(dask), card_(card) {}

  std::int32_t Open(Trouble& trouble) override {
    if (const std::int32_t status = card_.Register(trouble.problem)) return status;
    if (!dask_.AI_VReadChannel) {
      trouble.problem = WhyMissing(dask_.missing, "PCI-9112 input: its");
      return kNoLibrary;
    }
    ranges_.fill(kCoarsest);
    return 0;
  }

  bool ReadSum(Channels channels, int rounds, Sums sums, Trouble& trouble) override {
    const std::uint16_t card = card_.Number();
    const auto read = [&](std::uint8_t channel, std::uint8_t range, double& volts) {
      if (const auto status = dask_.AI_VReadChannel(card, channel, range, &volts)) {
        trouble.read_status = status;
      }
      return true;
    };
    if (settings_.DynamicRange == 0) {
      return Sum(channels, rounds, sums, [&](std::uint8_t channel, double& volts) {
        return read(channel, kCoarsest, volts);
      });
    }
    return Sum(channels, rounds, sums, [&](std::uint8_t channel, double& volts) {
      std::uint8_t& range = ranges_[channel];
      read(channel, range, volts);
      range = NextRange(range, volts);
      return true;
    });
  }

  void Close() override { card_.Release(); }

 private:
  // The vendor's range codes in use, and the full scale of each in volts.
  static constexpr std::uint8_t kCoarsest = 3;
  static constexpr std::uint8_t kFinest = 5;
  static constexpr std::array<double, kFinest + 1> kFullScales = {0, 0, 0, kFullScale, 1.25, 0.625};

  // What a reading teaches for the channel's next one: a finer range below 20 % of this one, and,
  // seen from there, a coarser one above 80 %.
  static std::uint8_t NextRange(std::uint8_t range, double volts) {
    if (std::abs(volts / kFullScales[range]) < 0.2 && range < kFinest) ++range;
    if (std::abs(volts / kFullScales[range]) > 0.8 && range > kCoarsest) --range;
    return range;
  }

  const Settings& settings_;
  vendor::Dask& dask_;
  PciCard& card_;
  std::array<std::uint8_t, kChannels> ranges_{};
};

}  // namespace

std::unique_ptr<InputBoard> MakePortBoard(const DeviceParts& parts) {
  return std::make_unique<PortBoard>(parts.libraries.port_io);
}

std::unique_ptr<InputBoard> MakeAioBoard(const DeviceParts& parts) {
  return std::make_unique<AioBoard>(parts.settings, parts.libraries.aio);
}

std::unique_ptr<InputBoard> MakePci9112Input(const DeviceParts& parts) {
  return std::make_unique<Pci9112Input>(parts.settings, parts.libraries.dask, parts.card);
}

}  // namespace zento
