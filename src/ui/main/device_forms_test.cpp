#include "ui/main/device_forms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DeviceWindows : public testing::Test {
 protected:
  DeviceWindows() {
    RegisterDeviceForms(desktop, workstation, bench.machine.host, bench.instruments);
  }
  frmPower* LoadPower() { return desktop.LoadAs<frmPower>("frmPower"); }
  frmAdjustRPM* LoadAdjust() { return desktop.LoadAs<frmAdjustRPM>("frmAdjustRPM"); }
  // The calls without the registration and configuration of the boards.
  std::vector<std::string> Sent() {
    std::vector<std::string> sent;
    for (std::string& call : vendor.Take()) {
      if (call.rfind("AO ", 0) == 0 || call.rfind("DO ", 0) == 0) sent.push_back(call);
    }
    return sent;
  }

  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  Desktop& desktop = bench.machine.desktop;
  Workstation& workstation = bench.workstation;
  Settings& settings = bench.workstation.settings;
};

// Closing the window only hides it; the motor is switched without it, and it follows.
TEST_F(DeviceWindows, PowerShowsAndSwitchesTheOutlets) {
  bench.instruments.rotation.SwitchMotor(true);
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  EXPECT_EQ(LoadPower()->chkPower[0].value(), 1);
  ASSERT_TRUE(LoadPower()->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(LoadPower()->Find("chkPower", 4)->UserSet("1").ok());
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 1", "DO 1 0 3", "DO 1 0 19"));
  desktop.RequestClose("frmPower");
  bench.machine.Settle();
  EXPECT_FALSE(desktop.Shown("frmPower"));
  bench.instruments.rotation.SwitchMotor(false);
  ASSERT_NE(desktop.Show("frmPower"), nullptr);
  EXPECT_EQ(LoadPower()->chkPower[0].value(), 0);
  EXPECT_EQ(LoadPower()->chkPower[4].value(), 1);
  ASSERT_TRUE(LoadPower()->Find("chkPower", 1)->UserClick().ok());
  ASSERT_TRUE(LoadPower()->cmdPowerOff.UserClick().ok());
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 18", "DO 1 0 16", "DO 1 0 0"));
  EXPECT_EQ(LoadPower()->chkPower[4].value(), 0);
}

TEST_F(DeviceWindows, PowerRefusesToLoadWithoutItsBoard) {
  vendor.register_result = -1;
  EXPECT_EQ(LoadPower(), nullptr);
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(), ElementsAre("DigitalOut Board Trouble!"));
  vendor.register_result = 0;
  EXPECT_NE(LoadPower(), nullptr);
}

TEST_F(DeviceWindows, AdjustingAPointAndSavingIt) {
  settings.RPMvsVoltageFile = "/motor.txt";
  frmAdjustRPM* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->txtRPM.text(), "0");
  EXPECT_EQ(form->txtVoltage.text(), "0.000");
  EXPECT_FALSE(form->UpdRPM.enabled());
  EXPECT_FALSE(form->UpdVoltage.enabled());
  EXPECT_FALSE(form->Timer1.Enabled());
  vendor.Take();

  ASSERT_TRUE(form->cmdMotorOn.UserClick().ok());
  EXPECT_TRUE(form->UpdRPM.enabled());
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 1", "AO 3 0 0"));
  ASSERT_TRUE(form->UpdRPM.UserStep(-1).ok());  // already at the first point
  EXPECT_EQ(form->txtRPM.text(), "0");
  ASSERT_TRUE(form->UpdRPM.UserStep(+1).ok());
  EXPECT_EQ(form->txtRPM.text(), "1000");
  EXPECT_EQ(form->txtVoltage.text(), "1.000");
  Sent();
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(form->UpdVoltage.UserStep(+1).ok());
  ASSERT_TRUE(form->UpdVoltage.UserStep(-1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "1.004");
  EXPECT_THAT(Sent(), ElementsAre("AO 3 0 1.002", "AO 3 0 1.004", "AO 3 0 1.006", "AO 3 0 1.004"));
  ASSERT_TRUE(form->cmdUpdate.UserClick().ok());
  bench.machine.files.FailNext(MemoryFiles::Operation::kReplace);
  ASSERT_TRUE(form->cmdSave.UserClick().ok());
  EXPECT_EQ(bench.machine.dialogs.TakeMessages().size(), 1u) << "a failed save is said";
  ASSERT_TRUE(form->cmdSave.UserClick().ok());
  EXPECT_EQ(bench.machine.files.Read("/motor.txt").value(), "0\t0\r\n1000\t1.004\r\n3000\t2.6\r\n");
  ASSERT_TRUE(form->UpdRPM.UserStep(+1).ok());
  ASSERT_TRUE(form->UpdRPM.UserStep(+1).ok());  // already at the last point
  EXPECT_EQ(form->txtVoltage.text(), "2.600");
  Sent();
  ASSERT_TRUE(form->cmdMotorOff.UserClick().ok());
  EXPECT_FALSE(form->Timer1.Enabled());
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 0"));
}

TEST_F(DeviceWindows, TriedVoltageKeepsToItsRange) {
  workstation.rpm_calibration[0].volts = 0.001;
  frmAdjustRPM* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  ASSERT_TRUE(form->cmdMotorOn.UserClick().ok());
  ASSERT_TRUE(form->UpdVoltage.UserStep(-1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "0.000");
  ASSERT_TRUE(form->UpdVoltage.UserStep(-1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "0.000");
  for (int i = 0; i < 3000; ++i) ASSERT_TRUE(form->UpdVoltage.UserStep(+1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "4.900");
}

TEST_F(DeviceWindows, MeasuredRateIsAveragedOverTenReadings) {
  frmAdjustRPM* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  vendor.volts[4] = 1.5;
  ASSERT_TRUE(form->cmdMotorOn.UserClick().ok());
  vendor.Take();
  bench.machine.RunFor(form->Timer1.Interval() * 1000);
  EXPECT_EQ(vendor.Count("AI 1 4 3"), 500);
  EXPECT_EQ(form->lblRPM.text(), "1500");
  EXPECT_EQ(form->lblRPMAverage.text(), "150");  // empty slots count as 0
  bench.machine.RunFor(form->Timer1.Interval() * 9000);
  EXPECT_EQ(form->lblRPMAverage.text(), "1500");
  vendor.volts[4] = 0.5;
  bench.machine.RunFor(form->Timer1.Interval() * 1000);
  EXPECT_EQ(form->lblRPM.text(), "500");
  EXPECT_EQ(form->lblRPMAverage.text(), "1400");
  bench.instruments.analog_input.Close();
  bench.machine.RunFor(form->Timer1.Interval() * 1000);
  EXPECT_EQ(form->lblRPM.text(), "no reading");
  EXPECT_EQ(form->lblRPMAverage.text(), "1400");
}

TEST_F(DeviceWindows, ClosingTheAdjustmentStopsItsMotorButNoMeasurement) {
  ASSERT_NE(LoadAdjust(), nullptr);
  ASSERT_TRUE(LoadAdjust()->cmdMotorOn.UserClick().ok());
  Sent();
  desktop.RequestClose("frmAdjustRPM");
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 0"));
  ASSERT_TRUE(LoadAdjust()->cmdMotorOn.UserClick().ok());
  workstation.running_flag = -1;
  Sent();
  desktop.RequestClose("frmAdjustRPM");
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(DeviceWindows, AdjustmentRefusesToLoadWithoutItsBoards) {
  vendor.config_result[1] = 4;
  EXPECT_EQ(LoadAdjust(), nullptr);
  vendor.config_result.clear();
  bench.instruments.Release();
  vendor.register_result = -1;
  EXPECT_EQ(LoadAdjust(), nullptr);
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(),
              ElementsAre("DA Board Trouble!", "AD Board不良です"));
}

TEST_F(DeviceWindows, AdjustmentWithoutRotationControlTouchesNothing) {
  settings.DABoard = 0;
  settings.RPMvsVoltageFile = "/motor.txt";
  workstation.rpm_calibration.clear();
  frmAdjustRPM* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  for (Button* button : {&form->cmdMotorOn, &form->cmdUpdate, &form->cmdSave}) {
    EXPECT_FALSE(button->enabled());
  }
  EXPECT_FALSE(SaveCalibration(workstation, bench.machine.host).ok());
  EXPECT_FALSE(bench.machine.files.Exists("/motor.txt"));
}

}  // namespace
}  // namespace zento
