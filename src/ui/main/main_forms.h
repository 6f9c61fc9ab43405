#pragma once

#include "devices/instruments.h"

namespace zento {

class Desktop;
struct Host;
struct Workstation;

// Makes the main window and its tools known to the desktop. All arguments outlive it. The main
// window's menus offer what the desktop knows when it loads.
void RegisterMainForms(Desktop& desktop, Workstation& workstation, Host& host,
                       Instruments& instruments);

}  // namespace zento
