#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "devices/vendor/tables.h"
#include "text/status_fwd.h"

namespace zento::vendor {

struct SerialSettings {
  enum class Parity { kNone, kOdd, kEven };
  enum class StopBits { kOne, kOneAndAHalf, kTwo };

  std::uint32_t baud = 9600;
  Parity parity = Parity::kNone;
  std::uint8_t data_bits = 8;
  StopBits stop_bits = StopBits::kOne;
};

// "9600,N,8,1": baud, N, O or E, 5 to 8 data bits, 1, 1.5 or 2 stop bits.
Result<SerialSettings> ParseSerialSettings(std::string_view text);

// A serial line without handshaking. `device` stands for whatever port is opened; nothing = the
// platform's ports by their number.
//
// A write takes at most `patience` longer than the bytes need at the line's speed. A line whose
// write failed or was late is closed, as nobody knows how much of it went out: later writes fail at
// once until the line is opened anew.
SerialLine MakeSerialLine(std::optional<std::string> device,
                          std::chrono::milliseconds patience = std::chrono::seconds(2));

}  // namespace zento::vendor
