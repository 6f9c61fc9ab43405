#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "support/fake_vendor.h"

namespace zento {
namespace {

// A workstation without the vendors' libraries: each device fails with its cause, and using it all
// the same does no harm.
TEST(MissingLibraries, FailWithTheirCause) {
  vendor::Libraries none;
  none.port_io.missing = "no port library";
  none.aio.missing = "no analog I/O library";
  none.dask.missing = "no card library";
  none.gpib.missing = "no bus library";
  none.serial.missing = "no serial port";
  DeviceBench bench;
  Settings& settings = bench.workstation.settings;
  Instruments empty(bench.workstation, bench.machine.host, none);

  const std::array inputs = {none.port_io.missing, none.aio.missing, none.dask.missing};
  for (std::size_t board = 0; board < inputs.size(); ++board) {
    settings.ADBoard = static_cast<int>(board);
    EXPECT_NE(empty.analog_input.Open(), 0);
    EXPECT_EQ(empty.analog_input.LastProblem(), inputs[board]);
    EXPECT_EQ(empty.analog_input.Read(0), std::nullopt);
    empty.analog_input.Close();
  }
  for (const auto& [link, cause] : {std::pair{2, none.gpib.missing}, {1, none.serial.missing}}) {
    settings.GPIBControl = link;
    EXPECT_EQ(empty.gpib.InitialiseLink(), 1);
    EXPECT_EQ(empty.gpib.status_text(), cause);
    empty.generator.OutputOff();
    EXPECT_FALSE(empty.gpib.Send(7, "A0"));
  }
  EXPECT_NE(empty.analog_output.Open(), 0);
  EXPECT_EQ(empty.analog_output.LastProblem(), none.dask.missing);
  empty.analog_output.Write(0, 1);
  for (const auto& [control, cause] :
       {std::pair{2, none.dask.missing}, {1, none.port_io.missing}}) {
    settings.PowerControl = control;
    EXPECT_FALSE(empty.outlets.Power(0, 1));
    EXPECT_EQ(empty.outlets.LastProblem(), cause);
    empty.outlets.Powerb(1);
  }
}

}  // namespace
}  // namespace zento
