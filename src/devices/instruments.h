#pragma once

#include "core/workstation.h"
#include "devices/analog_input.h"
#include "devices/analog_output.h"
#include "devices/function_generator.h"
#include "devices/gpib.h"
#include "devices/outlets.h"
#include "devices/pci_card.h"
#include "devices/rotation.h"
#include "devices/vendor/tables.h"

namespace zento {

struct Host;

// All devices of a workstation, over one set of vendor tables: a laboratory's libraries, the
// simulated bench, or a test's counters and faults. Built once; nothing here opens a device.
struct Instruments {
  Instruments(Workstation& workstation, Host& host, vendor::Libraries vendor_tables);
  Instruments(const Instruments&) = delete;
  Instruments& operator=(const Instruments&) = delete;

  // Closes the boards, at the program's end. What is switched on stays so: a run ends itself first.
  void Release();

  // Members in the order in which they need each other.
  vendor::Libraries libraries;
  PciCard card;
  AnalogInput analog_input;
  AnalogOutput analog_output;
  Outlets outlets;
  GpibLink gpib;
  FunctionGenerator generator;
  RpmControl rotation;
};

}  // namespace zento
