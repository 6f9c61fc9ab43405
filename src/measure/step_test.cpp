#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<double> Intervals(TestRig& rig, int track) {
  std::vector<double> intervals;
  const auto times = rig.ws.tracks.Points(0, track);
  for (std::size_t i = 1; i < times.size(); ++i) {
    intervals.push_back(std::round((times[i] - times[i - 1]) * 1000));
  }
  return intervals;
}

TEST(StepForm, KeepsItsEntriesInTheSettingsAndCorrectsThemSilently) {
  TestRig rig;
  rig.ws.settings.PSV1 = 0.35;
  rig.ws.settings.PSGraphOn = 0;
  rig.ws.settings.PSRPM = 300;
  frmPotentialStep& step = rig.Step();
  EXPECT_EQ(step.caption(), "Potential Step Measurement");
  EXPECT_EQ(step.txtVoltSetting[0].text(), "0.8");
  EXPECT_EQ(step.txtVoltSetting[1].text(), "0.35");
  EXPECT_EQ(step.txtSamplingDivision.text(), "1.2");
  EXPECT_EQ(step.txtRPM.text(), "300");
  EXPECT_EQ(step.chkGraphOn.value(), 0);
  EXPECT_EQ(step.timer.Interval(), 100);

  ASSERT_TRUE(step.txtAccum.UserSet("0").ok());
  EXPECT_EQ(step.txtAccum.text(), "1");
  ASSERT_TRUE(step.txtInitSamplingRate.UserSet("300").ok());
  EXPECT_EQ(step.timer.Interval(), 3);
  ASSERT_TRUE(step.txtInitSamplingRate.UserSet("-3").ok());
  EXPECT_EQ(step.txtInitSamplingRate.text(), "0.1");
  EXPECT_EQ(step.timer.Interval(), 10'000);
  ASSERT_TRUE(step.txtCoulomb.UserSet("0.025").ok());
  ASSERT_TRUE(step.chkGraphOn.UserClick().ok());
  EXPECT_EQ(rig.ws.settings.PSAccum, 1);
  EXPECT_EQ(rig.ws.settings.PSInitSamplingRate, 0.1);
  EXPECT_EQ(rig.ws.settings.PSCoulomb, 0.025);
  EXPECT_EQ(rig.ws.settings.PSGraphOn, 1);

  step.rpm("10001");
  EXPECT_EQ(step.txtRPM.text(), "10000");
  step.DiskScale(-1);
  EXPECT_EQ(step.txtYScale.text(), "1E-05");
  step.MeasMode(2);
  EXPECT_EQ(step.opnPSMeas.selected(), 2);
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(StepForm, RecordsFromTheStepOnAndEndsByTime) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  rig.ws.tracks.Record(3).Scanrate = 50;
  ASSERT_TRUE(step.cmdStart.UserClick().ok());
  EXPECT_EQ(rig.sent, (std::vector<std::string>{"SR0", "F1ED1", "VF+0100", "RT10E9", "STEP",
                                                "HT002E0", "YF1", "F101", "VF+0800", "RT10E9",
                                                "STEP", "HT100E-1", "YF1", "ET1", "ED0", "A1"}));
  EXPECT_DOUBLE_EQ(rig.motor_volts, 1.0);
  EXPECT_EQ(rig.machine.desktop.Find("Graph1")->caption(), "I-t Graph");
  rig.RunFor(2.05);
  EXPECT_EQ(step.lblStatus.text(), "Waiting for the step");
  rig.RunFor(0.06);
  EXPECT_EQ(rig.Record(3).V[0], 0.1);
  EXPECT_EQ(rig.Record(3).V[1], 0.8);
  rig.RunFor(5);
  EXPECT_EQ(step.lblStatus.text(), "0.00245C 5.0s");
  ASSERT_TRUE(rig.RunUntilIdle());

  // The tick at 2.1 s sees the step; the first one later than 10 s after it is the last.
  EXPECT_EQ(Told(rig.Record(3)),
            "3 Ferricyanide 2026/01/01 09:00:13; 102 points, 10000 ms; 0.1 0.8 0 V, 0 mV/s, "
            "1000 rpm; 0.001 0 A/V; x -0.002 10.1 y -1E-05 0.0005 A");
  EXPECT_EQ(rig.ws.tracks.Value(0, 3, 0), 0);
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(0, 3, 101), 10.1);
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(1, 3, 50), 5e-4);
  EXPECT_EQ(step.txtDataNum.text(), "3");
}

TEST(StepForm, WithoutAStepItWaits) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  StepAfter(rig, 1e9);
  step.StartMeasurement();
  rig.RunFor(1000);
  EXPECT_EQ(rig.ws.running_flag, -1);
  // 49 mV off is still the same potential to one decimal at the start, but not to two later on.
  StepAfter(rig, 0, 0.104, 0.104);
  rig.RunFor(10);
  EXPECT_EQ(step.lblStatus.text(), "Waiting for the step");
  EXPECT_EQ(rig.ws.running_flag, -1);
}

TEST(StepForm, EndsByChargeOnlyInItsDirection) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  step.MeasMode(2);
  step.CoulombNumber(0.00101);
  step.StartMeasurement();
  EXPECT_THAT(rig.sent, Contains("HT300E+2"));
  ASSERT_TRUE(rig.RunUntilIdle(60));
  // 0.5 mA: 50 uC a point, and 1.05 mC is the first that exceeds the limit.
  EXPECT_EQ(rig.Record(3).pnum, 22);
  EXPECT_EQ(rig.machine.sound.played.size(), 1u);

  step.DiskScale(0.001);
  ASSERT_TRUE(step.txtYScale.UserSet("-0.001").ok());
  StepAfter(rig, 2.05);
  step.StartMeasurement();
  EXPECT_FALSE(rig.RunUntilIdle(60));
  ASSERT_TRUE(step.cmdStop.UserClick().ok());
  EXPECT_TRUE(rig.RunUntilIdle(1));
  EXPECT_EQ(rig.machine.sound.played.size(), 1u);
}

TEST(StepForm, VariableSamplingKeepsItsOwnCadence) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  ASSERT_TRUE(step.txtSamplingDivision.UserSet("1.1").ok());
  ASSERT_TRUE(step.opnSamplingMode.UserChoose(1).ok());
  step.MeasureTime(600);
  step.StartMeasurement();
  rig.RunFor(2.1 + 1);
  ASSERT_TRUE(rig.RunUntilIdle());
  const std::vector<double> intervals = Intervals(rig, 3);
  double rate = 10;
  for (std::size_t i = 0; i + 1 < intervals.size(); ++i) {
    rate /= 1.1;
    EXPECT_EQ(intervals[i], std::nearbyint(1000 / rate)) << i;
  }
  // The last point stands where the time is over, not at the end of an interval of its own.
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Points(0, 3).back(), 600.001);
  EXPECT_EQ(rig.ws.settings.PSInitSamplingRate, 10);
  EXPECT_EQ(step.timer.Interval(), 100) << "the monitor goes on at the rate in the box";
}

TEST(StepForm, ADivisionThatMultipliesIsSafe) {
  const auto intervals = [](const char* division) {
    TestRig rig;
    frmPotentialStep& step = ShortStep(rig);
    EXPECT_TRUE(step.txtSamplingDivision.UserSet(division).ok());
    EXPECT_TRUE(step.opnSamplingMode.UserChoose(1).ok());
    step.MeasureTime(2);
    step.StartMeasurement();
    EXPECT_TRUE(rig.RunUntilIdle(60));
    std::vector<double> all = Intervals(rig, 3);
    all.pop_back();  // to where the time is over
    return all;
  };
  EXPECT_THAT(intervals("0"), testing::Each(100));
  EXPECT_THAT(intervals("-2"), testing::Each(100));
  const std::vector<double> halved = intervals("0.5");
  EXPECT_EQ(halved[0], 50);
  EXPECT_EQ(halved[1], 25);
  EXPECT_EQ(halved.back(), 1);
}

// However slow the tail has become, Stop is Stop.
TEST(StepForm, StopTakesEffectWithinASecond) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  ASSERT_TRUE(step.txtSamplingDivision.UserSet("30").ok());
  ASSERT_TRUE(step.opnSamplingMode.UserChoose(1).ok());
  step.MeasMode(1);
  step.StartMeasurement();
  rig.RunFor(2.2 + 100);
  EXPECT_EQ(step.timer.Interval(), 2'700'000);
  ASSERT_TRUE(step.cmdStop.UserClick().ok());
  rig.RunFor(1);
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_EQ(rig.sent.back(), "A0");
  EXPECT_FALSE(rig.MotorOn());
}

TEST(StepForm, DrawsWhileTheRateIsBelow50HzAndItIsAskedTo) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  step.InitSamplingRate(100);
  ASSERT_TRUE(step.opnSamplingMode.UserChoose(1).ok());
  ASSERT_TRUE(step.txtSamplingDivision.UserSet("1.05").ok());
  step.StartMeasurement();
  const auto drawn = [&rig] { return rig.Picture("Graph1").ItemCount(); };
  rig.RunFor(2.15);
  EXPECT_EQ(drawn(), 0u);
  EXPECT_EQ(step.lblStatus.text(), "Recording");
  rig.RunFor(1);
  EXPECT_GT(drawn(), 20u) << "with the points before";
  ASSERT_TRUE(step.chkGraphOn.UserSet("0").ok());
  const std::size_t before = drawn();
  rig.RunFor(2);
  EXPECT_EQ(drawn(), before);
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(drawn(), static_cast<std::size_t>(rig.Record(3).pnum));
}

TEST(StepForm, APotentialBetweenTenthsOfAVoltIsTakenForAStepAndTheLogSaysSo) {
  TestRig rig;
  rig.ws.run_log.Attach(rig.machine.host, "home");
  frmPotentialStep& step = ShortStep(rig);
  StepAfter(rig, 2, 0.25, 0.8);
  step.StartMeasurement();
  rig.RunFor(0.1);
  EXPECT_EQ(rig.Record(3).V[0], 0.2);
  EXPECT_EQ(rig.Record(3).V[1], 0.25);
  ASSERT_TRUE(rig.RunUntilIdle());
  StepAfter(rig, 2.05);
  step.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle());
  const std::string log = ReadLog(rig);
  EXPECT_THAT(log, HasSubstr("recording did not wait for the step"));
  EXPECT_THAT(log, HasSubstr("The step came at most 100 ms before time 0"));
  EXPECT_THAT(log, HasSubstr("Potentials: 0.1 V, 0.8 V"));
}

TEST(StepForm, AnotherTargetGetsItAllAndTheFirstIsLeftAsItWas) {
  TestRig rig;
  frmPotentialStep& step = ShortStep(rig);
  rig.ws.tracks.Record(3).V = {-0.3, 1.1, 0.2};
  step.StartMeasurement();
  rig.RunFor(5);
  step.SelTrack(8);
  ASSERT_TRUE(step.txtVoltSetting[0].UserSet("0.4").ok());
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.Record(3).V, (std::array<double, 3>{-0.3, 1.1, 0.2}));
  EXPECT_EQ(rig.Record(8).V, (std::array<double, 3>{0.1, 0.8, 0}));
  EXPECT_EQ(rig.Record(8).pnum, 102);
}

}  // namespace
}  // namespace zento
