#include "program/dry_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/settings_file.h"
#include "core/settings_table.h"
#include "core/track_store.h"
#include "host/virtual/memory_services.h"

namespace zento {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;

const std::filesystem::path kHome = "/home/lab";

class MacroCheckTest : public testing::Test {
 protected:
  MacroCheck Check(const std::string& text) {
    auto check = CheckMacro({text, "test.zmc", kHome, {}}, files_);
    EXPECT_TRUE(check.ok()) << check.why();
    return check.value();
  }
  // "LINE problem|note TEXT" each.
  static std::vector<std::string> Findings(const MacroCheck& check) {
    std::vector<std::string> texts;
    for (const auto& finding : check.findings) {
      texts.push_back(std::to_string(finding.line) + (finding.problem ? " problem " : " note ") +
                      finding.text);
    }
    return texts;
  }
  void UseSettings(void (*change)(Settings&)) {
    Settings settings;
    SetAllToDefaults(settings);
    settings.ADBoard = 2;
    change(settings);
    ASSERT_TRUE(files_.Replace(SettingsPath(kHome), FormatSettings(settings)).ok());
    ASSERT_TRUE(files_.Replace(kHome / "rpm.txt", "0\t0\r\n3000\t3\r\n").ok());
  }

  MemoryFiles files_;
};

constexpr char kShortCV[] =
    "CV.Voltage 0 0.3 0\nCV.Scanrate 100\nCV.Repeat 1\nCV.RetainTime 2\nCV.SamplingRate 5\n"
    "CV.Accumlation 10\n";

TEST_F(MacroCheckTest, TellsStepsTimesAndTracks) {
  const MacroCheck check =
      Check(std::string(kShortCV) + "CV.RecordTrack 4\nCV.Start\nWait 60000\nCV.Start");
  EXPECT_THAT(Findings(check), IsEmpty());
  EXPECT_TRUE(check.Clean());
  ASSERT_EQ(check.steps.size(), 3u);
  EXPECT_EQ(check.steps[0].line, 8);
  // 2 s at rest, 6 s of sweep, and a tick or two.
  EXPECT_NEAR(static_cast<double>(check.steps[0].takes), 8300, 300);
  EXPECT_NEAR(static_cast<double>(check.steps[1].takes), 60500, 2);
  EXPECT_NEAR(static_cast<double>(check.steps[2].begins), 68800, 400);
  // The run that the last line began is followed to its end.
  EXPECT_NEAR(static_cast<double>(check.total), 77300, 600);
  ASSERT_EQ(check.tracks.size(), 2u);
  EXPECT_EQ(check.tracks[0].track, 4);
  EXPECT_EQ(check.tracks[1].track, 5) << "the window moves on by itself";
  EXPECT_THAT(check.tracks[1].lines, ElementsAre(10));
}

TEST_F(MacroCheckTest, LeavesNoTraceInTheHome) {
  UseSettings([](Settings& s) { s.GPIBControl = 2; });
  const auto before = files_.List();
  const std::string settings = files_.Read(SettingsPath(kHome)).value();
  Check(std::string(kShortCV) + "CV.Start\nMail.Address a@b\nMail.Send");
  EXPECT_EQ(files_.List(), before);
  EXPECT_EQ(files_.Read(SettingsPath(kHome)).value(), settings);
}

TEST_F(MacroCheckTest, FindsTracksThatAreWrittenAgain) {
  const std::string again = "CV.RecordTrack 4\nCV.Start\n";
  const MacroCheck check = Check(kShortCV + again + again + again);
  EXPECT_THAT(Findings(check),
              ElementsAre("10 problem track 4 is written again: the points of line 8 are lost",
                          "12 problem track 4 is written again: the points of line 10 are lost"));
  EXPECT_FALSE(check.Clean());
}

TEST_F(MacroCheckTest, FindsAFullBuffer) {
  const MacroCheck check = Check(
      "CV.Voltage 0 1 0\nCV.Scanrate 10\nCV.RetainTime 1\nCV.SamplingRate 200\nCV.Accumlation 1\n"
      "CV.Start");
  EXPECT_THAT(Findings(check), IsSupersetOf({"6 problem message: \"Buffer overflow!\"",
                                             "6 problem the buffer is full before the measurement "
                                             "is over: what follows is not kept"}));
}

TEST_F(MacroCheckTest, FindsValuesThatDoNotGetThroughAsWritten) {
  EXPECT_THAT(
      Findings(Check("CV.RPM 20000\nCV.SamplingRate 1,5\nCV.Repeat 1.6\nCV.Voltage 0 1e 0.3\n"
                     "RDE.DiskScale -1\nPS.Accumlation 0\nPS.MeasureMode 2\n"
                     "RPMvsi.RPM 100 400 x\nCV.RecordTrack 21")),
      ElementsAre(
          "1 problem CV.RPM: 20000 is limited to 10000", "2 problem \"1,5\" is no number: 1 counts",
          "3 note 1.6 is rounded to 2", "4 problem \"1e\" is no number: 1 counts",
          "5 problem RDE.DiskScale: -1 is limited to 1E-05",
          "6 problem PS.Accumlation: 0 is limited to 1", "8 problem \"x\" is no number: 0 counts",
          "9 problem CV.RecordTrack: 21 is limited to 20"));
  // A setting takes the place of what lines have set before it.
  EXPECT_THAT(Findings(Check("CV.Accumlation 1\nCV.Setting 2\nCV.Voltage 0 0.1 0\nCV.Scanrate "
                             "100\nCV.RPM 0\nCV.RetainTime 2\nCV.Repeat 1\nCV.SamplingRate "
                             "5\nCV.RecordTrack 3\nCV.Start\nCV.Start")),
              ElementsAre(AllOf(HasSubstr("10 problem the run begins with "),
                                HasSubstr(" where CV.Accumlation of line 1 had set 1"))));
}

TEST_F(MacroCheckTest, FindsWhatTheHardwareDoesNotTake) {
  EXPECT_THAT(
      Findings(Check("Motor.On 50\nMotor.On 0\nMotor.On 400\nMotor.On 90000\n"
                     "Power 0 1\nPower 4 1\nPower 5 1\nPower -1 1\n"
                     "SetPotential 9.999\nSetPotential -10\nSound none.wav")),
      ElementsAre("1 problem 50 rpm is below the calibration: the motor stays off",
                  "4 problem 90000 rpm is outside the calibration: the motor turns at 5000 rpm",
                  "7 problem there is no outlet 5: they are numbered 0 to 4",
                  "8 problem there is no outlet -1: they are numbered 0 to 4",
                  "10 problem -10 V is sent as 0 V: the bus takes less than 10 V",
                  "11 note there is no sound file none.wav"));
}

// What a run asks of the instruments is that of its plan, in all windows.
TEST_F(MacroCheckTest, FindsWhatTheRunsPlanAsksTooMuch) {
  EXPECT_THAT(Findings(Check("PS.Voltage 0 11\nPS.MeasureMode 1\nPS.RPM 50\nPS.RetainTime 1\n"
                             "PS.InitSamplingRate 1000\nPS.Accumlation 1\nPS.Start")),
              IsSupersetOf({"7 problem 11 V is sent as 1 V: the bus takes less than 10 V",
                            "7 problem 50 rpm is below the calibration: the motor stays off",
                            "7 problem the measurement ends only when somebody presses Stop or the "
                            "buffer is full"}));
  const std::string sweep =
      "RPMvsi.Potential 0.0004\nRPMvsi.RetainTime 1\nRPMvsi.RPM 50 6000 1000\n"
      "RPMvsi.SamplingRate 1\nRPMvsi.Accumlation 1\n";
  EXPECT_THAT(
      Findings(Check(sweep + "RPMvsi.mode 2\nRPMvsi.Start")),
      ElementsAre("7 note 0.0004 V is sent as 0 V",
                  "7 problem 50 rpm is below the calibration: the motor stays off",
                  "7 problem 6000 rpm is outside the calibration: the motor turns at 5000 rpm"));
}

TEST_F(MacroCheckTest, FindsWhatTheBusDoesNotTake) {
  const MacroCheck check = Check(
      "CV.Voltage 0 12 0.0004\nCV.Scanrate 1250\nCV.RetainTime 2000\nCV.Repeat 1\nCV.RPM 4600\n"
      "CV.SamplingRate 5\nCV.Accumlation 1\nCV.Start");
  const auto findings = Findings(check);
  EXPECT_THAT(findings, Contains("8 problem 12 V is sent as 2 V: the bus takes less than 10 V"));
  EXPECT_THAT(findings, Contains("8 note 0.0004 V is sent as 0 V"));
  EXPECT_THAT(findings, Contains(HasSubstr("8 note 1250 mV/s is sent as 1300 mV/s")));
  EXPECT_THAT(findings, Contains("8 problem the run begins with 999 where CV.RetainTime of line 3 "
                                 "had set 2000"));
}

TEST_F(MacroCheckTest, KnowsWhatThePersonsSettingsLeaveOut) {
  UseSettings([](Settings& s) { s.GPIBControl = 0; });
  const auto findings = Findings(Check("SetPotential 0.5\nMotor.On 400\nPower 1 1"));
  EXPECT_THAT(findings,
              ElementsAre("1 problem there is no function generator that could set a potential",
                          "2 problem 400 rpm cannot be set: there is no rotation control",
                          "3 problem there are no outlets that could be switched"));
  const MacroCheck own = Check(std::string(kShortCV) + "CV.Start");
  EXPECT_THAT(Findings(own), Contains(HasSubstr("7 note there is no function generator")));
  ASSERT_EQ(own.steps.size(), 1u);
  // The potentiostat rests for 10 s before a programme of its own; the sweep's time is 6 s.
  EXPECT_NEAR(static_cast<double>(own.steps[0].takes), 16'300, 700);
  // A ramp needs no generator: its motor is all that is missing.
  EXPECT_THAT(Findings(Check("RPMvsi.mode 2\nRPMvsi.RPM 100 200 100\nRPMvsi.RetainTime 1\n"
                             "RPMvsi.SamplingRate 2\nRPMvsi.Accumlation 1\nRPMvsi.Start")),
              ElementsAre("6 problem 100 rpm cannot be set: there is no rotation control",
                          "6 problem 200 rpm cannot be set: there is no rotation control"));
  UseSettings([](Settings& s) {
    s.GPIBControl = 2;
    s.GPIBAddress = 12;
    s.DABoard = 1;
    s.RPMvsVoltageFile = "rpm.txt";
  });
  EXPECT_THAT(Findings(Check("Motor.On 4000")),
              ElementsAre("1 problem 4000 rpm is outside the calibration: the motor turns at 3000 "
                          "rpm"));
  // The generator answers at the address that is set, or the step would never be seen.
  const MacroCheck step = Check(
      "PS.Voltage 0 0.5\nPS.RetainTime 2\nPS.MeasureMode 0\nPS.MeasureTime 3\n"
      "PS.InitSamplingRate 10\nPS.Accumlation 10\nPS.Start");
  ASSERT_EQ(step.steps.size(), 1u);
  EXPECT_NEAR(static_cast<double>(step.steps[0].takes), 5'200, 400);
}

TEST_F(MacroCheckTest, ShowsTheMessagesARunWouldShow) {
  const MacroCheck check = Check("cv.rpm 1\nMail.Address nobody\nMail.Send\nWait\nCV.RPM 5");
  EXPECT_THAT(
      Findings(check),
      IsSupersetOf({"1 problem message: \" 1line Syntax Error\"",
                    "3 problem the mail would not be sent: \"nobody\" is no mail address",
                    "3 problem the mail would not be sent: there is no Mail.txt in the home",
                    "4 problem message: \" 4line Syntax error:Wait time/ms\""}));
  EXPECT_EQ(check.verdict.outcome.line, 4);

  ASSERT_TRUE(files_.Replace(kHome / "Mail.txt", "Server=\n").ok());
  EXPECT_THAT(Findings(Check("Mail.Address a@example.org\nMail.Send\nSSVMeasureMode")),
              ElementsAre(HasSubstr("2 problem the mail would not be sent: Mail.txt: "),
                          "3 problem SSVMeasureMode would fail"))
      << "once a mail was sent, a missing window ends no run";
}

TEST_F(MacroCheckTest, MarksWhatTheSampleDecides) {
  const MacroCheck check = Check(
      "PS.Voltage 0 0.5\nPS.MeasureMode 2\nPS.Coulomb 1e-3\nPS.RetainTime 5\nPS.InitSamplingRate "
      "20\nPS.Accumlation 10\nPS.Start");
  ASSERT_EQ(check.steps.size(), 1u);
  EXPECT_TRUE(check.steps[0].by_sample);
  EXPECT_THAT(FormatCheck(check), HasSubstr("~"));
}

TEST(FormatCheck, ShowsStepsTotalsTracksAndFindings) {
  MacroCheck check;
  check.steps = {{3, 0, 59'900, true, true, "Potential step: stopped"},
                 {12, 3'661'000, 500, false, false, "Wait"}};
  check.findings = {{12, true, "late"}, {3, false, "second"}, {3, true, "third"}, {0, true, "all"}};
  check.tracks = {{0, {3}}, {7, {3, 12}}};
  check.total = 3'661'500;
  check.verdict.messages = 2;
  EXPECT_EQ(FormatCheck(check),
            "  line  begins at      takes  what\n"
            "     3    0:00:00           ~59.9 s  Potential step: stopped\n"
            "    12    1:01:01             0.5 s  Wait\n"
            "Total about 1 h 01 min 01 s: 1 measurement 59.9 s, waits 0.5 s\n"
            "~ ended by charge or by the measured rate: another sample, another time\n"
            "Track 0: line 3\n"
            "Track 7: lines 3, 12\n"
            "PROBLEM: all\n"
            "Note, line 3: second\n"
            "PROBLEM, line 3: third\n"
            "PROBLEM, line 12: late\n"
            "Finished; 2 messages\n");
}

}  // namespace
}  // namespace zento
