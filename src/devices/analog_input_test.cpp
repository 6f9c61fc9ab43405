#include "devices/analog_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "support/fake_vendor.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::array<std::uint8_t, 2> kBoth = {0, 1};

class AnalogInputTest : public testing::Test {
 protected:
  void Use(int board) { bench.workstation.settings.ADBoard = board; }
  DeviceBench bench;
  FakeVendor& vendor = bench.vendor;
  AnalogInput& input = bench.instruments.analog_input;
};

TEST_F(AnalogInputTest, PortBoardConverts) {
  Use(0);
  ASSERT_EQ(input.Open(), 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("out 465 1", "in 464"));
  vendor.codes = {0x800};
  EXPECT_EQ(input.Read(5), 0.0);
  // Select and start, look whether it is done, low byte, high nibble.
  EXPECT_THAT(vendor.Take(), ElementsAre("out 464 21", "in 465", "in 464", "in 465"));
  vendor.codes = {0xFFF};
  EXPECT_EQ(input.Read(0), 2.498779296875);
  vendor.codes = {0};
  EXPECT_EQ(input.Read(0), -2.5);
}

TEST_F(AnalogInputTest, ConversionThatNeverEndsIsNoValue) {
  Use(0);
  ASSERT_EQ(input.Open(), 0);
  vendor.done = false;
  EXPECT_EQ(input.Read(0), std::nullopt);
  EXPECT_THAT(input.LastProblem(), HasSubstr("did not end"));
  // A tick of a dead board costs one wait, not one a reading.
  vendor.Take();
  std::array<double, 2> sums{};
  EXPECT_FALSE(input.ReadSum(kBoth, 500, sums));
  EXPECT_LE(vendor.calls.size(), 10'001u);
  vendor.done = true;
  vendor.codes = {0x800};
  EXPECT_EQ(input.Read(0), 0.0);
}

TEST_F(AnalogInputTest, AioBoardReadsThroughItsTransferRecord) {
  Use(1);
  ASSERT_EQ(input.Open(), 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("AioOpenEx AIO00", "AioSetRange 7 0 0 0 2"));
  vendor.aio_words = {{0, 2048}, {4, 3072}};
  EXPECT_EQ(input.Read(4), 1.25);
  EXPECT_EQ(input.Read(0), 0.0);
  EXPECT_THAT(vendor.Take(), ElementsAre("AioInp 7 4 1", "AioInp 7 0 1"));
  // Each loading window opens it again; a failure then leaves the open board as it is.
  vendor.aio_open_result = 21;
  EXPECT_EQ(input.Open(), 21);
  EXPECT_THAT(input.LastProblem(), HasSubstr("AioOpenEx returned 21"));
  EXPECT_EQ(input.Read(4), 1.25);
  input.Close();
  EXPECT_THAT(vendor.Take(), ElementsAre("AioOpenEx AIO00", "AioInp 7 4 1", "AioClose 7"));
}

TEST_F(AnalogInputTest, AioStatusesComeBackUnchanged) {
  Use(1);
  vendor.aio_open_result = -1;
  EXPECT_EQ(input.Open(), -1);
  EXPECT_EQ(vendor.Count("AioSetRange"), 0);
  vendor.aio_open_result = 0;
  vendor.aio_range_result = 33;
  EXPECT_EQ(input.Open(), 33);
  EXPECT_EQ(input.Read(0), std::nullopt);
  vendor.aio_range_result = 0;
  EXPECT_EQ(input.Open(), 0);
  EXPECT_EQ(input.LastProblem(), "");
}

TEST_F(AnalogInputTest, CardIsRegisteredOnceUntilItIsClosed) {
  ASSERT_EQ(input.Open(), 0);
  ASSERT_EQ(input.Open(), 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("Register_Card 22 1"));
  EXPECT_EQ(bench.instruments.card.Handle(), 3);
  vendor.volts[2] = 1.5;
  EXPECT_EQ(input.Read(2), 1.5);
  EXPECT_EQ(input.LastProblem(), "");
  vendor.read_result = -4;  // is told and changes no value
  EXPECT_EQ(input.Read(2), 1.5);
  EXPECT_THAT(input.LastProblem(), HasSubstr("status -4"));
  // Read by the card's number, released by its handle.
  input.Close();
  EXPECT_FALSE(bench.instruments.card.Registered());
  EXPECT_EQ(input.Read(2), std::nullopt);
  ASSERT_EQ(input.Open(), 0);
  EXPECT_THAT(vendor.Take(),
              ElementsAre("AI 1 2 3", "AI 1 2 3", "Release_Card 3", "Register_Card 22 1"));
}

TEST_F(AnalogInputTest, CardThatIsNotThereFailsToOpenAndMayComeLater) {
  vendor.register_result = -5;
  EXPECT_EQ(input.Open(), -5);
  EXPECT_THAT(input.LastProblem(), HasSubstr("card 1 could not be registered: status -5"));
  EXPECT_FALSE(bench.instruments.card.Registered());
  EXPECT_EQ(input.Read(0), std::nullopt);
  vendor.register_result = 0;
  EXPECT_EQ(input.Open(), 0);
  EXPECT_TRUE(bench.instruments.card.Registered());
}

TEST_F(AnalogInputTest, RangesFollowEachChannelOnItsOwn) {
  bench.workstation.settings.DynamicRange = 1;
  ASSERT_EQ(input.Open(), 0);
  const auto range_of = [&](int channel, double volts) {
    vendor.Take();
    vendor.volts[channel] = volts;
    EXPECT_EQ(input.Read(static_cast<std::uint8_t>(channel)), volts);
    return vendor.calls.back().back() - '0';
  };
  // A channel's readings one after the other, and the range code of each.
  const std::tuple<int, std::vector<double>, std::vector<int>> courses[] = {
      {0, {0, 0, 0, 0}, {3, 4, 5, 5}},            // climbs to the finest range and stays there
      {1, {0.4, 0.4, -1.1, -1.1}, {3, 4, 4, 3}},  // 16 %: finer; 32 % there: stays; 88 %: coarser
      {0, {0.625, 1.25, 2.5, 2.5}, {5, 4, 3, 3}},
      // Finer below 20 % of full scale, coarser above 80 %, and neither at the very limit.
      {2, {0.5, 0.4999, 1.0, 1.0001, 2.5}, {3, 3, 4, 4, 3}},
  };
  for (const auto& [channel, volts, ranges] : courses) {
    for (std::size_t i = 0; i < volts.size(); ++i) {
      EXPECT_EQ(range_of(channel, volts[i]), ranges[i]) << channel << ", reading " << i;
    }
  }
  EXPECT_EQ(range_of(63, 0), 3);
  ASSERT_EQ(input.Open(), 0);  // begins anew
  EXPECT_EQ(range_of(63, 0), 3);
}

// One and a half of the widest range's 4096 steps below its end.
TEST_F(AnalogInputTest, ReadingsAtTheEndOfTheRangeAreToldFromThoseInIt) {
  const double end = 2.5 - 1.5 * 5.0 / 4096;
  EXPECT_TRUE(AnalogInput::AtUpperLimit(end));
  EXPECT_FALSE(AnalogInput::AtUpperLimit(end - 1e-9));
  EXPECT_FALSE(AnalogInput::AtUpperLimit(-2.5));
}

TEST_F(AnalogInputTest, SumsGoRoundByRound) {
  ASSERT_EQ(input.Open(), 0);
  vendor.Take();
  vendor.volts = {{0, 0.5}, {1, -1.25}};
  std::array<double, 3> sums = {9, 9, 9};
  ASSERT_TRUE(input.ReadSum(kBoth, 2, sums));
  EXPECT_THAT(sums, ElementsAre(1.0, -2.5, 9.0));
  EXPECT_THAT(vendor.Take(), ElementsAre("AI 1 0 3", "AI 1 1 3", "AI 1 0 3", "AI 1 1 3"));
  std::array<double, 1> too_few{};
  EXPECT_FALSE(input.ReadSum(kBoth, 2, too_few));
  EXPECT_EQ(input.Read(64), std::nullopt);
  EXPECT_EQ(vendor.calls.size(), 0u);
}

TEST_F(AnalogInputTest, EditedSettingsDoNotMoveAnOpenBoard) {
  ASSERT_EQ(input.Open(), 0);
  bench.workstation.settings.ADBoard = 0;
  bench.workstation.settings.CardNumber = 2;
  vendor.Take();
  ASSERT_EQ(input.Open(), 0);
  EXPECT_TRUE(input.Read(0));
  EXPECT_THAT(vendor.Take(), ElementsAre("AI 1 0 3"));
  input.Close();
  EXPECT_EQ(bench.instruments.card.Number(), 2);
  ASSERT_EQ(input.Open(), 0);
  EXPECT_THAT(vendor.Take(), ElementsAre("Release_Card 3", "out 465 1", "in 464"));
}

TEST_F(AnalogInputTest, UnknownBoardReadsZero) {
  Use(9);
  EXPECT_EQ(input.Open(), 0);
  EXPECT_EQ(input.Read(0), 0.0);
  Use(0);  // and is none that could be kept
  EXPECT_EQ(input.Open(), 0);
  input.Close();
  EXPECT_THAT(vendor.Take(), ElementsAre("out 465 1", "in 464"));
}

}  // namespace
}  // namespace zento
