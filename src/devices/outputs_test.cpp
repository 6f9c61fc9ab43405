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
  double Sent(double volts) { return output.Write(0, volts); }
  PowerForm* LoadPower() { return bench.machine.desktop.LoadAs<PowerForm>("frmPower"); }
  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  Settings& settings = bench.workstation.settings;
  AnalogOutput& output = bench.instruments.analog_output;
  Outlets& outlets = bench.instruments.outlets;
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

TEST_F(OutputsTest, AnalogOutputReportsTheCardAndTheSecondConfiguration) {
  vendor.register_result = -3;
  EXPECT_EQ(output.Open(), -3);
  EXPECT_EQ(vendor.Count("AO_Config"), 0);
  vendor.register_result = 3;
  vendor.config_result[1] = -7;
  EXPECT_EQ(output.Open(), -7);
  EXPECT_THAT(output.LastProblem(), HasSubstr("-7 for channel 1"));
  vendor.config_result = {{0, -6}};
  EXPECT_EQ(output.Open(), 0);
  EXPECT_THAT(output.LastProblem(), HasSubstr("-6 for channel 0"));
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
  EXPECT_FALSE(bench.instruments.card.Registered());
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
  ASSERT_NE(LoadPower(), nullptr);
  vendor.Take();
  EXPECT_TRUE(outlets.Power(2, 3));  // only the lowest bit counts
  EXPECT_TRUE(outlets.Power(0, 1));
  EXPECT_EQ(outlets.state(), 5);
  EXPECT_EQ(LoadPower()->chkPower[2].value(), 1);
  EXPECT_EQ(LoadPower()->chkPower[1].value(), 0);
  EXPECT_TRUE(outlets.Power(2, 2));
  EXPECT_THAT(vendor.Take(), ElementsAre("DO 1 0 4", "DO 1 0 5", "DO 1 0 1"));
  for (const int none : {5, -1}) EXPECT_TRUE(outlets.Power(none, 1));
  EXPECT_THAT(vendor.calls, IsEmpty());
  outlets.Powerb(0x1F);  // to the port, whatever the outlets hang on
  outlets.PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 31", "DO 1 0 0"));
  EXPECT_EQ(LoadPower()->chkPower[0].value(), 0);
}

TEST_F(OutputsTest, PowerWithoutHardwareStillShowsItsState) {
  settings.PowerControl = 0;
  ASSERT_NE(LoadPower(), nullptr);
  outlets.Power(3, 1);
  outlets.Powerb(1);
  EXPECT_EQ(LoadPower()->chkPower[3].value(), 1);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

// Closing the window only hides it: made anew it would believe that all outlets are off.
TEST_F(OutputsTest, ClickingABoxSwitchesAndClosingTheWindowDoesNot) {
  settings.PowerControl = 1;
  Desktop& desktop = bench.machine.desktop;
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  ASSERT_TRUE(LoadPower()->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(LoadPower()->Find("chkPower", 4)->UserSet("1").ok());
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 2", "out 64 18"));
  desktop.RequestClose("frmPower");
  bench.machine.Settle();
  EXPECT_FALSE(desktop.Shown("frmPower"));
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  EXPECT_TRUE(desktop.Shown("frmPower"));
  EXPECT_EQ(outlets.state(), 18);
  EXPECT_THAT(vendor.calls, IsEmpty());
  ASSERT_TRUE(LoadPower()->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(LoadPower()->cmdPowerOff.UserClick().ok());
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 16", "out 64 0"));
}

TEST_F(OutputsTest, OutletIsSwitchedOffByWhatSwitchedItOn) {
  ASSERT_NE(LoadPower(), nullptr);
  settings.PowerControl = 1;
  settings.CardNumber = 2;
  vendor.Take();
  outlets.PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("DO 1 0 0"));
}

TEST_F(OutputsTest, PowerWindowSaysWhenItsBoardFails) {
  vendor.register_result = -1;
  EXPECT_EQ(LoadPower(), nullptr);
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(), ElementsAre("DigitalOut Board Trouble!"));
  vendor.register_result = 0;
  EXPECT_NE(LoadPower(), nullptr);
}

}  // namespace
}  // namespace zento
