#include "sim/command_generator.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Arbitrary bytes as command lines, directly and through the serial converter; whatever programme
// comes out of them must play.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  zento::sim::CommandGenerator generator;
  const auto play = [&] {
    for (const double dt : {0.0, 1e-6, 0.1, 7.0, 1e5}) {
      const double volts = generator.VoltsAfter(dt);
      if (!std::isfinite(volts) || std::abs(volts) > 10.0) std::abort();
      if (!(generator.UntilCorner() > 0.0)) std::abort();
      generator.Advance(dt);
    }
  };
  for (std::size_t begin = 0; begin <= size;) {
    const std::size_t end = bytes.find('\n', begin);
    static_cast<void>(generator.Send(bytes.substr(begin, end - begin)));
    if (end == std::string_view::npos) break;
    begin = end + 1;
  }
  static_cast<void>(generator.Send("A1"));
  play();
  zento::sim::SerialConverter converter(
      [&](int, std::string_view text) { static_cast<void>(generator.Send(text)); });
  converter.Receive(bytes.substr(0, size / 2));
  converter.Receive(bytes.substr(size / 2));
  play();
  return 0;
}
