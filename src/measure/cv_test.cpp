#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "measure/cyclic_voltammetry.h"
#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PlannedSweep, IsThePathOverTheRate) {
  EXPECT_EQ(PlannedSweepMillis({-0.2, 1.2, 0.6}, 2, 50), 80'000);
  // One cycle has no middle term: 1.4 + 0.6 + 0.8 V.
  EXPECT_EQ(PlannedSweepMillis({-0.2, 1.2, 0.6}, 1, 50), 56'000);
  EXPECT_EQ(PlannedSweepMillis({0.5, 0.5, 0.5}, 3, 50), 0);
  // Ties go to the even millisecond.
  EXPECT_EQ(PlannedSweepMillis({0, 0.00025, 0}, 1, 200), 2);
  EXPECT_EQ(PlannedSweepMillis({0, 0.00025, 0}, 1, 1000), 0);
}

TEST(PlannedSweep, NeverLeavesTheRangeOfAnInteger) {
  const auto most = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(PlannedSweepMillis({0, 1, 0}, 1, 0), most);
  EXPECT_EQ(PlannedSweepMillis({0, 1, 0}, 1, 1e-300), most);
  EXPECT_EQ(PlannedSweepMillis({0, 1e300, 0}, most, 1), most);
  EXPECT_EQ(PlannedSweepMillis({0, 0, 0}, 1, 0), 0);
  EXPECT_EQ(PlannedSweepMillis({0, 1, 0}, 1, -50), 0);
}

TEST(ElapsedTime, SurvivesTheWrapOfTheTickCount) {
  ElapsedTime time;
  time.Restart(std::numeric_limits<std::int32_t>::max() - 10);
  EXPECT_EQ(time.Read(std::numeric_limits<std::int32_t>::min() + 9), 20);
  // And spans that no difference of two counts can hold.
  EXPECT_EQ(time.Read(0), 20 + (std::int64_t{1} << 31) - 9);
  EXPECT_EQ(time.Read(2'000'000'000), 2'000'000'000 + 20 + (std::int64_t{1} << 31) - 9);
}

TEST(TimerPeriod, IsAWholeNumberOfMillisecondsWhateverTheRate) {
  EXPECT_EQ(PeriodCut(0.1), 10'000);
  EXPECT_EQ(PeriodCut(1000), 1);
  EXPECT_EQ(PeriodCut(300), 3);
  EXPECT_EQ(PeriodCut(1e300), 1);
  EXPECT_EQ(PeriodCut(0), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(PeriodRounded(300), 3);
  EXPECT_EQ(PeriodRounded(600), 2);
  EXPECT_EQ(PeriodCut(600), 1);
}

TEST(VoltageMonitor, KeepsTheLastPairsAndForgetsTheOldOnes) {
  TestRig rig;
  Graph& graph = *dynamic_cast<Graph*>(rig.machine.desktop.Load("Graph1"));
  VoltageMonitor monitor(graph.Picture1, Colour{});
  for (int i = 0; i < 10; ++i) monitor.Add(0.01 * i, 0.001);
  EXPECT_EQ(monitor.WriteIndex(), 10u);
  EXPECT_EQ(monitor.Range().x1, -0.1);
  monitor.Add(-0.4, 0.001);
  EXPECT_EQ(monitor.Range(), (PlotRange{-0.4, -0.01, 0.1, 0.01}));
  monitor.Add(std::numeric_limits<double>::quiet_NaN(), 0);
  EXPECT_EQ(monitor.WriteIndex(), 11u);
  EXPECT_EQ(monitor.Slot(11)[0], VoltageMonitor::kEmpty);
  // A night of monitoring does not pile up on the plot.
  for (int i = 0; i < 100'000; ++i) monitor.Add(0, 0);
  EXPECT_EQ(monitor.WriteIndex(), (100'000u + 11) % VoltageMonitor::kSlots);
  EXPECT_LE(graph.Picture1.ItemCount(), 3 * VoltageMonitor::kSlots);
  monitor.Clear();
  EXPECT_EQ(monitor.WriteIndex(), 0u);
  EXPECT_EQ(monitor.Range().x1, -0.1);
  EXPECT_EQ(monitor.Slot(0)[0], VoltageMonitor::kEmpty);
}

TEST(CVForm, MonitorsTheInputsWhileIdle) {
  TestRig rig;
  rig.volts = [](int channel) { return channel == 0 ? 0.25 : -0.05; };
  frmMeasureCV& cv = rig.CV();
  EXPECT_EQ(cv.caption(), "CV Meaurement");
  rig.RunFor(0.02);
  EXPECT_EQ(rig.reads, 2 * 100 * 2);
  EXPECT_EQ(cv.lblVoltage.text(), "0.250000V");
  rig.instruments.analog_input.Close();
  rig.RunFor(0.01);
  EXPECT_EQ(cv.lblVoltage.text(), "no reading");
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(CVForm, CorrectsEntriesSilently) {
  TestRig rig;
  frmMeasureCV& cv = rig.CV();
  EXPECT_EQ(Typed(cv.txtAccum, "0"), "1");
  EXPECT_EQ(Typed(cv.txtAccum, "250"), "250");
  EXPECT_EQ(Typed(cv.txtSamplingrate, "1001"), "1000");
  EXPECT_EQ(Typed(cv.txtSamplingrate, "none"), "0.1");
  EXPECT_EQ(Typed(cv.txtScanrate, "-20"), "0.01");
  EXPECT_EQ(Typed(cv.txtCycleNum, "0.4"), "1");
  EXPECT_EQ(Typed(cv.txtDataNum, "77"), "20");

  cv.rpm("10001");
  EXPECT_EQ(cv.txtRPM.text(), "10000");
  cv.SelTrack(-4);
  cv.rpm("-1");
  cv.DiskScale(0);
  cv.scanrate(-1);
  cv.Repeat(0);
  cv.RetainTime(-3);
  cv.SamplingRate(5000);
  cv.Accumlation(-5);
  EXPECT_THAT((std::vector{cv.txtDataNum.text(), cv.txtRPM.text(), cv.txtYScale.text(),
                           cv.txtScanrate.text(), cv.txtCycleNum.text(), cv.txtRetainTime.text(),
                           cv.txtSamplingrate.text(), cv.txtAccum.text()}),
              ElementsAre("0", "0", "1E-05", "0.001", "1", "0", "1000", "1"));
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(CVForm, KeepsSixSettings) {
  TestRig rig;
  frmMeasureCV& cv = rig.CV();
  EXPECT_EQ(cv.txtVoltSetting[0].text(), "0.6");
  ASSERT_TRUE(cv.txtVoltSetting[0].UserType("0.75").ok());
  ASSERT_TRUE(cv.cbxReference.UserChoose(3).ok());
  ASSERT_TRUE(cv.UpDown2.UserStep(1).ok());
  EXPECT_EQ(cv.txtCVNum.text(), "1");
  EXPECT_EQ(cv.txtVoltSetting[0].text(), "0.6");
  EXPECT_EQ(cv.cbxReference.selected(), 0);
  ASSERT_TRUE(cv.UpDown2.UserStep(-1).ok());
  ASSERT_TRUE(cv.UpDown2.UserStep(-1).ok());
  EXPECT_EQ(cv.txtCVNum.text(), "0");
  EXPECT_EQ(cv.txtVoltSetting[0].text(), "0.75");
  EXPECT_EQ(rig.ws.settings.CV[0].CVRef, 3);
  cv.SettingNum("9");
  EXPECT_EQ(rig.ws.settings.CVNum, 5);
  cv.SettingNum("-1");
  EXPECT_EQ(cv.txtVoltSetting[0].text(), "0.75");
}

TEST(CVForm, RecordsASweepFromTheEndOfTheRetainTimeAndStoresIt) {
  TestRig rig;
  rig.volts = [&rig](int channel) { return channel == 0 ? rig.Seconds() / 10 : 0.5; };
  frmMeasureCV& cv = ShortSweep(rig.CV());
  rig.RunFor(1);
  ASSERT_TRUE(cv.cmdStart.UserClick().ok());
  EXPECT_EQ(rig.sent.front(), "SR0");
  EXPECT_THAT(rig.sent, Contains("HT002E0"));
  EXPECT_DOUBLE_EQ(rig.motor_volts, 1.0);
  ASSERT_TRUE(rig.machine.desktop.Shown("Graph1"));
  EXPECT_EQ(rig.machine.desktop.Find("Graph1")->caption(), "Cyclic Voltammogram");

  rig.RunFor(2.05);
  EXPECT_EQ(cv.lblTimeRemain.text(), "");
  rig.RunFor(0.15);
  EXPECT_EQ(cv.lblTimeRemain.text(), "12s remain Scan Rate:0");
  rig.RunFor(5);
  EXPECT_EQ(cv.lblTimeRemain.text(), "7s remain Scan Rate:100");
  ASSERT_TRUE(rig.RunUntilIdle());

  // Ticks at 0.1 s: recording begins with the tick after 2 s, ends with the first one later than
  // 12 s after it.
  EXPECT_EQ(Told(rig.Record(3)),
            "1 Ferricyanide 2026/01/01 09:00:16; 122 points, 12000 ms; 0 0.5 -0.1 V, 100 mV/s, "
            "1000 rpm; 0.001 0 A/V; x -0.1 1.52 y -1E-05 0.0005 A");
  EXPECT_EQ(rig.ws.tracks.Column(0, 3).size(), 122u);
  EXPECT_NEAR(rig.ws.tracks.Value(0, 3, 0), 0.31, 1e-9);
  EXPECT_NEAR(rig.ws.tracks.Value(0, 3, 121), 1.52, 1e-9);
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(1, 3, 60), 5e-4);
  EXPECT_EQ(cv.txtDataNum.text(), "4");
  EXPECT_EQ(rig.Picture("Graph1").ItemCount(), 122u);
}

TEST(CVForm, TheTargetGoesRoundBehindTrack20) {
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.SelTrack(20);
  cv.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.Record(20).pnum, 122);
  EXPECT_EQ(cv.txtDataNum.text(), "0");
  ASSERT_TRUE(cv.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(cv.txtDataNum.text(), "20");
}

TEST(CVForm, WorksWithTheValuesItWasStartedWith) {
  TestRig rig;
  rig.volts = [](int) { return 0.5; };
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.StartMeasurement();
  rig.RunFor(5);
  ASSERT_TRUE(cv.txtYScale.UserSet("1").ok());
  ASSERT_TRUE(cv.txtXScale.UserSet("10").ok());
  ASSERT_TRUE(cv.txtScanrate.UserSet("1").ok());
  ASSERT_TRUE(cv.UpDown2.UserStep(1).ok());
  ASSERT_TRUE(cv.txtTitle.UserSet("renamed").ok());
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.Record(3).Title, "renamed");
  EXPECT_EQ(rig.Record(3).Scanrate, 100);
  EXPECT_EQ(rig.Record(3).pnum, 122);
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(0, 3, 121), 0.5);
  EXPECT_DOUBLE_EQ(rig.ws.tracks.Value(1, 3, 121), 5e-4);
}

TEST(CVForm, ABoardThatFailsForAMomentLeavesAGap) {
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.StartMeasurement();
  rig.RunFor(5);
  rig.instruments.analog_input.Close();
  rig.RunFor(1);
  ASSERT_EQ(rig.instruments.analog_input.Open(), 0);
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
  EXPECT_EQ(rig.Record(3).pnum, 112);
  EXPECT_EQ(rig.Record(3).MaxTime, 12'000);
}

TEST(CVForm, ValuesBeyondAnyNumberAreNotRecorded) {
  TestRig rig;
  rig.volts = [](int) { return 2.0; };
  frmMeasureCV& cv = ShortSweep(rig.CV());
  ASSERT_TRUE(cv.txtYScale.UserSet("1e308").ok());
  cv.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(10));
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre("Overflow"));
  EXPECT_EQ(rig.Record(3).pnum, 0);
  EXPECT_EQ(rig.sent.back(), "A0");
}

TEST(CVForm, WaitsNoLongerThanTheGeneratorCanHold) {
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  cv.RetainTime(5000);
  cv.StartMeasurement();
  EXPECT_THAT(rig.sent, Contains("HT999E0"));
  EXPECT_EQ(cv.txtRetainTime.text(), "999");
  rig.RunFor(999.2);
  EXPECT_EQ(cv.lblMode.text(), "Recording");
}

TEST(CVForm, ClearsItsMonitorOnlyWhileIdle) {
  TestRig rig;
  frmMeasureCV& cv = ShortSweep(rig.CV());
  rig.RunFor(0.1);
  EXPECT_GT(cv.picVMon.ItemCount(), 0u);
  cv.StartMeasurement();
  ASSERT_TRUE(cv.cmdClearVMon.UserClick().ok());
  EXPECT_GT(cv.picVMon.ItemCount(), 0u);
  rig.ws.end_active_run();
  ASSERT_TRUE(cv.cmdClearVMon.UserClick().ok());
  EXPECT_EQ(cv.picVMon.ItemCount(), 0u);
}

TEST(CVForm, DrawsOnAGraphOpenedAgainWithThePointsBefore) {
  TestRig rig;
  ShortSweep(rig.CV()).StartMeasurement();
  rig.RunFor(5);
  rig.machine.desktop.RequestClose("Graph1");
  rig.RunFor(2);
  rig.machine.desktop.Show("Graph1");
  rig.RunFor(0.1);
  EXPECT_EQ(rig.Picture("Graph1").ItemCount(), 51u);
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.machine.desktop.Find("Graph1")->caption(), "Cyclic Voltammogram");
}

}  // namespace
}  // namespace zento
