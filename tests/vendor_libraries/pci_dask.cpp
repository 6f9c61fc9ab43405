// Stands in for the PCI-9112's library: what went in comes out, so that a wrongly bound argument
// shows.

#include <cstdint>

extern "C" {

std::int16_t Register_Card(std::uint16_t type, std::uint16_t number) {
  return static_cast<std::int16_t>(type == 22 ? number : -1);
}

std::int16_t AI_VReadChannel(std::uint16_t card, std::uint16_t channel, std::uint16_t range,
                             double* volts) {
  *volts = card * 100 + channel + range / 10.0;
  return 0;
}

std::int16_t AO_9112_Config(std::uint16_t, std::uint16_t channel, double reference) {
  return static_cast<std::int16_t>(channel * 10 + (reference == -5.0 ? 1 : 0));
}

std::int16_t AO_VWriteChannel(std::uint16_t, std::uint16_t, double volts) {
  return static_cast<std::int16_t>(volts * 1000);
}

std::int16_t DO_WritePort(std::uint16_t, std::uint16_t, std::uint32_t value) {
  return static_cast<std::int16_t>(value);
}

std::int16_t Release_Card(std::uint16_t card) {
  return static_cast<std::int16_t>(card);
}
}
