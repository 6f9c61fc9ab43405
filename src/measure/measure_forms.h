#pragma once

#include "devices/instruments.h"

namespace zento {

class Desktop;
struct Host;
struct Workstation;

// Makes the measurement windows known to the desktop. All arguments outlive it.
void RegisterMeasureForms(Desktop& desktop, Workstation& workstation, Host& host,
                          Instruments& instruments);

}  // namespace zento
