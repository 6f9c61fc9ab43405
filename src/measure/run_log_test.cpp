#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "measure/test_runs.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Operation = MemoryFiles::Operation;

// A workstation whose log is read as a person reads it, lines ended by LF.
struct LogRig : TestRig {
  LogRig() { ws.run_log.Attach(machine.host, "home"); }

  // As it is on the disk now.
  std::string Log() {
    std::string text = machine.files.Read(RunLogPath("home")).value();
    std::erase(text, '\r');
    return text;
  }
  frmMeasureCV& Sweep() { return ShortSweep(CV()); }
};

TEST(RunLog, TellsAWholeRun) {
  LogRig rig;
  rig.Sweep().StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Log(), R"(2026/01/01 09:00:01  BEGIN Cyclic voltammetry
                         Title: Ferricyanide
                         Target track: 3
                         Setting: 0 Initial Setting
                         Potentials: 0 V, 0.5 V, -0.1 V
                         Scan rate: 100 mV/s
                         Cycles: 1
                         Method: by cycles, 12.0 s planned
                         Sweep from: the function generator, held at the first potential for 2 s
                         Rotation: 1000 rpm
                         Sampling: 10 Hz, 3 readings a point
                         Scales: 1 V/V, 0.001 A/V
                         Reference: none
2026/01/01 09:00:01    bus: SR0 F1ED1 VF+0000 RT10E-2 STEP HT002E0 YF1 F101 VF+0000 RT10E-2
2026/01/01 09:00:01    bus: HT000E0 YF0 F102 VF+0500 RT10E-2 HT000E0 YF0 F103 VF-0100 RT10E-2
2026/01/01 09:00:01    bus: HT000E0 YF0 F104 VF+0000 RT10E-2 HT000E0 YF0 ET4 ED0 A1
2026/01/01 09:00:01    Rotation 1000 rpm
2026/01/01 09:00:03    Recording begins
2026/01/01 09:00:15    Stop requested: the planned time is over
2026/01/01 09:00:15    bus: A0
2026/01/01 09:00:15    Rotation 0 rpm
2026/01/01 09:00:15  END Cyclic voltammetry: the planned time is over; 122 points in track 3; took 14.3 s
)");
}

TEST(RunLog, TellsHowEachRunEnded) {
  LogRig rig;
  frmMeasureCV& cv = rig.Sweep();
  cv.StartMeasurement();
  rig.RunFor(1);
  ASSERT_TRUE(cv.cmdStop.UserClick().ok());
  ASSERT_TRUE(cv.cmdStop.UserClick().ok());
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_THAT(rig.Log(), EndsWith("stopped by hand; no points, nothing stored; took 1.1 s\n"));

  cv.StartMeasurement();
  rig.RunFor(5);
  rig.machine.desktop.RequestClose("frmMeasureCV");
  EXPECT_THAT(rig.Log(), EndsWith("END Cyclic voltammetry: the window or the program was closed; "
                                  "30 points in track 3; took 5.0 s\n"));
}

TEST(RunLog, TellsOfFailingReadingsWithoutBeingFloodedByThem) {
  LogRig rig;
  frmMeasureCV& cv = rig.Sweep();
  ASSERT_TRUE(cv.OpnCVMeas.UserChoose(1).ok());
  cv.StartMeasurement();
  rig.RunFor(5);
  rig.instruments.analog_input.Close();
  rig.RunFor(1);
  ASSERT_EQ(rig.instruments.analog_input.Open(), 0);
  rig.RunFor(3);
  EXPECT_THAT(
      rig.Log(),
      HasSubstr("09:00:06    A reading failed, a gap begins: analog input: no board is open\n"));
  EXPECT_THAT(rig.Log(), HasSubstr("09:00:07    Readings are back after 10 failed, 1.0 s\n"));

  const std::size_t before = rig.Log().size();
  for (int i = 0; i < 300; ++i) {
    rig.instruments.analog_input.Close();
    rig.RunFor(0.1);
    ASSERT_EQ(rig.instruments.analog_input.Open(), 0);
    rig.RunFor(0.1);
  }
  EXPECT_LT(rig.Log().size() - before, 5000u);
  rig.instruments.analog_input.Close();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_THAT(rig.Log(), HasSubstr("Message: AD Board Trouble!"));
  EXPECT_THAT(rig.Log(), HasSubstr("END Cyclic voltammetry: the readings failed; 360 points in "
                                   "track 3; 331 readings failed, in 302 gaps;"));
}

TEST(RunLog, TellsOfCommandsThatDidNotGoOut) {
  LogRig rig;
  frmMeasureCV& cv = rig.Sweep();
  rig.instruments.libraries.gpib.GpTalk = nullptr;
  cv.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_THAT(rig.Log(), HasSubstr("bus: A0 FAILED: bus board: its library is not there"));
}

// Whatever a person or another program puts into a title, a line of the log is the log's own.
TEST(RunLog, NoTitleForgesALine) {
  LogRig rig;
  RunLog& log = rig.ws.run_log;
  const std::string forged =
      "Pt\r\n2026/01/01 09:00:00  END Run: 9 points\x1b[2K\xc2\x85x\xe2\x80\xa8y\tz \xce\xa9";
  const RunParameter title{"Title", forged};
  const auto run = log.Begin("Macro " + forged, {&title, 1});
  log.Event(forged, run);
  log.BusCommand(forged);
  log.End(run, forged);
  const std::string text = rig.Log();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5);
  EXPECT_THAT(text, Not(HasSubstr("\n2026/01/01 09:00:00  END Run")));
  for (const char* hidden : {"\x1b", "\t", "\xc2\x85", "\xe2\x80\xa8"}) {
    EXPECT_THAT(text, Not(HasSubstr(hidden)));
  }
  EXPECT_THAT(text, HasSubstr(" x y z \xce\xa9\n"));
}

TEST(RunLog, RunsStandUnderTheMacroThatStartedThem) {
  LogRig rig;
  RunLog& log = rig.ws.run_log;
  log.BusCommand("SR0");
  const auto macro = log.Begin("Macro night.zmc");
  const auto run = log.Begin("Potential step");
  log.Event("line 3: Wait 1000", macro);
  log.Event("Recording begins", run);
  // The macro's last line starts a run that goes on after it.
  log.End(macro, "all lines were carried out");
  log.BusCommand("A0");
  log.End(run, "the planned time is over");
  log.End(run, "twice");
  rig.machine.desktop.SetBanner("SIMULATED BENCH");
  log.Begin("Cyclic voltammetry");
  EXPECT_EQ(rig.Log(), R"(2026/01/01 09:00:01  bus: SR0

2026/01/01 09:00:01  BEGIN Macro night.zmc
2026/01/01 09:00:01    BEGIN Potential step
2026/01/01 09:00:01    line 3: Wait 1000
2026/01/01 09:00:01      Recording begins
2026/01/01 09:00:01  END Macro night.zmc: all lines were carried out; took 0.0 s
2026/01/01 09:00:01      bus: A0
2026/01/01 09:00:01    END Potential step: the planned time is over; took 0.0 s

2026/01/01 09:00:01  BEGIN Cyclic voltammetry
                         SIMULATED BENCH
)");
}

TEST(RunLog, WritesDenseLinesTogetherAndWithinASecond) {
  LogRig rig;
  rig.ws.run_log.Begin("Macro");
  const std::size_t begun = rig.Log().size();
  for (int i = 0; i < 1000; ++i) rig.ws.run_log.Event("line");
  EXPECT_EQ(rig.Log().size(), begun);
  rig.RunFor(1);
  EXPECT_GT(rig.Log().size(), begun + 1000 * 20);
}

TEST(RunLog, ADiskThatFailsStopsNoRunAndLosesNoLine) {
  LogRig rig;
  rig.machine.dialogs.HoldMessages(true);
  frmMeasureCV& cv = rig.Sweep();
  rig.machine.files.SetCapacity(10);
  cv.StartMeasurement();
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.Record(3).pnum, 122);
  EXPECT_THAT(rig.machine.dialogs.messages,
              ElementsAre(StartsWith("The run log is not being written.\nappend to ")));

  rig.machine.files.SetCapacity(1 << 20);
  cv.StartMeasurement();
  EXPECT_THAT(rig.Log(), StartsWith("2026/01/01 09:00:01  BEGIN Cyclic voltammetry\n"));
  EXPECT_THAT(rig.Log(), HasSubstr("122 points in track 3; took 14.3 s\n"));
  // A later outage is news again.
  rig.machine.files.SetCapacity(10);
  ASSERT_TRUE(rig.RunUntilIdle(60));
  EXPECT_EQ(rig.machine.dialogs.messages.size(), 2u);
}

TEST(RunLog, ALargeFileIsKeptUnderANumber) {
  LogRig rig;
  const std::string old(5 << 20, 'x');
  ASSERT_TRUE(rig.machine.files.Replace("home/Run log 1.txt", "older").ok());
  ASSERT_TRUE(rig.machine.files.Replace(RunLogPath("home"), old).ok());
  rig.ws.run_log.Begin("Cyclic voltammetry");
  EXPECT_EQ(rig.machine.files.Read("home/Run log 1.txt").value(), "older");
  EXPECT_EQ(rig.machine.files.Read("home/Run log 2.txt").value(), old);
  EXPECT_LT(rig.Log().size(), 100u);

  // Where it cannot be moved it grows on.
  LogRig stuck;
  ASSERT_TRUE(stuck.machine.files.Replace(RunLogPath("home"), old).ok());
  stuck.machine.files.FailNext(Operation::kRename);
  stuck.ws.run_log.Begin("Cyclic voltammetry");
  EXPECT_TRUE(stuck.Log().ends_with("x\n\n2026/01/01 09:00:01  BEGIN Cyclic voltammetry\n"));
}

TEST(RunLog, SaysDurationsAsAPersonDoes) {
  EXPECT_EQ(FormatDuration(12'540), "12.5 s");
  EXPECT_EQ(FormatDuration(80'000), "1 min 20 s");
  EXPECT_EQ(FormatDuration(28'805'000), "8 h 00 min 05 s");
}

}  // namespace
}  // namespace zento
