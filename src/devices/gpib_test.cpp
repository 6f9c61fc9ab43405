#include "devices/gpib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class GpibTest : public testing::Test {
 protected:
  GpibTest() {
    link.on_command = [this](std::string_view command) { commands.emplace_back(command); };
  }
  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  Settings& settings = bench.workstation.settings;
  GpibLink& link = bench.instruments.gpib;
  FunctionGenerator& generator = bench.instruments.generator;
  std::vector<std::string> commands;
};

TEST(GpibStatus, TellsOutcomeAndWhatArrived) {
  std::string text;
  const std::tuple<int, int, std::string> outcomes[] = {
      {0, 0, "正常に終了しました｡"},
      {2, 0, "正常に終了しました｡"},
      {3, 1, "正常に終了しました｡"},  // an error without a text of its own
      {254, 1, "タイムアウトしました。"},
      {-1, 1, "パラメータエラーです。"},
      {0x100 + 80, 1, "I/Oアドレスエラーです。確認してください。 -SRQを受信[ステータス]"},
      {0x200, 0, "正常に終了しました｡ -IFCを受信[ステータス]"},
      {0x301, 0, "正常に終了しました｡ -SRQとIFCを受信[ステータス]"},
      {0x500, 0, "正常に終了しました｡"},
  };
  for (const auto& [code, failed, expected] : outcomes) {
    EXPECT_EQ(CheckGpibStatus("GpTalk", code, text), failed) << code;
    EXPECT_EQ(text, "GpTalk : " + expected) << code;
  }
}

TEST_F(GpibTest, BoardIsInitialisedStepByStep) {
  EXPECT_EQ(link.InitialiseLink(), 0);
  EXPECT_EQ(link.status_text(), "初期化を終了しました。");
  EXPECT_THAT(vendor.Take(),
              ElementsAre("GpExit", "GpIni", "GpBoardsts 10", "GpBoardsts 8", "GpBoardsts 12",
                          "GpBoardsts 13", "GpIfc 1", "GpRen", "GpTimeout 10000"));
  vendor.gp_status[10] = 1;  // another is the system's controller
  EXPECT_EQ(link.InitialiseLink(), 0);
  EXPECT_EQ(vendor.Count("GpIfc") + vendor.Count("GpRen"), 0);
}

TEST_F(GpibTest, InitialisingStopsAtTheFirstFailure) {
  const std::vector<std::string> steps = {"GpIni", "GpIfc", "GpRen", "GpTimeout"};
  vendor.gp_result["GpExit"] = 255;
  for (const std::string& step : steps) {
    vendor.gp_result[step] = 252;
    vendor.Take();
    EXPECT_EQ(link.InitialiseLink(), 1);
    EXPECT_THAT(vendor.calls.back(), HasSubstr(step));
    EXPECT_EQ(link.status_text(), step + " : GP-IBエラーです。確認してください。");
    vendor.gp_result[step] = 1;
  }
  EXPECT_EQ(link.InitialiseLink(), 0);
}

TEST_F(GpibTest, BoardTalksToTheInstrument) {
  EXPECT_TRUE(link.Send(7, "F101"));
  EXPECT_TRUE(link.Send(7, ""));
  EXPECT_THAT(vendor.Take(), ElementsAre("GpTalk 2 0 7 F101"));
  vendor.gp_result["GpTalk"] = 254;
  EXPECT_FALSE(link.Send(7, "A1"));
  EXPECT_EQ(link.status_text(), "GpTalk : タイムアウトしました。");
}

TEST_F(GpibTest, SerialConverterFramesEachCommand) {
  settings.GPIBControl = 1;
  EXPECT_EQ(link.InitialiseLink(), 0);
  EXPECT_EQ(link.InitialiseLink(), 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("open 1 9600,N,8,1"));
  EXPECT_EQ(vendor.serial_bytes, "SIC .01\rsre 1\rtmo 0\r");
  vendor.serial_bytes.clear();
  EXPECT_TRUE(link.Send(7, "F101"));
  EXPECT_TRUE(link.Send(7, ""));
  EXPECT_TRUE(link.Send(12, "HT000E0"));
  EXPECT_EQ(vendor.serial_bytes,
            "WRT #6,7\nF101\r\n"
            "WRT #2,7\n\r\n"
            "WRT #9,12\nHT000E0\r\n");
}

TEST_F(GpibTest, SerialFailureToInitialiseIsReported) {
  settings.GPIBControl = 1;
  vendor.serial_open_result = Status::Failure("no such device");
  EXPECT_EQ(link.InitialiseLink(), 1);
  EXPECT_EQ(link.status_text(), "no such device");
  // A line whose set-up did not go out does not pass for open the next time.
  vendor.serial_open_result = Status::Ok();
  vendor.serial_write_result = Status::Failure("late");
  EXPECT_EQ(link.InitialiseLink(), 1);
  EXPECT_FALSE(vendor.serial_open);
  vendor.serial_write_result = Status::Ok();
  EXPECT_EQ(link.InitialiseLink(), 0);
  EXPECT_EQ(vendor.serial_bytes, "SIC .01\rsre 1\rtmo 0\r");
}

TEST_F(GpibTest, NoLinkSendsNothing) {
  settings.GPIBControl = 0;
  EXPECT_EQ(link.InitialiseLink(), 0);
  generator.OutputOn();
  generator.OutputOff();
  EXPECT_THAT(vendor.calls, IsEmpty());
  EXPECT_THAT(commands, IsEmpty());
}

TEST_F(GpibTest, CyclicSweepWithThreeSegments) {
  ASSERT_EQ(link.InitialiseLink(), 0);
  generator.ProgrammeCyclicSweep(1, std::array{-0.2, 1.2, -0.2}, 50, 5);
  EXPECT_THAT(commands,
              ElementsAre("SR0", "F1ED1", "VF-0200", "RT50E-3", "STEP", "HT005E0", "YF1",  //
                          "F101", "VF-0200", "RT50E-3", "HT000E0", "YF0",                  //
                          "F102", "VF+1200", "RT50E-3", "HT000E0", "YF0",                  //
                          "F103", "VF-0200", "RT50E-3", "HT000E0", "YF0", "ET3", "ED0"));
}

TEST_F(GpibTest, CyclicSweepThatEndsElsewhereReturnsToItsBeginning) {
  ASSERT_EQ(link.InitialiseLink(), 0);
  generator.ProgrammeCyclicSweep(12, std::array{0.0, -0.5, 0.35}, 100, 120);
  EXPECT_THAT(commands,
              ElementsAre("SR0", "F2ED1", "VF+0000", "RT10E-2", "STEP", "HT120E0", "YF1",  //
                          "F101", "VF+0000", "RT10E-2", "HT000E0", "YF0",                  //
                          "F102", "VF-0500", "RT10E-2", "HT000E0", "YF0",                  //
                          "F103", "VF+0350", "RT10E-2", "HT000E0", "YF0",                  //
                          "F104", "VF+0000", "RT10E-2", "HT000E0", "YF0", "ET4", "ED0"));
  generator.OutputOn();
  generator.OutputOff();
  EXPECT_EQ(commands[commands.size() - 2], "A1");
  EXPECT_EQ(commands.back(), "A0");
}

TEST_F(GpibTest, PotentialStep) {
  ASSERT_EQ(link.InitialiseLink(), 0);
  generator.ProgrammePotentialStep(1, std::array{0.1, 0.6}, 10, 30000);
  EXPECT_THAT(commands,
              ElementsAre("SR0", "F1ED1", "VF+0100", "RT10E9", "STEP", "HT010E0", "YF1", "F101",
                          "VF+0600", "RT10E9", "STEP", "HT300E+2", "YF1", "ET1", "ED0"));
}

TEST(GeneratorCodes, KeepTheirWidth) {
  EXPECT_EQ(PotentialCode(1.2), "+1200");
  EXPECT_EQ(PotentialCode(-0.0004), "-0000");
  EXPECT_EQ(PotentialCode(12.3456), "+2346");  // 10 V and more lose their leading digit
  EXPECT_EQ(RateCode(5), "50E-4");
  EXPECT_EQ(RateCode(20000), "20E+0");
  EXPECT_EQ(HoldCode(0), "000");
  EXPECT_EQ(HoldCode(1005), "005");
}

TEST(GeneratorCodes, SayWhatTheirDigitsLose) {
  EXPECT_DOUBLE_EQ(PotentialAsSent(12).value, 2);
  EXPECT_EQ(PotentialAsSent(-0.25).remark, "");
  EXPECT_EQ(PotentialAsSent(0.1 + 0.2).remark, "");
  EXPECT_EQ(PotentialAsSent(0.0004).remark, "0.0004 V is sent as 0 V");
  EXPECT_FALSE(PotentialAsSent(0.0004).lost);
  EXPECT_TRUE(PotentialAsSent(-10).lost);
  EXPECT_EQ(RateAsSent(50).remark, "");
  EXPECT_EQ(RateAsSent(0.1).remark, "");
  EXPECT_DOUBLE_EQ(RateAsSent(1250).value, 1300);
  EXPECT_THAT(RateAsSent(0.125).remark, testing::HasSubstr("sent as 0.13 mV/s"));
}

TEST_F(GpibTest, OutputOffGoesToTheInstrumentThatWasSwitchedOn) {
  generator.OutputOn();
  settings.GPIBAddress = 9;
  generator.OutputOff();
  generator.OutputOn();
  EXPECT_THAT(vendor.Take(), ElementsAre("GpTalk 2 0 7 A1", "GpTalk 2 0 7 A0", "GpTalk 2 0 9 A1"));
}

TEST_F(GpibTest, OutputOffIsTriedAgainOnALinkInitialisedAnew) {
  settings.GPIBControl = 1;
  ASSERT_EQ(link.InitialiseLink(), 0);
  // The settings were edited during the run: the link in use is still the one to speak to.
  settings.GPIBControl = 2;
  vendor.serial_open = false;
  vendor.serial_bytes.clear();
  vendor.Take();
  generator.OutputOff();
  EXPECT_THAT(vendor.Take(), ElementsAre("close", "open 1 9600,N,8,1"));
  EXPECT_EQ(vendor.serial_bytes, "SIC .01\rsre 1\rtmo 0\rWRT #4,7\nA0\r\n");
  // Other commands are not worth a wait each.
  vendor.serial_open = false;
  generator.OutputOn();
  EXPECT_THAT(vendor.calls, IsEmpty());
}

}  // namespace
}  // namespace zento
