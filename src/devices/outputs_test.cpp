#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "devices/power_form.h"
#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputsTest : public testing::Test {
 protected:
  double Sent(double volts) {
    output.Write(0, volts);
    return volts;
  }
  PowerForm* LoadPower() { return bench.machine.desktop.LoadAs<PowerForm>("frmPower"); }

  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  Settings& settings = bench.workstation.settings;
  AnalogOutput& output = bench.instruments.analog_output;
};

TEST_F(OutputsTest, AnalogOutputClampsAndLeavesWhatWasSent) {
  ASSERT_EQ(output.Open(), 0);
  EXPECT_THAT(vendor.Take(),
              ElementsAre("Register_Card 22 1", "AO_Config 3 0 -5", "AO_Config 3 1 -5"));
  EXPECT_EQ(Sent(7.2), 5.0);
  EXPECT_EQ(Sent(-0.3), 0.0);
  EXPECT_EQ(Sent(std::nan("")), 0.0);
  EXPECT_EQ(Sent(1.5), 1.5);
  EXPECT_THAT(vendor.Take(), ElementsAre("AO 3 0 5", "AO 3 0 0", "AO 3 0 0", "AO 3 0 1.5"));
}

TEST_F(OutputsTest, AnalogOutputReportsTheSecondConfiguration) {
  vendor.config_result[1] = -7;
  EXPECT_EQ(output.Open(), -7);
  EXPECT_THAT(output.LastProblem(), HasSubstr("-7 for channel 1"));
  vendor.config_result = {{0, -6}};
  EXPECT_EQ(output.Open(), 0);
  EXPECT_THAT(output.LastProblem(), HasSubstr("-6 for channel 0"));
}

TEST_F(OutputsTest, AnalogOutputWithoutCardFails) {
  vendor.register_result = -3;
  EXPECT_EQ(output.Open(), -3);
  EXPECT_EQ(vendor.Count("AO_Config"), 0);
  vendor.register_result = 0;
  EXPECT_EQ(output.Open(), 0);
}

TEST_F(OutputsTest, NoAnalogOutputIsNoFailureAndNoWrite) {
  settings.DABoard = 0;
  EXPECT_EQ(output.Open(), 0);
  EXPECT_EQ(Sent(7.2), 7.2);
  settings.DABoard = 2;
  EXPECT_EQ(output.Open(), 0);
  EXPECT_EQ(Sent(7.2), 5.0);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(OutputsTest, MotorStaysInHandWhenTheSettingsAreEdited) {
  ASSERT_EQ(output.Open(), 0);
  settings.DABoard = 0;
  vendor.Take();
  Sent(1);
  output.Release();
  Sent(2);
  EXPECT_THAT(vendor.Take(), ElementsAre("AO 3 0 1", "Release_Card 3"));
  EXPECT_EQ(bench.workstation.card_handle, -1);
}

TEST_F(OutputsTest, OneRegistrationServesInputAndOutputs) {
  ASSERT_EQ(bench.instruments.analog_input.Open(), 0);
  ASSERT_EQ(output.Open(), 0);
  ASSERT_NE(LoadPower(), nullptr);
  EXPECT_EQ(vendor.Count("Register_Card"), 1);
  bench.instruments.Release();
  EXPECT_EQ(vendor.Count("Release_Card"), 1);
}

TEST_F(OutputsTest, PowerSwitchesOneOutlet) {
  PowerForm* const power = LoadPower();
  ASSERT_NE(power, nullptr);
  vendor.Take();
  std::uint8_t sw = 3;
  power->Power(2, sw);
  EXPECT_EQ(sw, 4);  // only the lowest bit counts
  sw = 1;
  power->Power(0, sw);
  EXPECT_EQ(power->state(), 5);
  EXPECT_EQ(power->chkPower[2].value(), 1);
  EXPECT_EQ(power->chkPower[1].value(), 0);
  sw = 2;
  power->Power(2, sw);
  EXPECT_EQ(sw, 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("DO 1 0 4", "DO 1 0 5", "DO 1 0 1"));
  sw = 1;
  power->Power(5, sw);
  power->Power(-1, sw);
  EXPECT_EQ(sw, 1);
  EXPECT_THAT(vendor.calls, IsEmpty());
  power->Powerb(0, 0x1F);  // to the port, whatever the outlets hang on
  power->PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 31", "DO 1 0 0"));
  EXPECT_EQ(power->chkPower[0].value(), 0);
}

TEST_F(OutputsTest, PowerWithoutHardwareStillShowsItsState) {
  settings.PowerControl = 0;
  PowerForm* const power = LoadPower();
  ASSERT_NE(power, nullptr);
  std::uint8_t sw = 1;
  power->Power(3, sw);
  power->Powerb(0, 1);
  EXPECT_EQ(power->chkPower[3].value(), 1);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(OutputsTest, ClickingABoxSwitches) {
  settings.PowerControl = 1;
  PowerForm* const power = LoadPower();
  ASSERT_NE(power, nullptr);
  ASSERT_TRUE(power->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(power->Find("chkPower", 4)->UserSet("1").ok());
  ASSERT_TRUE(power->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(power->cmdPowerOff.UserClick().ok());
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 2", "out 64 18", "out 64 16", "out 64 0"));
}

TEST_F(OutputsTest, ClosingThePowerWindowKeepsTheOutlets) {
  Desktop& desktop = bench.machine.desktop;
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  std::uint8_t sw = 1;
  LoadPower()->Power(0, sw);
  vendor.Take();
  desktop.RequestClose("frmPower");
  bench.machine.Settle();
  EXPECT_FALSE(desktop.Shown("frmPower"));
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  EXPECT_TRUE(desktop.Shown("frmPower"));
  EXPECT_EQ(LoadPower()->state(), 1);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(OutputsTest, OutletIsSwitchedOffByWhatSwitchedItOn) {
  PowerForm* const power = LoadPower();
  ASSERT_NE(power, nullptr);
  settings.PowerControl = 1;
  settings.CardNumber = 2;
  vendor.Take();
  power->PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("DO 1 0 0"));
}

TEST_F(OutputsTest, PowerWindowSaysWhenItsBoardFails) {
  vendor.register_result = -1;
  EXPECT_EQ(LoadPower(), nullptr);
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(), ElementsAre("DigitalOut Board Trouble!"));
  vendor.register_result = 0;
  EXPECT_NE(LoadPower(), nullptr);
}

TEST_F(OutputsTest, MissingLibrariesFailWithTheirCause) {
  vendor::Libraries none;
  none.port_io.missing = "no port library";
  none.dask.missing = "no card library";
  Instruments empty(bench.workstation, bench.machine.host, none);
  EXPECT_NE(empty.analog_output.Open(), 0);
  EXPECT_EQ(empty.analog_output.LastProblem(), "no card library");
  EXPECT_NE(empty.digital_output.Open(), 0);
  EXPECT_EQ(empty.digital_output.LastProblem(), "no card library");
  settings.PowerControl = 1;
  EXPECT_NE(empty.digital_output.Open(), 0);
  EXPECT_EQ(empty.digital_output.LastProblem(), "no port library");
  double volts = 1;
  empty.analog_output.Write(0, volts);
  empty.digital_output.Write(1);
}

}  // namespace
}  // namespace zento
