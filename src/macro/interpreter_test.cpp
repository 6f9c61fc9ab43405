#include "macro/interpreter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "macro/macro_test_rig.h"

namespace zento {
namespace {

using End = MacroOutcome::End;
using testing::ElementsAre;
using testing::IsEmpty;

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

}  // namespace
}  // namespace zento
