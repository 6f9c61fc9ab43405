#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "measure/rotation_sweep.h"
#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RotationRamp, GoesFromItsStartToItsEndWhateverTheSignOfTheSpeed) {
  EXPECT_EQ((RotationRamp{200, 1200, 10}).DurationMillis(), 100'000);
  for (const double speed : {10.0, -10.0}) {
    const RotationRamp down{1200, 200, speed};
    EXPECT_EQ(down.DurationMillis(), 100'000);
    EXPECT_DOUBLE_EQ(down.At(30'004), 900) << "in hundredths of a second";
    EXPECT_FALSE(down.Reached(down.At(99'990)));
    EXPECT_TRUE(down.Reached(down.At(100'000)));
    EXPECT_DOUBLE_EQ((RotationRamp{200, 1200, speed}).At(30'006), 500.1);
  }
}

TEST(RotationRamp, WithoutSpeedNeverEndsUnlessItIsThere) {
  const RotationRamp still{200, 1200, 0};
  EXPECT_EQ(still.DurationMillis(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(still.At(1e9), 200);
  EXPECT_FALSE(still.Reached(still.At(1e9)));
  const RotationRamp there{500, 500, 0};
  EXPECT_EQ(there.DurationMillis(), 0);
  EXPECT_TRUE(there.Reached(there.At(0)));
}

TEST(RotationSweepForm, KeepsItsEntriesInTheSettingsAndMonitors) {
  TestRig rig;
  rig.ws.settings.RPjSpeed = 25;
  rig.ws.settings.RPjDiskPotential = -0.3;
  rig.volts = [](int channel) { return channel == 4 ? 1.5 : 0.2; };
  frmMeasureRPMvsj& sweep = rig.Sweep();
  EXPECT_EQ(sweep.caption(), "RPM vs. i");
  EXPECT_EQ(sweep.txtSpeed.text(), "25");
  EXPECT_EQ(sweep.txtDiskXValue.text(), "-0.3");
  EXPECT_EQ(sweep.txtLimitRPM.text(), "1500");
  rig.RunFor(0.1);
  EXPECT_EQ(sweep.lblVoltage.text(), "1500rpm");
  EXPECT_EQ(rig.reads, 500);

  ASSERT_TRUE(sweep.txtAccum.UserSet("0.5").ok());
  ASSERT_TRUE(sweep.txtSamplingrate.UserSet("0").ok());
  ASSERT_TRUE(sweep.txtEndRPM.UserSet("900").ok());
  EXPECT_EQ(rig.ws.settings.RPjAccum, 1);
  EXPECT_EQ(rig.ws.settings.RPjSamplingRate, 0.1);
  EXPECT_EQ(sweep.timer.Interval(), 10'000);
  EXPECT_EQ(rig.ws.settings.RPjEndRPM, 900);
  EXPECT_EQ(rig.ws.settings.RPjV, -0.2);
  sweep.DiskScale(0);
  EXPECT_EQ(sweep.txtYScale.text(), "1E-05");
}

TEST(RotationSweepForm, RampsAfterTheRetainTimeAndStoresRateCurrentAndTime) {
  for (const bool generator : {true, false}) {
    TestRig rig;
    if (!generator) rig.ws.settings.GPIBControl = 0;
    frmMeasureRPMvsj& sweep = ShortRamp(rig);
    rig.ws.tracks.Record(3).RPM = 1600;
    ASSERT_TRUE(sweep.chkRecordTime.UserClick().ok());
    ASSERT_TRUE(sweep.cmdStart.UserClick().ok());
    if (generator) {
      EXPECT_THAT(rig.sent,
                  ElementsAre("SR0", "F1ED1", "VF-0250", "RT10E9", "STEP", "HT003E0", "YF1", "F101",
                              "VF-0250", "RT10E9", "STEP", "HT600E-2", "YF1", "ET1", "ED0", "A1"));
    }
    EXPECT_DOUBLE_EQ(rig.motor_volts, 0.2);
    rig.RunFor(3.05);
    EXPECT_EQ(sweep.lblMode.text(), "Waiting for the start");
    rig.RunFor(2.1);
    EXPECT_NEAR(rig.motor_volts, 0.4, 1e-9);
    ASSERT_TRUE(rig.RunUntilIdle(60));

    // A tick reads what the tick before it commanded; the one at 5 s commands the end.
    EXPECT_EQ(Told(rig.Record(3)),
              "4 Oxygen 2026/01/01 09:00:09; 51 points, 5000 ms; -0.25 0 0 V, 0 mV/s, "
              "0 rpm; 0.001 0 A/V; x 200 700 y -1E-05 6.9E-05 A");
    EXPECT_EQ(rig.Record(3).TimeRecording, 1);
    EXPECT_EQ(rig.ws.tracks.Value(2, 3, 0), 0);
    EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(2, 3, 50), 5000);
    EXPECT_NEAR(rig.ws.tracks.Value(0, 3, 50), 690, 1e-9);
    EXPECT_NEAR(rig.ws.tracks.Value(1, 3, 50), 6.9e-5, 1e-12);
    EXPECT_EQ(rig.sent.empty() ? "A0" : rig.sent.back(), "A0");
    EXPECT_FALSE(rig.MotorOn());
  }
}

TEST(RotationSweepForm, CommandsNoRateAbove5000AndStillEnds) {
  TestRig rig;
  rig.ws.rpm_calibration = {{100, 0.1}, {10000, 5.0}};
  frmMeasureRPMvsj& sweep = ShortRamp(rig);
  sweep.SetRPMParameters(4500, 5500, 100);
  sweep.StartMeasurement();
  rig.RunFor(3.1 + 5.05);
  EXPECT_TRUE(rig.MotorOn());
  rig.RunFor(0.1);
  EXPECT_FALSE(rig.MotorOn());
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(3).MaxTime, 10'000);
  // And downwards the motor comes on where the ramp may be commanded.
  sweep.SetRPMParameters(5500, 4500, 100);
  sweep.StartMeasurement();
  rig.RunFor(3.1 + 4.9);
  EXPECT_FALSE(rig.MotorOn());
  rig.RunFor(0.2);
  EXPECT_TRUE(rig.MotorOn());
  EXPECT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(3).pnum, 101);
}

TEST(RotationSweepForm, ByTheLimitRecordsFromTheFirstChangeToTheLimit) {
  TestRig rig;
  frmMeasureRPMvsj& sweep = ShortRamp(rig);
  sweep.AppliedMeasuremode(0);
  ASSERT_TRUE(sweep.txtLimitRPM.UserSet("1000").ok());
  double rpm = 503;
  rig.volts = [&rpm](int channel) { return channel == 4 ? rpm / 1000 : 0.1; };
  sweep.StartMeasurement();
  rpm = 504.9;  // the same 5 rpm
  rig.RunFor(60);
  EXPECT_EQ(sweep.lblMode.text(), "Waiting for the start");
  rpm = 505.5;
  rig.RunFor(0.1);
  EXPECT_EQ(sweep.lblMode.text(), "Recording");
  rpm = 1000;
  rig.RunFor(30);
  EXPECT_EQ(rig.ws.running_flag, -1);
  rpm = 1000.5;
  ASSERT_TRUE(rig.RunUntilIdle(1));
  EXPECT_EQ(rig.Record(3).pnum, 302);
  EXPECT_EQ(rig.Record(3).MaxTime, 30'100);
  EXPECT_EQ(rig.Record(3).Vxmin, 0);
  EXPECT_DOUBLE_EQ(rig.Record(3).Vxmax, 1000.5);
  EXPECT_EQ(rig.Record(3).TimeRecording, 0);
  EXPECT_EQ(rig.ws.tracks.Column(2, 3).size(), 302u);
  EXPECT_EQ(rig.sent.back(), "A0");
}

TEST(RotationSweepForm, ByTheButtonRecordsUntilStopAndNothingWhereNothingMoved) {
  TestRig rig;
  frmMeasureRPMvsj& sweep = ShortRamp(rig);
  sweep.AppliedMeasuremode(1);
  double rpm = 500;
  rig.volts = [&rpm](int channel) { return channel == 4 ? rpm / 1000 : 0.1; };
  rig.ws.tracks.Record(3).Title = "last week's";
  sweep.StartMeasurement();
  rig.RunFor(600);
  ASSERT_TRUE(sweep.cmdStop.UserClick().ok());
  rig.RunFor(0.1);
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_EQ(rig.Record(3).Title, "last week's");
  EXPECT_THAT(rig.shown_tracks, IsEmpty());

  sweep.StartMeasurement();
  rpm = 600;
  rig.RunFor(600);
  // The mode of the start counts: a click on the ramp must not make the motor jump.
  ASSERT_TRUE(sweep.opnRPMvsj.UserChoose(2).ok());
  rig.RunFor(1);
  EXPECT_DOUBLE_EQ(rig.motor_volts, 0.2);
  ASSERT_TRUE(sweep.cmdStop.UserClick().ok());
  rig.RunFor(0.1);
  EXPECT_EQ(rig.Record(3).pnum, 6010);
  EXPECT_EQ(rig.Record(3).Vxmin, -0.1);
  EXPECT_THAT(rig.machine.sound.played, IsEmpty());
}

TEST(RotationSweepForm, TheRampGoesOnThroughAGapInTheReadings) {
  TestRig rig;
  frmMeasureRPMvsj& sweep = ShortRamp(rig);
  sweep.StartMeasurement();
  rig.RunFor(3.1 + 2.05);
  rig.volts = [](int) { return std::numeric_limits<double>::quiet_NaN(); };
  rig.RunFor(1);
  EXPECT_NEAR(rig.motor_volts, 0.5, 1e-9);
  FollowMotor(rig);
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(3).pnum, 41);
  EXPECT_EQ(rig.Record(3).MaxTime, 5000);
}

}  // namespace
}  // namespace zento
