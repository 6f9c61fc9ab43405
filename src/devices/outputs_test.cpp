#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputsTest : public testing::Test {
 protected:
  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  Settings& settings = bench.workstation.settings;
  AnalogOutput& output = bench.instruments.analog_output;
  Outlets& outlets = bench.instruments.outlets;
};

// What the settings file holds is a row's number: rows must never change places.
TEST(DeviceTables, RowsStandAtTheNumbersOfTheSettings) {
  EXPECT_EQ(DeviceNames(&Settings::ADBoard), "0 port-mapped, 1 AD12-16U(PCI)E, 2 PCI-9112");
  EXPECT_EQ(DeviceNames(&Settings::DABoard), "0 none, 1 PCI-9112 analog output");
  EXPECT_EQ(DeviceNames(&Settings::PowerControl), "0 none, 1 printer port, 2 PCI-9112");
  EXPECT_EQ(DeviceNames(&Settings::GPIBControl), "0 none, 1 serial converter, 2 bus board");
  EXPECT_EQ(DeviceNames(&Settings::CardNumber), "");
}

TEST_F(OutputsTest, AnalogOutputClampsAndReturnsWhatWasSent) {
  ASSERT_EQ(output.Open(), 0);
  EXPECT_THAT(vendor.Take(),
              ElementsAre("Register_Card 22 1", "AO_Config 3 0 -5", "AO_Config 3 1 -5"));
  EXPECT_EQ(output.Write(0, 7.2), 5.0);
  EXPECT_EQ(output.Write(0, -0.3), 0.0);
  EXPECT_EQ(output.Write(0, std::nan("")), 0.0);
  EXPECT_EQ(output.Write(0, 1.5), 1.5);
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
  for (const auto& [board, sent] : {std::pair{0, 7.2}, {2, 5.0}}) {
    settings.DABoard = board;
    EXPECT_EQ(output.Open(), 0);
    EXPECT_EQ(output.Write(0, 7.2), sent) << board;
  }
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(OutputsTest, WhatWasSwitchedOnStaysInHandWhenTheSettingsAreEdited) {
  ASSERT_EQ(output.Open(), 0);
  ASSERT_TRUE(outlets.Power(0, 1));
  settings.DABoard = 0;
  settings.PowerControl = 1;
  settings.CardNumber = 2;
  vendor.Take();
  output.Write(0, 1);
  outlets.PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("AO 3 0 1", "DO 1 0 0"));
  bench.instruments.Release();
  output.Write(0, 2);
  EXPECT_THAT(vendor.Take(), ElementsAre("Release_Card 3"));
  outlets.Power(1, 1);  // opened anew, as the settings now say
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 2"));
}

TEST_F(OutputsTest, OneRegistrationServesInputAndOutputs) {
  ASSERT_EQ(bench.instruments.analog_input.Open(), 0);
  ASSERT_EQ(output.Open(), 0);
  EXPECT_FALSE(outlets.InUse());
  ASSERT_TRUE(outlets.Open());
  EXPECT_TRUE(outlets.InUse());
  EXPECT_EQ(vendor.Count("Register_Card"), 1);
  bench.instruments.Release();
  EXPECT_EQ(vendor.Count("Release_Card"), 1);
}

TEST_F(OutputsTest, OutletsAreSwitchedOneByOne) {
  std::vector<int> shown;
  outlets.on_change = [&] { shown.push_back(outlets.state()); };
  ASSERT_TRUE(outlets.Power(2, 3)) << "only the lowest bit counts";
  vendor.Take();
  ASSERT_TRUE(outlets.Power(0, 1));
  EXPECT_TRUE(outlets.IsOn(0));
  EXPECT_FALSE(outlets.IsOn(1));
  ASSERT_TRUE(outlets.Power(2, 2));
  ASSERT_TRUE(outlets.Power(4, 1));
  EXPECT_THAT(vendor.Take(), ElementsAre("DO 1 0 5", "DO 1 0 1", "DO 1 0 17"));
  for (const int none : {5, -1}) EXPECT_TRUE(outlets.Power(none, 1));
  EXPECT_THAT(vendor.calls, IsEmpty());
  outlets.Powerb(0x1F);  // to the port, whatever the outlets hang on, and nothing is noted
  outlets.PowerOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("out 64 31", "DO 1 0 0"));
  EXPECT_THAT(shown, ElementsAre(4, 5, 1, 17, 0));
}

TEST_F(OutputsTest, OutletsWithoutHardwareKeepTheirState) {
  settings.PowerControl = 0;
  EXPECT_TRUE(outlets.Power(3, 1));
  EXPECT_TRUE(outlets.Powerb(1));
  EXPECT_EQ(outlets.state(), 8);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(OutputsTest, OutletsThatCannotBeOpenedSaySoEachTime) {
  vendor.register_result = -1;
  EXPECT_FALSE(outlets.Power(0, 1));
  EXPECT_FALSE(outlets.PowerOff());
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(),
              ElementsAre("DigitalOut Board Trouble!", "DigitalOut Board Trouble!"));
  EXPECT_EQ(outlets.state(), 0);
  vendor.register_result = 0;
  vendor.write_result = -8;
  EXPECT_TRUE(outlets.Power(0, 1));
  EXPECT_EQ(outlets.LastProblem(), "outlets: a write returned -8");
}

}  // namespace
}  // namespace zento
