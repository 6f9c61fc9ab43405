#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "devices/adjust_rpm_form.h"
#include "devices/rotation.h"
#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Calibration, ReadsLenientlyAndSkipsWhatIsNoPoint) {
  const auto points = ParseCalibration(
      "rate and voltage\r\n"
      " 100\t.05\textra\t9\r\n"
      "\r\n"
      "1000 rpm\t1,0\n"
      "x\t-2e0V\r"
      "3000\t2.6");
  ASSERT_TRUE(points.ok());
  EXPECT_THAT(points.value(), ElementsAre(CalibrationPoint{100, 0.05}, CalibrationPoint{1000, 1},
                                          CalibrationPoint{0, -2}, CalibrationPoint{3000, 2.6}));
  EXPECT_FALSE(ParseCalibration("# one\n# two\n100\t1\n200 2\n").ok());
  EXPECT_FALSE(ParseCalibration("").ok());
}

TEST(Calibration, WritesWhatItReads) {
  const std::vector<CalibrationPoint> points = {{0, 0.05}, {1000.5, 1.002}, {1e20, -1.0 / 3}};
  const std::string text = FormatCalibration(points);
  EXPECT_EQ(text.substr(0, 8), "0\t0.05\r\n");
  const auto again = ParseCalibration(text);
  ASSERT_TRUE(again.ok());
  EXPECT_EQ(again.value(), points);
}

double VoltsAt(const std::vector<CalibrationPoint>& points, double rpm) {
  return InterpolateCalibration(points, rpm)->volts;
}

TEST(Calibration, Interpolates) {
  const std::vector<CalibrationPoint> points = {{0, 0.0}, {1000, 1.0}, {3000, 2.6}};
  EXPECT_DOUBLE_EQ(VoltsAt(points, 2000), 1.8);
  EXPECT_EQ(VoltsAt(points, 0), 0.0);
  EXPECT_EQ(VoltsAt(points, 1000), 1.0);
  EXPECT_EQ(VoltsAt(points, 3000), 2.6);
  EXPECT_EQ(InterpolateCalibration(points, 5000)->rpm, 3000);
  EXPECT_EQ(InterpolateCalibration({}, 10), std::nullopt);
  // Equal rates divide nothing by zero; a table out of order works as if it were in order.
  EXPECT_EQ(VoltsAt({{500, 1}, {500, 2}, {900, 3}}, 500), 1);
  EXPECT_EQ(VoltsAt({{100, 1}, {500, 2}, {500, 3}, {900, 4}}, 500), 2);
  EXPECT_EQ(VoltsAt({{100, 1}, {500, 2}, {500, 3}, {900, 4}}, 700), 3.5);
  EXPECT_EQ(VoltsAt({{500, 1}, {500, 2}}, 700), 1);
  EXPECT_DOUBLE_EQ(VoltsAt({{3000, 2.6}, {0, 0}, {1000, 1}}, 2000), 1.8);
}

class RotationTest : public testing::Test {
 protected:
  std::int32_t Turn(std::int32_t rpm) { return rotation.SetRotation(rpm); }
  AdjustRpmForm* LoadAdjust() {
    return bench.machine.desktop.LoadAs<AdjustRpmForm>("frmAdjustRPM");
  }
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
  Workstation& workstation = bench.workstation;
  Settings& settings = bench.workstation.settings;
  RpmControl& rotation = bench.instruments.rotation;
};

TEST_F(RotationTest, LoadsTheTableWhenRotationIsConfigured) {
  workstation.home = "/home/zento";
  settings.RPMvsVoltageFile = "motor.txt";
  ASSERT_TRUE(bench.machine.files.Replace("/home/zento/motor.txt", "10\t1\n20\t2\n").ok());
  EXPECT_TRUE(LoadCalibration(workstation, bench.machine.host));
  EXPECT_EQ(workstation.rpm_calibration.size(), 2u);
  settings.RPMvsVoltageFile = "/elsewhere/motor.txt";
  EXPECT_FALSE(LoadCalibration(workstation, bench.machine.host));
  EXPECT_EQ(settings.DABoard, 0);
  EXPECT_THAT(
      bench.machine.dialogs.TakeMessages(),
      ElementsAre("RPM vs. Voltage file cannot be found or invalid. You cannot use RPM control."));
  EXPECT_FALSE(LoadCalibration(workstation, bench.machine.host));  // said once
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(), IsEmpty());
}

TEST_F(RotationTest, TurnsAndStops) {
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  vendor.Take();
  EXPECT_EQ(Turn(2000), 2000);
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 1", "AO 3 0 1.8"));
  EXPECT_EQ(Turn(5000), 3000);
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 1", "AO 3 0 2.6"));
  // A table that begins above 0 switches the outlet off and leaves the voltage.
  workstation.rpm_calibration[0] = {100, 0.2};
  EXPECT_EQ(Turn(0), 0);
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 0"));
  EXPECT_EQ(workstation.motor_voltage, 2.6);
  EXPECT_EQ(Turn(100), 100);
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 1", "AO 3 0 0.2"));
}

TEST_F(RotationTest, WithoutOutletsTheLowestRateIsAsSlowAsItGets) {
  settings.PowerControl = 0;
  workstation.rpm_calibration[0] = {100, 0.2};
  EXPECT_EQ(Turn(0), 100);
  EXPECT_THAT(Sent(), IsEmpty());  // no output is open yet
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  EXPECT_EQ(Turn(0), 100);
  EXPECT_THAT(Sent(), ElementsAre("AO 3 0 0.2"));
}

TEST_F(RotationTest, WithoutATableTheMotorIsOffAndWithoutControlNothingIsSent) {
  workstation.rpm_calibration.clear();
  Turn(400);
  EXPECT_THAT(Sent(), ElementsAre("DO 1 0 0"));
  settings.DABoard = 0;
  EXPECT_EQ(Turn(9000), 9000);
  EXPECT_THAT(vendor.calls, IsEmpty());
}

TEST_F(RotationTest, MotorThatCannotBeSwitchedOffGetsNoVoltage) {
  workstation.rpm_calibration[0] = {100, 0.2};
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  bench.instruments.libraries.dask.DO_WritePort = nullptr;  // the outlets do not open
  EXPECT_EQ(Turn(400), 400);
  vendor.Take();
  Turn(0);
  EXPECT_THAT(Sent(), ElementsAre("AO 3 0 0"));
  EXPECT_EQ(workstation.motor_voltage, 0);
}

TEST_F(RotationTest, NudgesAddUpAndStayInRange) {
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  Turn(1000);
  vendor.Take();
  for (const double delta : {0.25, 0.25, 9.0, -9.0}) rotation.Nudge(delta);
  EXPECT_THAT(Sent(), ElementsAre("AO 3 0 1.25", "AO 3 0 1.5", "AO 3 0 5", "AO 3 0 0"));
  EXPECT_EQ(workstation.motor_voltage, 0);
}

TEST_F(RotationTest, AdjustingAPointAndSavingIt) {
  settings.RPMvsVoltageFile = "/motor.txt";
  AdjustRpmForm* const form = LoadAdjust();
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

TEST_F(RotationTest, TriedVoltageKeepsToItsRange) {
  workstation.rpm_calibration[0].volts = 0.001;
  AdjustRpmForm* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  ASSERT_TRUE(form->cmdMotorOn.UserClick().ok());
  ASSERT_TRUE(form->UpdVoltage.UserStep(-1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "0.000");
  ASSERT_TRUE(form->UpdVoltage.UserStep(-1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "0.000");
  for (int i = 0; i < 3000; ++i) ASSERT_TRUE(form->UpdVoltage.UserStep(+1).ok());
  EXPECT_EQ(form->txtVoltage.text(), "4.900");
}

TEST_F(RotationTest, MeasuredRateIsAveragedOverTenReadings) {
  AdjustRpmForm* const form = LoadAdjust();
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

TEST_F(RotationTest, ClosingTheAdjustmentStopsItsMotorButNoMeasurement) {
  Desktop& desktop = bench.machine.desktop;
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

TEST_F(RotationTest, AdjustmentRefusesToLoadWithoutItsBoards) {
  vendor.config_result[1] = 4;
  EXPECT_EQ(LoadAdjust(), nullptr);
  vendor.config_result.clear();
  bench.instruments.Release();
  vendor.register_result = -1;
  EXPECT_EQ(LoadAdjust(), nullptr);
  EXPECT_THAT(bench.machine.dialogs.TakeMessages(),
              ElementsAre("DA Board Trouble!", "AD Board不良です"));
}

TEST_F(RotationTest, AdjustmentWithoutRotationControlTouchesNothing) {
  settings.DABoard = 0;
  settings.RPMvsVoltageFile = "/motor.txt";
  workstation.rpm_calibration.clear();
  AdjustRpmForm* const form = LoadAdjust();
  ASSERT_NE(form, nullptr);
  for (Button* button : {&form->cmdMotorOn, &form->cmdUpdate, &form->cmdSave}) {
    EXPECT_FALSE(button->enabled());
  }
  EXPECT_FALSE(SaveCalibration(workstation, bench.machine.host).ok());
  EXPECT_FALSE(bench.machine.files.Exists("/motor.txt"));
}

}  // namespace
}  // namespace zento
