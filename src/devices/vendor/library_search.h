#pragma once

#include "devices/vendor/loader.h"
#include "devices/vendor/platform.h"

namespace zento::vendor {

// The library that `variable` names, else the one called `file` in the first folder that has one
// which can be loaded. The failure lists every place that was looked at, or why what was found
// there could not be loaded.
Result<SharedLibrary> FindLibrary(const Surroundings& surroundings, const char* variable,
                                  const char* file);

// Ports through the port library (Windows) or the kernel's port device (Linux).
PortIo LoadPortIo(const Surroundings& surroundings);

}  // namespace zento::vendor
