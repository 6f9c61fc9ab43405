#include "sim/command_generator.h"

#include <gtest/gtest.h>

#include <cmath>

#include "sim/test_support.h"

namespace zento::sim {
namespace {

void SendAll(CommandGenerator& generator, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    const Status status = generator.Send(line);
    ASSERT_TRUE(status.ok()) << status.why();
  }
}

TEST(CommandGenerator, HoldsThenLoopsOverItsSegments) {
  CommandGenerator generator;
  SendAll(generator, CyclicSweep("-0200", "+1200", "+0600", "50E-3", "005"));
  EXPECT_FALSE(generator.output_on());
  EXPECT_EQ(generator.VoltsAfter(1), 0.0);
  SendAll(generator, {"A1"});
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(0), -0.2);
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(5), -0.2);
  EXPECT_NEAR(generator.VoltsAfter(5 + 1), -0.15, 1e-12);
  constexpr double kLoop = 28 + 12 + 16;  // s: up, to the third potential, back
  for (const int turn : {0, 1, 2, 1000}) {
    const double start = 5 + turn * kLoop;
    EXPECT_NEAR(generator.VoltsAfter(start + 28), 1.2, 1e-9) << turn;
    EXPECT_NEAR(generator.VoltsAfter(start + 28 + 6), 0.9, 1e-9) << turn;
    EXPECT_NEAR(generator.VoltsAfter(start + 28 + 12), 0.6, 1e-9) << turn;
    EXPECT_NEAR(generator.VoltsAfter(start + kLoop), -0.2, 1e-9) << turn;
  }
  SendAll(generator, {"A0"});
  EXPECT_EQ(generator.VoltsAfter(10), 0.0);
  SendAll(generator, {"A1"});
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(1), -0.2) << "A1 starts from the beginning";
}

TEST(CommandGenerator, KnowsEveryCornerExactly) {
  CommandGenerator generator;
  SendAll(generator, CyclicSweep("+0000", "+1000", "+0000", "10E-2", "002"));
  EXPECT_TRUE(std::isinf(generator.UntilCorner()));
  SendAll(generator, {"A1"});
  double elapsed = 0;
  for (const double corner : {2.0, 12.0, 22.0, 32.0, 42.0, 52.0}) {
    EXPECT_NEAR(elapsed + generator.UntilCorner(), corner, 1e-9);
    const double dt = generator.UntilCorner();
    generator.Advance(dt);
    elapsed += dt;
  }
}

TEST(CommandGenerator, StepsAndStays) {
  CommandGenerator generator;
  SendAll(generator, PotentialStep("+0100", "+0800", "010"));
  SendAll(generator, {"A1"});
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(9.999999), 0.1);
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(10.000001), 0.8);
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(1000), 0.8);
  // A sweep programmed afterwards is a sweep again.
  SendAll(generator, CyclicSweep("+0100", "+0800", "+0100", "10E-2", "000"));
  SendAll(generator, {"A1"});
  EXPECT_NEAR(generator.VoltsAfter(3.5), 0.45, 1e-12);
}

TEST(CommandGenerator, LaterPassesBeginWhereTheLastSegmentEnded) {
  CommandGenerator generator;
  SendAll(generator, {"SR0", "F1ED1", "VF+0000", "F101", "VF+0500", "RT1E+0", "ET1", "ED0", "A1"});
  EXPECT_NEAR(generator.VoltsAfter(0.25), 0.25, 1e-12);
  for (const double t : {0.5, 0.75, 1.25}) EXPECT_NEAR(generator.VoltsAfter(t), 0.5, 1e-12) << t;
}

TEST(CommandGenerator, SurvivesProgrammesThatGoNowhere) {
  CommandGenerator generator;
  SendAll(generator, {"A1"});
  EXPECT_EQ(generator.VoltsAfter(5), 0.0) << "nothing programmed";
  SendAll(generator, CyclicSweep("+0300", "+0300", "+0300", "50E-3", "001"));
  SendAll(generator, {"A1"});
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(5), 0.3);
  generator.Advance(2);
  EXPECT_TRUE(std::isinf(generator.UntilCorner()));
  SendAll(generator, CyclicSweep("+0000", "+0300", "+0000", "00E+0", "001"));
  SendAll(generator, {"A1"});
  EXPECT_DOUBLE_EQ(generator.VoltsAfter(1e6), 0.0) << "a ramp at no rate";
}

TEST(CommandGenerator, RefusesWhatItDoesNotUnderstand) {
  CommandGenerator generator;
  for (const char* line : {"VF+0100", "F101", "ET4"}) {
    EXPECT_FALSE(generator.Send(line).ok()) << line << " outside editing";
  }
  ASSERT_TRUE(generator.Send("F1ED1").ok());
  for (const char* line : {"HELLO", "VF", "VFabc", "VF+99999", "RT-1", "F201", "F100", "F10",
                           "F1234", "A2", "A", "ET0", "ET100", "ED7", "VF+0100,", "SR1"}) {
    EXPECT_FALSE(generator.Send(line).ok()) << line;
  }
  EXPECT_TRUE(generator.Send("").ok());
}

TEST(SerialConverter, UnpacksTextsHoweverTheBytesArrive) {
  std::vector<std::pair<int, std::string>> heard;
  SerialConverter converter(
      [&](int address, std::string_view text) { heard.emplace_back(address, text); });
  const std::string bytes =
      "SIC .01\rsre 1\rtmo 0\rWRT #6,7\nF101\r\nWRT #2,7\n\r\nWRT #9,12\nVF+0600\r\n";
  converter.Receive(bytes);
  for (const char byte : bytes) converter.Receive({&byte, 1});
  const std::vector<std::pair<int, std::string>> once = {{7, "F101"}, {12, "VF+0600"}};
  std::vector<std::pair<int, std::string>> twice = once;
  twice.insert(twice.end(), once.begin(), once.end());
  EXPECT_EQ(heard, twice);
}

TEST(SerialConverter, IgnoresBrokenFramesAndGoesOn) {
  std::vector<std::string> heard;
  SerialConverter converter([&](int, std::string_view text) { heard.emplace_back(text); });
  for (const char* bytes : {"WRT #,7\n", "WRT #6\n", "WRT #-6,7\n", "WRT #99999999999,7\n",
                            "WRT #6,x\n", ",WRT #6,7\n", "\r\n\n"}) {
    converter.Receive(bytes);
  }
  converter.Receive(std::string(100'000, 'x') + "\n");
  converter.Receive("WRT #4,7\nA0\r\n");
  EXPECT_EQ(heard, std::vector<std::string>{"A0"});
}

}  // namespace
}  // namespace zento::sim
