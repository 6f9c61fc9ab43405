#pragma once

// One table of functions per vendor library. The loader fills a table from the library it finds on
// the machine, the simulated bench fills it from its model, a test fills it with counters and
// faults; nothing above can tell them apart. Names, argument order and return codes are the
// vendors'. An entry that is empty means that the library is not there: `missing` then says why.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "text/status_fwd.h"

namespace zento::vendor {

// Byte-wide port input and output.
struct PortIo {
  std::string missing;
  std::function<std::uint8_t(std::uint16_t port)> PortInputByte;
  std::function<void(std::uint16_t port, std::uint8_t value)> PortOutputByte;
};

// Transfer record of AioInp: two addresses as LpWord gave them, and the channel count.
struct AioTransfer {
  std::int32_t data_address = 0;
  std::int32_t channel_address = 0;
  std::int16_t count = 0;
};

// The analog I/O board's library, with the address helper that comes beside it. Returns are the
// vendor's status, 0 = success.
struct Aio {
  std::string missing;
  std::function<std::int32_t(const char* device_name, std::int32_t* id)> AioOpenEx;
  std::function<std::int32_t(std::int32_t id, std::int16_t, std::int16_t, std::int16_t,
                             std::int16_t)>
      AioSetRange;
  std::function<std::int32_t(std::int32_t id, AioTransfer* transfer)> AioInp;
  // Volts of a binary word between `low` and `high` volts at `bits` of resolution.
  std::function<float(float low, float high, std::int16_t, std::int16_t bits, std::int16_t data)>
      BinaryToVI;
  std::function<std::int32_t(std::int32_t id)> AioClose;
  // The 32-bit address by which the library reaches `word`; valid while `word` lives.
  std::function<std::int32_t(std::uint16_t* word)> LpWord;
};

// The PCI-9112's library. Returns are the vendor's status, 0 = success; Register_Card returns a
// handle, negative on failure.
struct Dask {
  std::string missing;
  std::function<std::int16_t(std::uint16_t card_type, std::uint16_t card_number)> Register_Card;
  std::function<std::int16_t(std::uint16_t card, std::uint16_t channel, std::uint16_t range,
                             double* volts)>
      AI_VReadChannel;
  std::function<std::int16_t(std::uint16_t card, std::uint16_t channel, double reference_volts)>
      AO_9112_Config;
  std::function<std::int16_t(std::uint16_t card, std::uint16_t channel, double volts)>
      AO_VWriteChannel;
  std::function<std::int16_t(std::uint16_t card, std::uint16_t port, std::uint32_t value)>
      DO_WritePort;
  std::function<std::int16_t(std::uint16_t card)> Release_Card;
};

// The bus board's library. Returns are status codes; see CheckGpibStatus.
struct Gpib {
  std::string missing;
  std::function<std::int32_t()> GpIni;
  std::function<std::int32_t(std::int32_t)> GpIfc;
  std::function<std::int32_t()> GpRen;
  std::function<std::int32_t(std::int32_t timeout)> GpTimeout;
  std::function<std::int32_t(std::int32_t item, std::int32_t* value)> GpBoardsts;
  // `addresses` holds the count of entries that follow, the talker, the listener.
  std::function<std::int32_t(const std::int32_t* addresses, std::int32_t length, const char* text)>
      GpTalk;
  std::function<std::int32_t()> GpExit;
};

// A serial line. `settings` is "baud,parity,data bits,stop bits", such as "9600,N,8,1".
struct SerialLine {
  std::string missing;
  // Port 1 is the platform's first; an environment variable may name another device.
  std::function<Status(int port, std::string_view settings)> Open;
  std::function<bool()> IsOpen;
  // All of `bytes` or a failure; returns within the line's deadline.
  std::function<Status(std::string_view bytes)> Write;
  std::function<void()> Close;
};

// Everything a workstation may find behind its devices.
struct Libraries {
  PortIo port_io;
  Aio aio;
  Dask dask;
  Gpib gpib;
  SerialLine serial;
};

}  // namespace zento::vendor
