#include "devices/vendor/serial_port.h"

#include <asio.hpp>
#include <charconv>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

#include "devices/vendor/platform.h"
#include "text/status.h"

namespace zento::vendor {
namespace {

using Base = asio::serial_port_base;

std::string_view NextField(std::string_view& text) {
  const std::size_t comma = text.find(',');
  const std::string_view field = text.substr(0, comma);
  text.remove_prefix(comma == text.npos ? text.size() : comma + 1);
  return field;
}

template <typename Int>
bool ParseWhole(std::string_view text, Int& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} && end == text.data() + text.size();
}

Base::parity ParityOption(SerialSettings::Parity parity) {
  switch (parity) {
    case SerialSettings::Parity::kOdd:
      return Base::parity(Base::parity::odd);
    case SerialSettings::Parity::kEven:
      return Base::parity(Base::parity::even);
    default:
      return Base::parity(Base::parity::none);
  }
}

Base::stop_bits StopBitsOption(SerialSettings::StopBits bits) {
  switch (bits) {
    case SerialSettings::StopBits::kOneAndAHalf:
      return Base::stop_bits(Base::stop_bits::onepointfive);
    case SerialSettings::StopBits::kTwo:
      return Base::stop_bits(Base::stop_bits::two);
    default:
      return Base::stop_bits(Base::stop_bits::one);
  }
}

// The system's handle of a port is a number or a pointer.
template <typename Handle>
std::intptr_t AsInteger(Handle handle) {
  if constexpr (std::is_pointer_v<Handle>) {
    return reinterpret_cast<std::intptr_t>(handle);
  } else {
    return handle;
  }
}

class Line {
 public:
  Line(std::optional<std::string> device, std::chrono::milliseconds patience)
      : device_(std::move(device)), patience_(patience) {}

  Status Open(int number, std::string_view text) {
    Close();
    name_ = device_ ? *device_ : SerialDevice(number);
    const Result<SerialSettings> settings = ParseSerialSettings(text);
    if (!settings.ok()) return settings.status().Within("serial port " + name_);
    try {
      return Prepare(settings.value());
    } catch (const std::exception& error) {
      Close();
      return Failure("open", error.what());
    }
  }

  bool IsOpen() const { return port_ && port_->is_open(); }

  Status Write(std::string_view bytes) {
    if (!IsOpen()) return Failure("write", "the port is not open");
    asio::error_code error;
    bool finished = false;
    asio::async_write(*port_, asio::buffer(bytes),
                      [&](const asio::error_code& result, std::size_t) {
                        error = result;
                        finished = true;
                      });
    context_->restart();
    context_->run_for(patience_ + std::chrono::microseconds(bytes.size() * microseconds_a_byte_));
    if (finished && !error) return Status::Ok();
    const std::string why = finished ? SystemErrorText(error.value())
                                     : "nothing takes the data (is the converter switched on?)";
    // The handler refers to this call: it has to run before the call returns. What the system still
    // holds is discarded, because closing could wait for it.
    asio::error_code ignored;
    DiscardOutput(AsInteger(port_->native_handle()));
    port_->close(ignored);
    if (!finished) context_->run();
    Close();
    return Failure("write", why);
  }

  void Close() {
    port_.reset();
    context_.reset();
  }

 private:
  Status Prepare(const SerialSettings& settings) {
    context_ = std::make_unique<asio::io_context>(1);
    port_ = std::make_unique<asio::serial_port>(*context_);
    asio::error_code error;
    port_->open(name_, error);
    const auto set = [&](const auto& option) {
      if (!error) port_->set_option(option, error);
    };
    set(Base::baud_rate(settings.baud));
    set(Base::character_size(settings.data_bits));
    set(ParityOption(settings.parity));
    set(StopBitsOption(settings.stop_bits));
    set(Base::flow_control(Base::flow_control::none));
    if (error) {
      Close();
      return Failure("open", SystemErrorText(error.value()));
    }
    // A byte has a start bit, its data and at most three bits of parity and stop.
    microseconds_a_byte_ = (settings.data_bits + 4U) * 1'000'000 / settings.baud;
    RaiseModemLines(AsInteger(port_->native_handle()));
    return Status::Ok();
  }

  Status Failure(const char* doing, const std::string& why) const {
    return Status::Failure("serial port " + name_ + ": " + doing + ": " + why);
  }

  std::optional<std::string> device_;
  std::chrono::milliseconds patience_;
  std::string name_;
  std::size_t microseconds_a_byte_ = 0;
  std::unique_ptr<asio::io_context> context_;
  std::unique_ptr<asio::serial_port> port_;
};

}  // namespace

Result<SerialSettings> ParseSerialSettings(std::string_view text) {
  const Status bad = Status::Failure("\"" + std::string(text) + "\" is not like 9600,N,8,1");
  const std::string_view baud = NextField(text);
  const std::string_view parity = NextField(text);
  const std::string_view data = NextField(text);
  const std::string_view stop = text;
  SerialSettings settings;
  if (!ParseWhole(baud, settings.baud) || settings.baud == 0) return bad;
  if (!ParseWhole(data, settings.data_bits)) return bad;
  if (settings.data_bits < 5 || settings.data_bits > 8) return bad;
  if (parity == "O") {
    settings.parity = SerialSettings::Parity::kOdd;
  } else if (parity == "E") {
    settings.parity = SerialSettings::Parity::kEven;
  } else if (parity != "N") {
    return bad;
  }
  if (stop == "1.5") {
    settings.stop_bits = SerialSettings::StopBits::kOneAndAHalf;
  } else if (stop == "2") {
    settings.stop_bits = SerialSettings::StopBits::kTwo;
  } else if (stop != "1") {
    return bad;
  }
  return settings;
}

SerialLine MakeSerialLine(std::optional<std::string> device, std::chrono::milliseconds patience) {
  const auto line = std::make_shared<Line>(std::move(device), patience);
  SerialLine table;
  table.Open = [line](int port, std::string_view settings) { return line->Open(port, settings); };
  table.IsOpen = [line] { return line->IsOpen(); };
  table.Write = [line](std::string_view bytes) { return line->Write(bytes); };
  table.Close = [line] { line->Close(); };
  return table;
}

}  // namespace zento::vendor
