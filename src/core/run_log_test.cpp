#include "core/run_log.h"

#include <gtest/gtest.h>

#include "host/virtual/virtual_host.h"
#include "text/status.h"

namespace zento {
namespace {

// What a run writes into it is shown beside the measurements.
TEST(RunLog, OnlyBusCommandsOfOneSecondShareALine) {
  VirtualHost machine;
  RunLog log;
  log.Attach(machine.host, "home");
  for (const char* command : {"A1", "VF+0000"}) log.BusCommand(command);
  machine.clock.Spend(1'000'000);  // without a look at the timers, as in a long handler
  log.BusCommand("A0");
  log.Event("Recording begins");
  log.BusCommand("A1");
  log.Flush();
  EXPECT_EQ(machine.files.Read("home/Run log.txt").value(),
            "2026/01/01 09:00:01  bus: A1 VF+0000\r\n"
            "2026/01/01 09:00:02  bus: A0\r\n"
            "2026/01/01 09:00:02  Recording begins\r\n"
            "2026/01/01 09:00:02  bus: A1\r\n");
}

}  // namespace
}  // namespace zento
