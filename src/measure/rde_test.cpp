#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "measure/ring_disk_voltammetry.h"
#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double kClipped = 2.5 - 5.0 / 4096;  // V, the highest code of a 12-bit board

TEST(PlannedRotatingSweep, ReturnsToTheFirstPotentialOnlyInASingleCycle) {
  EXPECT_EQ(PlannedRotatingSweepMillis({-0.2, 1.2, 0.6}, 1, 50), 56'000);
  EXPECT_EQ(PlannedRotatingSweepMillis({-0.2, 1.2, 0.6}, 2, 50), 64'000);
  EXPECT_EQ(PlannedRotatingSweepMillis({-0.2, 1.2, 0.6}, 0, 50), 16'000);
  EXPECT_EQ(PlannedRotatingSweepMillis({-0.2, 1.2, 0.6}, -9, 50), 0);
  EXPECT_EQ(PlannedRotatingSweepMillis({0, 1, 0}, 1, 0), 2'147'483'647);
}

// 0 V, 0.5 V, -0.1 V once, at 100 mV/s: 12 s after a retain time of 2 s, at 1000 rpm.
struct RingDiskRig : TestRig {
  RingDiskRig() {
    volts = [this](int channel) {
      const std::array inputs = {Seconds() / 10, -0.5, 1.2, 2.0, rotation};
      return inputs.at(static_cast<std::size_t>(channel));
    };
    ws.run_log.Attach(machine.host, "home");
  }

  frmMeasureRDE& ShortRun() {
    frmMeasureRDE& rde = ShortSweep(RDE());
    rde.DiskScale(1e-3);
    rde.RingScale(1e-5);
    return rde;
  }
  // Lets a run that records take some more points.
  void Take(int points) { RunFor(points / 10.0); }

  std::string Log() { return ReadLog(*this); }

  double rotation = 1.0;  // V on channel 4
};

TEST(RDEForm, MonitorsFiveInputsWhileIdle) {
  RingDiskRig rig;
  rig.rotation = 1.2347;
  frmMeasureRDE& rde = rig.RDE();
  EXPECT_EQ(rde.caption(), "RDE Measurement");
  rig.RunFor(1);  // 2 Hz
  EXPECT_EQ(rig.reads, 2 * 500 * 5);
  EXPECT_EQ(rde.lblRPM.text(), "1234RPM");
  EXPECT_EQ(rde.picDiskVMon.ItemCount(), 2u);
  EXPECT_EQ(rde.picRingVMon.ItemCount(), 2u);
  ASSERT_TRUE(rde.cmdClearMon.UserClick().ok());
  EXPECT_EQ(rde.picDiskVMon.ItemCount(), 0u);
  EXPECT_EQ(rde.picRingVMon.ItemCount(), 0u);
  rig.instruments.analog_input.Close();
  rig.RunFor(1);
  EXPECT_EQ(rde.lblRPM.text(), "no reading");
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(RDEForm, CorrectsEntriesSilentlyAndKeepsThemAsSettings) {
  TestRig rig;
  rig.ws.settings.RDERPM = 1600;
  rig.ws.settings.RDERef = 4;
  rig.ws.settings.RDEAccum = 0;
  frmMeasureRDE& rde = rig.RDE();
  EXPECT_EQ(rde.txtRPM.text(), "1600");
  EXPECT_EQ(rde.cbxReference.selected(), 4);
  EXPECT_EQ(rde.txtAccum.text(), "1") << "a settings file may hold anything";
  EXPECT_EQ(Typed(rde.txtAccum, "0.5"), "1");
  EXPECT_EQ(Typed(rde.txtRPMScale, "0.9"), "1");
  EXPECT_EQ(Typed(rde.txtSamplingrate, "0"), "0.1");
  EXPECT_EQ(Typed(rde.txtSamplingrate, "5000"), "5000");
  EXPECT_EQ(Typed(rde.txtRingXScale, "2"), "2");
  EXPECT_EQ(Typed(rde.txtCycleNum, "1.5"), "1.5");
  ASSERT_TRUE(rde.cbxReference.UserChoose(2).ok());
  const Settings& s = rig.ws.settings;
  EXPECT_THAT((std::vector{s.RDEAccum, s.RPMScale, s.RDESamplingRate, s.RingXScale, s.RDECycleNum}),
              ElementsAre(1, 1, 5000, 2, 1.5));
  EXPECT_EQ(s.RDERef, 2);

  rde.SelTrack(21);
  rde.rpm("12000");
  rde.DiskScale(-1);
  rde.RingScale(0);
  rde.scanrate(-1);
  rde.SamplingRate(-1);
  rde.Accumlation(0);
  EXPECT_THAT((std::vector{rde.txtDataNum.text(), rde.txtRPM.text(), rde.txtDiskYScale.text(),
                           rde.txtRingYScale.text(), rde.txtScanrate.text(),
                           rde.txtSamplingrate.text(), rde.txtAccum.text()}),
              ElementsAre("20", "10000", "1E-05", "1E-05", "0.001", "0.1", "1"));
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(RDEForm, RecordsDiskAndRingAndStoresThem) {
  RingDiskRig rig;
  frmMeasureRDE& rde = rig.ShortRun();
  ASSERT_TRUE(rde.cmdStart.UserClick().ok());
  EXPECT_THAT(rig.sent, Contains("HT002E0"));
  EXPECT_EQ(rig.machine.desktop.Find("Graph1")->caption(), "Disk Voltammogram");
  EXPECT_EQ(rig.machine.desktop.Find("Graph2")->caption(),
            "Ring Voltammogram(x axis = Disk Voltage)");
  rig.RunFor(2.05);
  EXPECT_EQ(rde.lblMode.text(), "Waiting for the sweep");
  EXPECT_EQ(rde.lblTimeRemain.text(), "");
  rig.RunFor(5.1);
  EXPECT_EQ(rde.lblTimeRemain.text(), "7s remain");
  EXPECT_EQ(rig.Picture("Graph1").ItemCount(), 51u);
  EXPECT_EQ(rig.Picture("Graph2").ItemCount(), 51u);
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rde.lblTimeRemain.text(), "1s remain") << "the last half second shows nothing new";

  EXPECT_EQ(rde.txtDataNum.text(), "4");
  EXPECT_EQ(Told(rig.Record(3)),
            "2 Ferricyanide 2026/01/01 09:00:15; 122 points, 12000 ms; 0 0.5 -0.1 V, 100 mV/s, "
            "1000 rpm; 0.001 1E-05 A/V; x -0.1 1.42 y -0.0005 2E-05 A")
      << "the range holds both curves";
  EXPECT_NEAR(rig.ws.tracks.Points(0, 3).front(), 0.21, 1e-9);
  EXPECT_NEAR(rig.ws.tracks.Points(0, 3).back(), 1.42, 1e-9);
  EXPECT_THAT(rig.ws.tracks.Points(1, 3), Each(-5e-4));
  EXPECT_THAT(rig.ws.tracks.Points(2, 3), Each(2e-5));
}

TEST(RDEForm, SteersTheRotationIntoItsBand) {
  RingDiskRig rig;
  rig.ShortRun().StartMeasurement();
  rig.rotation = 0.9;
  rig.RunFor(2.05);
  EXPECT_DOUBLE_EQ(rig.motor_volts, 1.0) << "not while it waits";
  rig.Take(10);
  EXPECT_NEAR(rig.motor_volts, 1.005, 1e-9);
  rig.rotation = 0.9901;
  rig.Take(10);
  EXPECT_NEAR(rig.motor_volts, 1.005, 1e-9) << "within 10 rpm";
  rig.rotation = 1.0099;
  rig.Take(10);
  EXPECT_NEAR(rig.motor_volts, 1.005, 1e-9);
  rig.rotation = 1.0101;
  rig.Take(4);
  EXPECT_NEAR(rig.motor_volts, 1.003, 1e-9);
  rig.rotation = 0.0999;
  rig.Take(10);
  EXPECT_NEAR(rig.motor_volts, 1.003, 1e-9) << "a standing rotor or no signal";
  rig.rotation = 0.98;
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_THAT(rig.Log(), HasSubstr("Rotation measured: mean 9"));
  EXPECT_THAT(rig.Log(), HasSubstr("at the last point 980.0 rpm; motor voltage 1.0"));
}

TEST(RDEForm, DoesNotWindTheMotorUpOnAClippedSignal) {
  RingDiskRig rig;
  frmMeasureRDE& rde = rig.ShortRun();
  rde.rpm("2800");
  rde.StartMeasurement();
  rig.rotation = kClipped;
  rig.RunFor(5);
  EXPECT_DOUBLE_EQ(rig.motor_volts, 2.8);
  rig.rotation = 2.4;  // in range, and too slow
  rig.Take(2);
  EXPECT_NEAR(rig.motor_volts, 2.801, 1e-9);
  rig.rotation = kClipped;
  ASSERT_TRUE(rig.RunUntilIdle());
  const std::string log = rig.Log();
  const auto held = log.find("the motor voltage is held at 2.8000 V");
  EXPECT_NE(held, std::string::npos);
  EXPECT_EQ(log.find("is held", held + 40), std::string::npos) << "told once";
  EXPECT_THAT(log, HasSubstr(" rpm or more, at the last point 2498.8 rpm"));

  // A clipped signal above the rate that was set does say which way to go.
  rde.rpm("2000");
  rde.StartMeasurement();
  rig.RunFor(2.05 + 1);
  EXPECT_NEAR(rig.motor_volts, 1.995, 1e-9);
}

// The calibration ends at 3000 rpm.
TEST(RDEForm, SteersTowardsTheRateThatTheMotorWasSetTo) {
  RingDiskRig rig;
  frmMeasureRDE& rde = rig.ShortRun();
  ASSERT_TRUE(rde.txtRPMScale.UserSet("2000").ok());
  rde.rpm("5000");
  rde.StartMeasurement();
  rig.rotation = 1.5;
  rig.RunFor(10);
  EXPECT_DOUBLE_EQ(rig.motor_volts, 3.0);
  rig.ws.end_active_run();
  EXPECT_THAT(rig.Log(), HasSubstr("Rotation 5000 rpm, 3000 rpm after the calibration's limits"));
}

TEST(RDEForm, LeavesTheMotorAloneWithoutRotationControl) {
  RingDiskRig rig;
  rig.ws.settings.DABoard = 0;
  rig.ShortRun().StartMeasurement();
  rig.rotation = 0.5;
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.motor_volts, -1);
  EXPECT_EQ(rig.Record(3).pnum, 122);
}

TEST(RDEForm, DrawsOnARingWindowOpenedAgain) {
  RingDiskRig rig;
  rig.ShortRun().StartMeasurement();
  rig.RunFor(5);
  rig.machine.desktop.RequestClose("Graph2");
  rig.RunFor(1);
  rig.machine.desktop.Show("Graph2");
  ASSERT_TRUE(rig.RunUntilIdle());
  EXPECT_EQ(rig.Picture("Graph1").ItemCount(), 122u);
  EXPECT_EQ(rig.Picture("Graph2").ItemCount(), 122u);
}

}  // namespace
}  // namespace zento
