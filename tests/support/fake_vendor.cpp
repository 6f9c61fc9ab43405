#include "support/fake_vendor.h"

#include "text/number.h"

namespace zento {
namespace {

template <typename... Parts>
std::string Call(const char* name, Parts... parts) {
  std::string text = name;
  ((text += " " + PlainNumber(parts)), ...);
  return text;
}

}  // namespace

vendor::Libraries FakeVendor::Tables() {
  return {Ports(), AioTable(), DaskTable(), GpibTable(), SerialTable()};
}

vendor::PortIo FakeVendor::Ports() {
  vendor::PortIo table;
  table.PortOutputByte = [this](std::uint16_t port, std::uint8_t value) {
    if (port == 0x1D0) conversion_ = conversion_ + 1 < codes.size() ? conversion_ + 1 : 0;
    Note(Call("out", port, value));
  };
  table.PortInputByte = [this](std::uint16_t port) -> std::uint8_t {
    Note(Call("in", port));
    const int code = codes[conversion_];
    if (port == 0x1D0) return static_cast<std::uint8_t>(code & 0xFF);
    return static_cast<std::uint8_t>((done ? 0x40 : 0) | 0x80 | (code >> 8));
  };
  return table;
}

vendor::Aio FakeVendor::AioTable() {
  vendor::Aio table;
  table.AioOpenEx = [this](const char* name, std::int32_t* id) {
    *id = aio_open_result == 0 ? aio_id : -99;
    Note(std::string("AioOpenEx ") + name);
    return aio_open_result;
  };
  table.AioSetRange = [this](std::int32_t id, std::int16_t a, std::int16_t b, std::int16_t c,
                             std::int16_t d) {
    Note(Call("AioSetRange", id, a, b, c, d));
    return aio_range_result;
  };
  table.LpWord = [this](std::uint16_t* word) {
    words_.push_back(word);
    return static_cast<std::int32_t>(words_.size() - 1);
  };
  table.AioInp = [this](std::int32_t id, vendor::AioTransfer* transfer) {
    const std::uint16_t channel = *words_[transfer->channel_address];
    *words_[transfer->data_address] = aio_words[channel];
    Note(Call("AioInp", id, channel, transfer->count));
    return std::int32_t{0};
  };
  table.BinaryToVI = [](float low, float high, std::int16_t, std::int16_t bits,
                        std::int16_t data) -> float {
    return low + (high - low) * static_cast<float>(data) / static_cast<float>(1 << bits);
  };
  table.AioClose = [this](std::int32_t id) {
    Note(Call("AioClose", id));
    return std::int32_t{0};
  };
  return table;
}

vendor::Dask FakeVendor::DaskTable() {
  vendor::Dask table;
  table.Register_Card = [this](std::uint16_t type, std::uint16_t number) {
    Note(Call("Register_Card", type, number));
    return register_result;
  };
  table.AI_VReadChannel = [this](std::uint16_t card, std::uint16_t channel, std::uint16_t range,
                                 double* value) {
    Note(Call("AI", card, channel, range));
    *value = volts[channel];
    return read_result;
  };
  table.AO_9112_Config = [this](std::uint16_t card, std::uint16_t channel, double reference) {
    Note(Call("AO_Config", card, channel, reference));
    return config_result[channel];
  };
  table.AO_VWriteChannel = [this](std::uint16_t card, std::uint16_t channel, double value) {
    Note(Call("AO", card, channel, value));
    return write_result;
  };
  table.DO_WritePort = [this](std::uint16_t card, std::uint16_t port, std::uint32_t value) {
    Note(Call("DO", card, port, value));
    return write_result;
  };
  table.Release_Card = [this](std::uint16_t card) {
    Note(Call("Release_Card", card));
    return std::int16_t{0};
  };
  return table;
}

vendor::Gpib FakeVendor::GpibTable() {
  vendor::Gpib table;
  table.GpIni = [this] {
    Note("GpIni");
    return gp_result["GpIni"];
  };
  table.GpIfc = [this](std::int32_t time) {
    Note(Call("GpIfc", time));
    return gp_result["GpIfc"];
  };
  table.GpRen = [this] {
    Note("GpRen");
    return gp_result["GpRen"];
  };
  table.GpTimeout = [this](std::int32_t timeout) {
    Note(Call("GpTimeout", timeout));
    return gp_result["GpTimeout"];
  };
  table.GpBoardsts = [this](std::int32_t item, std::int32_t* value) {
    Note(Call("GpBoardsts", item));
    *value = gp_status[item];
    return std::int32_t{0};
  };
  table.GpTalk = [this](const std::int32_t* to, std::int32_t length, const char* text) {
    Note(Call("GpTalk", to[0], to[1], to[2]) + " " + std::string(text, length));
    return gp_result["GpTalk"];
  };
  table.GpExit = [this] {
    Note("GpExit");
    return gp_result["GpExit"];
  };
  return table;
}

vendor::SerialLine FakeVendor::SerialTable() {
  vendor::SerialLine table;
  table.Open = [this](int port, std::string_view settings) {
    Note(Call("open", port) + " " + std::string(settings));
    serial_open = serial_open_result.ok();
    return serial_open_result;
  };
  table.IsOpen = [this] { return serial_open; };
  table.Write = [this](std::string_view bytes) {
    if (!serial_open) return Status::Failure("not open");
    if (!serial_write_result.ok()) {
      serial_open = false;
      return serial_write_result;
    }
    serial_bytes += bytes;
    return Status::Ok();
  };
  table.Close = [this] {
    Note("close");
    serial_open = false;
  };
  return table;
}

}  // namespace zento
