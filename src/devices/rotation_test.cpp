#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST_F(RotationTest, PlansApplyTheRatesThatTheMotorWill) {
  workstation.rpm_calibration[0] = {100, 0.2};
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  for (const int outlets : {2, 0}) {
    settings.PowerControl = outlets;
    for (const int rpm : {0, 99, 100, 2000, 5000}) {
      EXPECT_EQ(RateAsApplied(workstation, rpm), rpm < 100 && outlets > 0 ? 0 : Turn(rpm)) << rpm;
    }
    bench.instruments.outlets.Release();
  }
  settings.DABoard = 0;
  EXPECT_EQ(RateAsApplied(workstation, 400), std::nullopt);
}

TEST_F(RotationTest, NudgesAddUpAndStayInRange) {
  ASSERT_EQ(bench.instruments.analog_output.Open(), 0);
  Turn(1000);
  vendor.Take();
  for (const double delta : {0.25, 0.25, 9.0, -9.0}) rotation.Nudge(delta);
  EXPECT_THAT(Sent(), ElementsAre("AO 3 0 1.25", "AO 3 0 1.5", "AO 3 0 5", "AO 3 0 0"));
  EXPECT_EQ(workstation.motor_voltage, 0);
}

}  // namespace
}  // namespace zento
