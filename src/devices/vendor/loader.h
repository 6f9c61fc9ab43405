#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "devices/vendor/tables.h"

namespace zento::vendor {

// Where the loader looks. Each library is taken from the full path that its environment variable
// names, else by its platform's name from the first folder that has it, never from the current
// folder or a search path.
//
//   variable            what it names
//   ZENTO_PCI_DASK      the PCI-9112's library
//   ZENTO_API_AIO       the analog I/O board's library
//   ZENTO_VBADD32       the address helper that comes beside it
//   ZENTO_API_GPIB1     the bus board's library
//   ZENTO_PORT_IO       the port I/O library; on Linux the port device instead of /dev/port
//   ZENTO_SERIAL_PORT   the serial device of the bus converter instead of the platform's first port
struct Surroundings {
  std::function<std::optional<std::string>(const char* variable)> environment;
  std::vector<std::filesystem::path> folders;
};

Surroundings ThisMachine();

// Fills each table from what is found. A table whose library is missing, cannot be loaded or lacks
// a function stays empty, and its `missing` says why. Touches no hardware and opens no serial line.
Libraries LoadLibraries(const Surroundings& surroundings = ThisMachine());

}  // namespace zento::vendor
