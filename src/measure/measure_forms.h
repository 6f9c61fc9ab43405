#pragma once

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"

namespace zento {

// Makes the measurement windows known to the desktop. All arguments outlive it.
void RegisterMeasureForms(Desktop& desktop, Workstation& workstation, Host& host,
                          Instruments& instruments);

}  // namespace zento
