#pragma once

#include "core/workstation.h"
#include "host/host.h"

namespace zento {

// Makes the analysis windows known to the desktop. All arguments outlive it.
void RegisterAnalysisForms(Desktop& desktop, Workstation& workstation, Host& host);

}  // namespace zento
