#pragma once

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/host.h"

namespace zento {

// Makes the main window and its tools known to the desktop. All arguments outlive it. The main
// window's menus offer what the desktop knows when it loads.
void RegisterMainForms(Desktop& desktop, Workstation& workstation, Host& host,
                       Instruments& instruments);

}  // namespace zento
