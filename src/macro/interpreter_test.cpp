#include "macro/interpreter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "macro/follow_macro.h"
#include "measure/test_rig.h"
#include "ui/main/device_forms.h"
#include "ui/main/device_forms.h"

namespace zento {
namespace {

using End = MacroOutcome::End;
using testing::ElementsAre;
using testing::IsEmpty;

// With the windows of the outlets and of the motor's calibration, which macros open.
struct OutletRig : TestRig {
  OutletRig() { RegisterDeviceForms(machine.desktop, ws, machine.host, instruments); }
};

// A workstation on made-up vendor tables with an interpreter, and what its observer heard.
struct MacroRig : OutletRig, MacroObserver {
  MacroRig() { interpreter.observer = this; }

  // Starts a macro and lets its first turn pass.
  bool Begin(std::string_view text) {
    const bool started = interpreter.Start(text);
    RunFor(0.002);
    return started;
  }
  // Runs a macro to its end, measurements included; false when it does not come to one.
  bool Run(std::string_view text, double limit_seconds = 1e5) {
    if (!interpreter.Start(text)) return false;
    return machine.RunUntil([this] { return !ws.macro_active && ws.running_flag == 0; },
                            static_cast<std::int64_t>(limit_seconds * 1e6));
  }
  const MacroOutcome& outcome() const { return ended.value(); }
  frmMeasureCV* CVWindow() { return machine.desktop.FindAs<frmMeasureCV>("frmMeasureCV"); }

  void LineDone(int line, const MacroLine&, MacroLineResult) override { last_line = line; }
  void WaitTicked(std::int64_t millis) override { remaining.push_back(millis); }
  void RunEnded(const MacroOutcome& outcome) override { ended = outcome; }

  int last_line = 0;
  std::vector<std::int64_t> remaining;
  std::optional<MacroOutcome> ended;
  MacroInterpreter interpreter{ws, machine.host, instruments};
};

TEST(Interpreter, RunsNothingOfAnEmptyText) {
  for (const char* text : {"", "\r\n   \r\n' only a comment\r\n"}) {
    MacroRig rig;
    rig.Run(text);
    EXPECT_TRUE(rig.outcome().Clean()) << text;
    EXPECT_FALSE(rig.ws.macro_active);
    EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
  }
}

TEST(Interpreter, SaysWhatItDoesNotKnowAndGoesOn) {
  MacroRig rig;
  rig.Run("cv.rpm 400\r\n\r\n   CV.RPM 400\r\nWait;\r\n");
  EXPECT_THAT(rig.machine.dialogs.messages,
              ElementsAre(" 1line Syntax Error", " 4line Syntax Error"));
  EXPECT_EQ(rig.CVWindow()->txtRPM.text(), "400");
  EXPECT_EQ(rig.outcome().end, End::kCompleted);
  EXPECT_EQ(rig.outcome().unknown, 2);
}

TEST(Interpreter, EndsAtALineThatItRefuses) {
  MacroRig rig;
  rig.Run("Motor.On 400\nCV.Title first\nCV.Voltage 0.6 1.25\nCV.Title second");
  EXPECT_THAT(rig.machine.dialogs.messages,
              ElementsAre(" 3line Syntax error:CV.Voltage V1st V2nd V3rd"));
  EXPECT_EQ(rig.CVWindow()->txtTitle.text(), "first");
  EXPECT_EQ(rig.outcome().end, End::kRefused);
  EXPECT_EQ(rig.outcome().line, 3);
  EXPECT_FALSE(rig.MotorOn());
  EXPECT_EQ(rig.sent.back(), "A0");
}

TEST(Interpreter, WaitsInTicksOfHalfASecond) {
  MacroRig rig;
  rig.Begin("Wait 1200\nMotor.On 400");
  rig.RunFor(1.45);
  EXPECT_EQ(rig.ws.running_flag, -1);
  EXPECT_FALSE(rig.MotorOn());
  rig.RunFor(0.1);
  EXPECT_TRUE(rig.MotorOn()) << "the motor stays as the macro left it";
  EXPECT_TRUE(rig.outcome().Clean());
  EXPECT_THAT(rig.remaining, ElementsAre(700, 200, -300));
}

TEST(Interpreter, StopEndsAWaitAndTheMotorAtOnce) {
  MacroRig rig;
  rig.Begin("Motor.On 400\nWait 100000\nCV.Title never");
  rig.RunFor(3);
  ASSERT_TRUE(rig.MotorOn());
  rig.interpreter.Stop();
  EXPECT_EQ(rig.outcome().end, End::kStopped);
  EXPECT_EQ(rig.outcome().line, 2);
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_FALSE(rig.MotorOn());
  EXPECT_EQ(rig.CVWindow(), nullptr);
  EXPECT_EQ(rig.sent.back(), "A0");
}

// A measurement of 0.2 s behind no retain time, without its Start.
constexpr char kShortCV[] =
    "CV.Voltage 0 0.1 0\nCV.Scanrate 1000\nCV.Repeat 1\nCV.RetainTime 0\nCV.SamplingRate 50\n"
    "CV.Accumlation 1\n";

TEST(Interpreter, HoldsTheNextLineUntilTheMeasurementHasEnded) {
  MacroRig rig;
  const std::string text = std::string(kShortCV) +
                           "CV.RecordTrack 3\nCV.Title one\nCV.Start\n"
                           "CV.Title two\nCV.Start\nCV.END\n";
  ASSERT_TRUE(rig.Run(text));
  EXPECT_TRUE(rig.outcome().Clean());
  EXPECT_EQ(rig.Record(3).Title, "one");
  EXPECT_EQ(rig.Record(4).Title, "two");
  EXPECT_GT(rig.Record(4).pnum, 5);
  EXPECT_EQ(rig.CVWindow(), nullptr);
  EXPECT_THAT(rig.machine.dialogs.messages, IsEmpty());
}

TEST(Interpreter, AMeasurementBegunByTheLastLineOutlivesTheRun) {
  MacroRig rig;
  rig.Begin(kShortCV + std::string("CV.RPM 400\nCV.Start"));
  EXPECT_TRUE(rig.outcome().Clean());
  EXPECT_EQ(rig.ws.running_flag, -1);
  EXPECT_FALSE(rig.machine.desktop.Shown("frmMeasureCV")) << "only the mode commands show windows";
  EXPECT_TRUE(rig.MotorOn());
  rig.RunUntilIdle();
  EXPECT_FALSE(rig.MotorOn());
  EXPECT_GT(rig.Record(0).pnum, 5);
}

TEST(Interpreter, StopLeavesAMeasurementToItsOwnEnd) {
  MacroRig rig;
  rig.Begin(kShortCV + std::string("CV.RPM 400\nCV.Start\nCV.Title never"));
  rig.RunFor(0.1);
  rig.sent.clear();
  rig.interpreter.Stop();
  EXPECT_EQ(rig.outcome().end, End::kStopped);
  EXPECT_FALSE(rig.MotorOn()) << "the rotation stops at once";
  EXPECT_EQ(rig.ws.running_flag, -1) << "the measurement goes on";
  EXPECT_THAT(rig.sent, IsEmpty());
  rig.RunUntilIdle();
  EXPECT_THAT(rig.sent, ElementsAre("A0"));
  EXPECT_EQ(rig.Record(0).Title, "");
}

TEST(Interpreter, DebugModeLeavesOutWhatActs) {
  MacroRig rig;
  rig.interpreter.SetDebugMode(1);
  rig.Run("CV.Title dry\nCV.Start\nWait 1000\nMotor.On 400\nPower 1 1\nSetPotential 0.5");
  EXPECT_TRUE(rig.outcome().Clean());
  EXPECT_LT(rig.Seconds(), 0.1);
  EXPECT_EQ(rig.outlets, 0U);
  EXPECT_THAT(rig.sent, IsEmpty());
  EXPECT_EQ(rig.Record(0).Mode, kModeNone);
  EXPECT_EQ(rig.CVWindow()->txtTitle.text(), "dry");
  rig.Run("Wait");
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre(" 1line Syntax error:Wait time/ms"));
}

TEST(Interpreter, ActsOnTheHardwareDirectly) {
  MacroRig rig;
  rig.Run(
      "Power 1 1\nPower 3 3\nPower 1 0\nPower 2 2\nPower 7 1\nMotor.On 5000\nSetPotential -0.2");
  EXPECT_EQ(rig.outlets, 0b1001U) << "outlet 3, and the motor's";
  EXPECT_DOUBLE_EQ(rig.motor_volts, 3.0) << "limited to the calibration";
  EXPECT_THAT(rig.sent,
              ElementsAre("SR0", "F1ED1", "VF-0200", "RT10E-3", "STEP", "HT010E0", "YF1", "F101",
                          "VF-0200", "RT10E-3", "HT000E0", "YF0", "F102", "VF-0100", "RT10E-3",
                          "HT000E0", "YF0", "F103", "VF-0300", "RT10E-3", "HT000E0", "YF0", "F104",
                          "VF-0200", "RT10E-3", "HT000E0", "YF0", "ET4", "ED0"))
      << "the output is not switched on";
  rig.Run("Motor.Off\nSound bell.wav");
  EXPECT_FALSE(rig.MotorOn());
  EXPECT_THAT(rig.machine.sound.played, ElementsAre("bell.wav"));
  EXPECT_TRUE(rig.machine.desktop.Shown("frmPower"));
}

TEST(Interpreter, DoesNotStartWhenADeviceDoesNotOpen) {
  MacroRig output;
  output.output_status = -1;
  output.bus_status = 80;
  EXPECT_FALSE(output.Begin("Motor.On 400"));
  EXPECT_THAT(output.machine.dialogs.messages, ElementsAre("DA Board Trouble!"));
  EXPECT_EQ(output.outcome().end, End::kNotStarted);
  MacroRig bus;
  bus.bus_status = 80;
  EXPECT_FALSE(bus.Begin("Motor.On 400"));
  EXPECT_THAT(bus.machine.dialogs.messages, ElementsAre("GPIB Trouble!"));
  EXPECT_FALSE(bus.ws.macro_active);
  bus.ws.settings.GPIBControl = 0;
  EXPECT_TRUE(bus.Run("Motor.On 400")) << "what the settings do not name is not opened";
  EXPECT_TRUE(bus.MotorOn());
}

TEST(Interpreter, AWindowThatDoesNotOpenEndsTheRun) {
  MacroRig rig;
  rig.ws.settings.DABoard = 0;
  rig.ws.settings.PowerControl = 0;
  rig.card_status = -1;
  rig.Run("CV.END\nCVMeasureMode\nCV.Start");
  EXPECT_EQ(rig.outcome().end, End::kRefused);
  EXPECT_EQ(rig.outcome().line, 2) << "closing what is not open needs no board";
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre("AD Board Trouble!"));
}

TEST(Interpreter, CommandsWithoutAWindowEndTheRunSafely) {
  for (const std::int16_t debug : std::initializer_list<std::int16_t>{0, 1}) {
    MacroRig rig;
    rig.interpreter.SetDebugMode(debug);
    rig.Run("Motor.On 400\nCVF.Title x\nMotor.On 900");
    EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre(" 2line Window is missing:CVF.Title"));
    EXPECT_EQ(rig.outcome().end, End::kRefused);
    EXPECT_FALSE(rig.MotorOn());
  }
}

TEST(Interpreter, AfterAMailOnlyWrongLinesEndTheRun) {
  MacroRig rig;
  rig.Run("Mail.Send\nSSVMeasureMode\nCV.Title on\nCV.Title\nCV.Title never");
  EXPECT_THAT(rig.machine.dialogs.messages, ElementsAre(" 4line Syntax error:CV.Title Title"));
  EXPECT_EQ(rig.outcome().ignored, 1);
  EXPECT_EQ(rig.CVWindow()->txtTitle.text(), "on");
  rig.machine.dialogs.messages.clear();
  rig.Run("SSVMeasureMode");
  EXPECT_EQ(rig.machine.dialogs.messages.size(), 1U) << "the next run starts afresh";
}

TEST(Interpreter, MailsGoOutWhileTheRunGoesOn) {
  MacroRig rig;
  rig.ws.run_log.Attach(rig.machine.host, "home");
  rig.machine.mail.SetDuration(5000);
  rig.Run(
      "Mail.DisplayName Lab  Robot\nMail.Address a@example.org\nMail.Subject one\n"
      "Mail.MsgNote note\nMail.Send\nMail.Subject two\nMail.Send");
  EXPECT_TRUE(rig.outcome().Clean());
  EXPECT_EQ(rig.machine.mail.UnderWay(), 2) << "the run's end drops none";
  rig.RunFor(20);
  ASSERT_EQ(rig.machine.mail.sent.size(), 2U);
  EXPECT_EQ(rig.machine.mail.sent[0].display_name, "Lab  Robot");
  EXPECT_EQ(rig.machine.mail.sent[0].subject, "one");
  EXPECT_EQ(rig.machine.mail.sent[1].subject, "two");
  EXPECT_EQ(rig.machine.mail.sent[1].text, "note");

  rig.machine.mail.FailNext("no such server");
  rig.Run("Mail.Send\nMail.Address b@example.org\nWait 10000\nMotor.On 400");
  EXPECT_TRUE(rig.outcome().Clean()) << "what becomes of a mail stops no run";
  EXPECT_TRUE(rig.MotorOn());
  rig.ws.run_log.Flush();
  const auto log = rig.machine.files.Read(RunLogPath("home"));
  EXPECT_THAT(log.value(), testing::HasSubstr("Mail to a@example.org sent"));
  EXPECT_THAT(log.value(), testing::HasSubstr("MAIL TO  NOT SENT: no such server"))
      << "a run begins with an empty mail";
}

TEST(Interpreter, MessagesThatNobodyClosesHoldUpNothing) {
  MacroRig rig;
  rig.machine.dialogs.HoldMessages(true);
  rig.Run("what\nMotor.On 400\nWait 1\nwhat\n" + std::string(kShortCV) + "CV.Start\nCV.Voltage 1");
  EXPECT_EQ(rig.outcome().line, 12);
  EXPECT_GT(rig.Record(0).pnum, 5);
  EXPECT_FALSE(rig.MotorOn());
}

TEST(Interpreter, WaitsForWhatIsRunningAlready) {
  MacroRig rig;
  rig.ws.running_flag = -1;  // a measurement begun by hand
  rig.Begin("CV.Title x");
  rig.RunFor(5);
  EXPECT_EQ(rig.last_line, 0);
  EXPECT_FALSE(rig.interpreter.Start("CV.Title y")) << "one macro at a time";
  rig.ws.running_flag = 0;
  rig.RunFor(0.02);
  EXPECT_TRUE(rig.outcome().Clean());
}

TEST(Interpreter, OthersAreServedWhileALongMacroRuns) {
  MacroRig rig;
  std::string text;
  for (int i = 0; i < 10'000; ++i) text += "CV.RPM 400\r\n";
  rig.interpreter.Start(text);
  rig.RunFor(0.010);
  EXPECT_GT(rig.last_line, 0);
  EXPECT_LT(rig.last_line, 9'000);
  rig.ws.end_active_macro();
  EXPECT_EQ(rig.outcome().end, End::kStopped);
  EXPECT_EQ(rig.outcome().line, rig.last_line);
  EXPECT_FALSE(rig.ws.macro_active);
}

TEST(Interpreter, ARunThatIsDestroyedIsStopped) {
  MacroRig rig;
  {
    MacroInterpreter other(rig.ws, rig.machine.host, rig.instruments);
    other.Start("Motor.On 400\nWait 100000");
    rig.RunFor(1);
    ASSERT_TRUE(rig.MotorOn());
  }
  EXPECT_FALSE(rig.MotorOn());
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_FALSE(rig.ws.macro_active);
  EXPECT_EQ(rig.ws.end_active_macro, nullptr);
}

// What a follower hears, a line each.
struct Listener : MacroFollower {
  void MeasurementBegun(int line, const std::string& what) override { Add(line, what + " begins"); }
  void MeasurementEnded(int line, const RunReport& report) override {
    Add(line, report.what + " ended");
  }
  void MessageShown(int line, const std::string& text) override { Add(line, text); }
  void MailEnded(int line, const Status& how) override {
    Add(line, how.ok() ? "mail sent" : how.why());
  }
  void LineDone(int line, const MacroLine& what, MacroLineResult result) override {
    if (result == MacroLineResult::kCarriedOut) Add(line, std::string(what.name));
  }
  void Add(int line, const std::string& text) {
    lines.push_back(std::to_string(line) + " " + text);
  }
  std::vector<std::string> lines;
};

MacroVerdict Follow(TestRig& rig, const std::string& text, std::int64_t longest_micros,
                    MacroFollower& follower) {
  return FollowMacro({rig.ws, rig.machine.host, rig.instruments, rig.machine.loop,
                      [&] { return rig.machine.dialogs.TakeMessages(); }},
                     text, "night", longest_micros, follower);
}

TEST(FollowMacro, GoesToTheEndOfRunsAndMailsAndTellsOfEach) {
  OutletRig rig;
  rig.machine.mail.SetDuration(60'000);
  rig.machine.mail.FailNext("no such server");
  Listener heard;
  const MacroVerdict verdict =
      Follow(rig, "what\nMail.Send\n" + std::string(kShortCV) + "CV.Start", 1'000'000'000, heard);
  EXPECT_EQ(rig.ws.running_flag, 0);
  EXPECT_GT(rig.Record(0).pnum, 5);
  heard.lines.erase(heard.lines.begin() + 2, heard.lines.begin() + 8);  // the boxes
  EXPECT_THAT(heard.lines,
              ElementsAre("1  1line Syntax Error", "2 Mail.Send", "9 Cyclic voltammetry begins",
                          "9 CV.Start", "9 Cyclic voltammetry ended", "2 no such server"));
  EXPECT_EQ(VerdictText(verdict), "Finished; unknown commands: 1; 1 message; 1 mail not sent");
  EXPECT_FALSE(verdict.Clean());
  EXPECT_FALSE(verdict.endless);
}

TEST(FollowMacro, StopsAtAMeasurementThatDoesNotEnd) {
  OutletRig rig;
  Listener heard;
  rig.RunFor(5);  // what counts is the measurement's own time
  const std::string macro = std::string(kShortCV) + "CV.Start\nCV.Title never";
  EXPECT_FALSE(Follow(rig, macro, 1'000'000, heard).endless);
  const MacroVerdict verdict = Follow(rig, macro, 100'000, heard);
  EXPECT_TRUE(verdict.endless);
  EXPECT_EQ(verdict.outcome.end, End::kStopped);
  EXPECT_EQ(verdict.outcome.line, 7);
  EXPECT_FALSE(verdict.Clean());
  EXPECT_EQ(rig.ws.running_flag, -1) << "it is left to whoever ends the program";
}

}  // namespace
}  // namespace zento
