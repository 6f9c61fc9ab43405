// The bench as its vendors' libraries show it.

#include <algorithm>

#include "sim/bench.h"

#include "text/status.h"

namespace zento::sim {
namespace {

// Port-mapped converter: a write of channel + 16 (channels 0 to 63) to the first port starts a
// conversion; then the second port shows the done bit with the high nibble, the first one the low
// byte.
constexpr std::uint16_t kConverterPort = 0x1D0;
constexpr std::uint16_t kStatusPort = 0x1D1;
constexpr std::uint16_t kOutletPort = 0x40;
constexpr std::uint8_t kStart = 16;
constexpr std::uint8_t kPortChannels = 64;
constexpr std::uint8_t kDone = 0x40;

constexpr std::int32_t kAioNotOpen = 1;
constexpr std::int32_t kAioBadAddress = 2;

constexpr std::uint16_t kCardType = 22;
constexpr std::int16_t kNoCard = -1;
constexpr std::int16_t kBadArgument = -2;

constexpr std::int32_t kBusFault = 252;
constexpr std::int32_t kBusTimeout = 254;
constexpr std::int32_t kBusArgument = 255;

// Of the PCI-9112's range codes, in volts; 0 for a code that it does not have here.
double FullScale(std::uint16_t range) {
  switch (range) {
    case 3:
      return 2.5;
    case 4:
      return 1.25;
    case 5:
      return 0.625;
    default:
      return 0.0;
  }
}

}  // namespace

std::uint8_t Bench::ReadPort(std::uint16_t port) {
  switch (port) {
    case kConverterPort:
      return static_cast<std::uint8_t>(port_word_ & 0xFF);
    case kStatusPort:
      return static_cast<std::uint8_t>((port_done_ ? kDone : 0) | (port_word_ >> 8));
    case kOutletPort:
      return outlets_;
    default:
      return 0xFF;  // nothing drives the bus
  }
}

void Bench::WritePort(std::uint16_t port, std::uint8_t value) {
  if (port == kOutletPort) {
    SetOutlets(value);
  } else if (port == kConverterPort && value >= kStart && value < kStart + kPortChannels) {
    port_word_ = board_.Word(Convert(value - kStart));
    port_done_ = !faults.conversion_never_done;
  }
}

vendor::PortIo Bench::PortIoTable() {
  vendor::PortIo table;
  table.PortInputByte = [this](std::uint16_t port) { return ReadPort(port); };
  table.PortOutputByte = [this](std::uint16_t port, std::uint8_t value) { WritePort(port, value); };
  return table;
}

// Addresses of the 32-bit kind are places in a ring of the words seen last; 0 is no address.
std::int32_t Bench::WordAddress(std::uint16_t* word) {
  const auto known = std::ranges::find(words_, word);
  if (known != words_.end()) return static_cast<std::int32_t>(known - words_.begin()) + 1;
  const auto place = static_cast<std::size_t>(next_word_);
  words_[place] = word;
  next_word_ = (next_word_ + 1) % static_cast<std::int32_t>(words_.size());
  return static_cast<std::int32_t>(place) + 1;
}

std::uint16_t* Bench::WordAt(std::int32_t address) const {
  if (address < 1 || address > static_cast<std::int32_t>(words_.size())) return nullptr;
  return words_[static_cast<std::size_t>(address - 1)];
}

vendor::Aio Bench::AioTable() {
  vendor::Aio table;
  table.AioOpenEx = [this](const char*, std::int32_t* id) {
    if (faults.aio_open) return kAioNotOpen;
    *id = ++aio_opened_;
    return 0;
  };
  table.AioSetRange = [this](std::int32_t id, std::int16_t, std::int16_t, std::int16_t,
                             std::int16_t) {
    return id >= 1 && id <= aio_opened_ ? 0 : kAioNotOpen;
  };
  table.AioInp = [this](std::int32_t id, vendor::AioTransfer* transfer) {
    if (id < 1 || id > aio_opened_) return kAioNotOpen;
    std::uint16_t* data = WordAt(transfer->data_address);
    const std::uint16_t* channel = WordAt(transfer->channel_address);
    if (data == nullptr || channel == nullptr || transfer->count != 1) return kAioBadAddress;
    *data = board_.Word(Convert(*channel));
    return 0;
  };
  table.BinaryToVI = [](float low, float high, std::int16_t, std::int16_t bits, std::int16_t data) {
    const double codes = bits > 0 && bits <= 16 ? 1 << bits : 1;
    return static_cast<float>(low + (static_cast<double>(high) - low) *
                                        static_cast<std::uint16_t>(data) / codes);
  };
  table.AioClose = [this](std::int32_t id) {
    return id >= 1 && id <= aio_opened_ ? 0 : kAioNotOpen;
  };
  table.LpWord = [this](std::uint16_t* word) { return WordAddress(word); };
  return table;
}

vendor::Dask Bench::DaskTable() {
  vendor::Dask table;
  // A card's handle is its number, so that calls by either find it.
  table.Register_Card = [this](std::uint16_t type, std::uint16_t number) {
    if (faults.register_card || type != kCardType || number > 31) return kNoCard;
    card_ = number;
    return static_cast<std::int16_t>(number);
  };
  table.AI_VReadChannel = [this](std::uint16_t card, std::uint16_t channel, std::uint16_t range,
                                 double* volts) -> std::int16_t {
    if (!HasCard(card)) return kNoCard;
    const double full_scale = FullScale(range);
    if (full_scale == 0.0) return kBadArgument;
    *volts = board_.Volts(Convert(channel), full_scale);
    return 0;
  };
  table.AO_9112_Config = [this](std::uint16_t card, std::uint16_t channel, double) -> std::int16_t {
    if (!HasCard(card)) return kNoCard;
    return channel > 1 ? kBadArgument : std::int16_t{0};
  };
  table.AO_VWriteChannel = [this](std::uint16_t card, std::uint16_t channel,
                                  double volts) -> std::int16_t {
    if (!HasCard(card)) return kNoCard;
    if (channel > 1 || !(volts >= 0.0 && volts <= 5.0)) return kBadArgument;
    CatchUp();
    if (channel == 0) plant_.SetMotorVolts(volts);
    return 0;
  };
  table.DO_WritePort = [this](std::uint16_t card, std::uint16_t port,
                              std::uint32_t value) -> std::int16_t {
    if (!HasCard(card)) return kNoCard;
    if (port != 0) return kBadArgument;
    SetOutlets(static_cast<std::uint8_t>(value & 0xFF));
    return 0;
  };
  table.Release_Card = [this](std::uint16_t card) -> std::int16_t {
    if (!HasCard(card)) return kNoCard;
    card_ = -1;
    return 0;
  };
  return table;
}

vendor::Gpib Bench::GpibTable() {
  vendor::Gpib table;
  table.GpIni = [this] {
    bus_ready_ = !faults.bus;
    return bus_ready_ ? 0 : kBusFault;
  };
  table.GpIfc = [this](std::int32_t) { return bus_ready_ ? 0 : kBusFault; };
  table.GpRen = [this] { return bus_ready_ ? 0 : kBusFault; };
  table.GpTimeout = [this](std::int32_t) { return bus_ready_ ? 0 : kBusFault; };
  table.GpBoardsts = [](std::int32_t, std::int32_t* value) {
    *value = 0;  // item 10: 0 is the system controller
    return 0;
  };
  table.GpTalk = [this](const std::int32_t* addresses, std::int32_t length, const char* text) {
    if (!bus_ready_) return kBusFault;
    if (addresses[0] < 2 || length < 0) return kBusArgument;
    const std::string_view view(text, static_cast<std::size_t>(length));
    bool heard = true;
    for (std::int32_t i = 2; i <= addresses[0]; ++i) heard = Talk(addresses[i], view) && heard;
    return heard ? 0 : kBusTimeout;
  };
  table.GpExit = [this] {
    bus_ready_ = false;
    return 0;
  };
  return table;
}

vendor::SerialLine Bench::SerialTable() {
  vendor::SerialLine table;
  table.Open = [this](int port, std::string_view settings) {
    if (faults.serial_open) return Status::Failure("the port is in use");
    if (port != 1) return Status::Failure("the bench has its converter on port 1");
    if (settings != "9600,N,8,1") return Status::Failure("the converter talks at 9600,N,8,1");
    serial_open_ = true;
    return Status::Ok();
  };
  table.IsOpen = [this] { return serial_open_; };
  table.Write = [this](std::string_view bytes) {
    if (!serial_open_) return Status::Failure("the serial line is not open");
    converter_.Receive(bytes);
    return Status::Ok();
  };
  table.Close = [this] { serial_open_ = false; };
  return table;
}

}  // namespace zento::sim
