#include "analysis/smoothing.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "analysis/test_definitions.h"
#include "analysis/vector_passes.h"
#include "core/tables.h"
#include "host/virtual/memory_services.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<double> Random(std::size_t count, std::mt19937& random) {
  std::normal_distribution<double> value;
  std::uniform_int_distribution<int> power(-12, 3);
  std::vector<double> values;
  for (std::size_t i = 0; i < count; ++i) {
    const int p = power(random);
    values.push_back(p == 3 ? -0.0 : std::ldexp(value(random), p));
  }
  return values;
}

// Coefficients of no meaning, so that a mistaken order of the sums shows in the bits.
SavitzkyGolayRow AnyRow(std::int32_t points, std::mt19937& random) {
  SavitzkyGolayRow row{35.7, Random(static_cast<std::size_t>(points / 2) + 1, random)};
  return row;
}

std::size_t DifferentBits(const std::vector<double>& a, const std::vector<double>& b) {
  std::size_t different = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    different += std::bit_cast<std::uint64_t>(a[i]) != std::bit_cast<std::uint64_t>(b[i]);
  }
  return different;
}

TEST(Smooth, GivesTheBitsOfThePlainSums) {
  std::mt19937 random(5);
  for (const auto method : {SmoothingMethod::kMovingAverage, SmoothingMethod::kSavitzkyGolay,
                            SmoothingMethod::kSpikes}) {
    for (std::int32_t points = 3; points <= 25; points += 2) {
      for (const std::size_t count : {1, 2, 5, 15, 16, 17, 31, 40, 64, 100, 333}) {
        Smoothing smoothing{method, points, AnyRow(points, random), 0.01, 0};
        const std::vector<double> y = Random(count, random);
        for (smoothing.skip = 0; smoothing.skip < 4; smoothing.skip += 3) {
          std::vector<double> out(count);
          Smooth(y, smoothing, out);
          ASSERT_EQ(DifferentBits(out, LiteralSmooth(y, smoothing)), 0u)
              << "method " << static_cast<int>(method) << ", window " << points << ", " << count
              << " values, skip " << smoothing.skip;
        }
      }
    }
  }
}

// What a processor without the wide registers computes.
TEST(Smooth, TheBaselineComputesTheSame) {
  std::mt19937 random(7);
  constexpr std::size_t kBlocks = 3;
  constexpr std::size_t kHalf = 4;
  const std::vector<double> y = Random(kBlocks * kSmoothedAtOnce + 2 * kHalf, random);
  const SavitzkyGolayRow row = AnyRow(2 * kHalf + 1, random);
  Smoothing smoothing{SmoothingMethod::kMovingAverage, 2 * kHalf + 1, row, 0.02, 0};
  std::vector<double> out(y.size());
  const auto expect_inner = [&](SmoothingMethod method) {
    smoothing.method = method;
    std::vector<double> whole = LiteralSmooth(y, smoothing);
    whole = {whole.begin() + kHalf, whole.end() - kHalf};
    out.resize(whole.size());
    EXPECT_EQ(DifferentBits(out, whole), 0u) << static_cast<int>(method);
  };
  const SmoothingPasses& passes = BaselineSmoothing();
  passes.average(y.data(), out.data(), kBlocks, kHalf);
  expect_inner(SmoothingMethod::kMovingAverage);
  passes.weigh(y.data(), out.data(), kBlocks, kHalf, row.a.data(), row.divisor);
  expect_inner(SmoothingMethod::kSavitzkyGolay);
  passes.suppress(y.data(), out.data(), kBlocks, kHalf, smoothing.w);
  expect_inner(SmoothingMethod::kSpikes);
}

TEST(Smooth, DoesWhatTheMethodIsFor) {
  std::vector<double> y(50);
  for (int i = 0; i < 50; ++i) y[static_cast<std::size_t>(i)] = 0.1 * i * i * i - 3 * i * i + i;
  std::vector<double> out(50);
  // Of degree 3: Savitzky-Golay leaves it as it is.
  Smooth(y, {SmoothingMethod::kSavitzkyGolay, 7, {21, {7, 6, 3, -2}}, 0, 0}, out);
  for (std::size_t i = 3; i < 47; ++i) EXPECT_NEAR(out[i], y[i], 1e-9);
  // Where the window reaches beyond the end, the end's value is repeated.
  Smooth(y, {SmoothingMethod::kMovingAverage, 5, {}, 0, 0}, out);
  EXPECT_NEAR(out[0], (3 * y[0] + y[1] + y[2]) / 5, 1e-12);
  EXPECT_NEAR(out[49], (y[47] + y[48] + 3 * y[49]) / 5, 1e-12);
  // A spike of 1 among zeros becomes w/(w + 1).
  std::vector<double> spike(20);
  spike[9] = 1;
  out.resize(20);
  Smooth(spike, {SmoothingMethod::kSpikes, 3, {}, 0.001, 0}, out);
  EXPECT_NEAR(out[9], 0.001 / 1.001, 1e-15);
  // Without any scale, and nothing to be divided: no NaN.
  Smooth(spike, {SmoothingMethod::kSpikes, 3, {}, 0, 0}, out);
  EXPECT_EQ(out[9], 0);
  EXPECT_EQ(out[3], 0);
}

// 0 to 0.8 V, down to -0.4 V, up again to 0, twice.
struct SmoothedTrack : ::testing::Test {
  SmoothedTrack() {
    TrackRecord& record = tracks.Record(4);
    record.Mode = kModeCV;
    record.V = {0, 0.8, -0.4};
    record.DiskYscale = 0.001;
    std::int32_t point = 0;
    const auto sweep = [&](int from, int to) {
      for (int e = from; e != to; e += from < to ? 1 : -1) {
        tracks.SetValue(0, 4, point, 0.01 * e);
        // Growing towards the vertex, as the charging of the double layer does not.
        tracks.SetValue(1, 4, point, (from < to ? 1e-5 : -1e-5) * (1 + 0.01 * point));
        ++point;
      }
    };
    for (int cycle = 0; cycle < 2; ++cycle) {
      sweep(0, 80);
      sweep(80, -40);
      sweep(-40, 0);
    }
    record.pnum = point;
  }
  std::vector<std::int32_t> Ends() const {
    std::vector<std::int32_t> ends;
    std::int32_t next = 0;
    for (const auto& [first, last] : SmoothedStretches(tracks, 4)) {
      EXPECT_EQ(first, next);
      next = last + 1;
      ends.push_back(last);
    }
    return ends;
  }
  TrackStore tracks;
};

TEST_F(SmoothedTrack, IsCutAtItsTurningPoints) {
  // Vertices at 80, 200, 240, 320, 440; the end at 479 belongs to the last sweep.
  EXPECT_THAT(Ends(), ElementsAre(80, 200, 240, 320, 440, 479));
  // A current that falls at the vertex ends its sweep one point earlier.
  tracks.SetValue(1, 4, 200, 0);
  EXPECT_THAT(Ends(), ElementsAre(80, 199, 240, 320, 440, 479));
  EXPECT_EQ(StretchesThatTurn(tracks, 4), 0u);
  // Every mode's stretches; a potential that never comes near its vertices is one sweep.
  tracks.Record(4).V = {5, 5, 5};
  EXPECT_THAT(Ends(), ElementsAre(479));
  EXPECT_EQ(StretchesThatTurn(tracks, 4), 1u);
  tracks.Record(4).Mode = kModePS;
  EXPECT_EQ(StretchesThatTurn(tracks, 4), 0u);
  EXPECT_THAT(Ends(), ElementsAre(479));
  tracks.Record(4).Mode = kModeSSVAll;
  EXPECT_TRUE(Ends().empty());
}

TEST_F(SmoothedTrack, NoWindowReachesAcrossAVertex) {
  const auto smooth_to = [&](int slot) {
    EXPECT_TRUE(
        SmoothTrack(tracks, 4, {SmoothingMethod::kMovingAverage, 15, {}, 0, 0}, false, slot));
  };
  smooth_to(21);
  // Another second sweep changes nothing but itself.
  for (int p = 81; p <= 200; ++p) tracks.SetValue(1, 4, p, 3 * tracks.Value(1, 4, p));
  smooth_to(22);
  for (int p = 0; p < 480; ++p) {
    const bool second = p > 80 && p <= 200;
    EXPECT_EQ(tracks.Value(1, 21, p) == tracks.Value(1, 22, p), !second) << p;
    EXPECT_EQ(tracks.Value(0, 21, p), tracks.Value(0, 4, p));
  }
}

TEST(SavitzkyGolayFile, ReadsRowsThatAnotherLineFollows) {
  const auto rows = [](std::string_view text) {
    const auto table = ParseSavitzkyGolay(text);
    return table.ok() ? static_cast<int>(table->size()) : -1;
  };
  EXPECT_EQ(rows("35,17,12,-3\r\n21,7,6,3,-2\r\n\r\n"), 2);
  EXPECT_EQ(rows("35,17,12,-3\n21,7,6,3,-2\n"), 1);
  EXPECT_EQ(rows("35,17,12,-3\n21,7,6,3,-2"), 1);
  // As spreadsheets write it: a mark at the beginning, rows of equal length.
  EXPECT_EQ(rows("\xEF\xBB\xBF"
                 "35,17,12,-3,\r\n21,7,6,3,-2\r\n,,,,\r\n"),
            2);
  EXPECT_EQ(rows("35,17,12,-3\r21,7,6,3,-2\r\r"), 2);
  const auto table = ParseSavitzkyGolay("1,.485714, .342857 ,-0.0857143\nend");
  ASSERT_TRUE(table.ok()) << table.why();
  EXPECT_THAT(table.value()[0].a, ElementsAre(0.485714, 0.342857, -0.0857143));
}

TEST(SavitzkyGolayFile, SaysWhatIsWrongWithIt) {
  const auto why = [](std::string_view text) { return ParseSavitzkyGolay(text).why(); };
  EXPECT_THAT(why(""), HasSubstr("no row"));
  EXPECT_THAT(why("35,17,12,-3"), HasSubstr("no row"));
  EXPECT_EQ(why("35,17,12\n\n"), "line 1: a window of 5 points needs 4 fields, there are 3");
  EXPECT_EQ(why("35,17,12,-3\n\n21,7,6,3,-2\n\n"),
            "line 2: a window of 7 points needs 5 fields, there are 0");
  EXPECT_EQ(why("35,17,x,-3\n\n"), "line 1: field 3 is not a number");
  EXPECT_EQ(why("35,17,12,3\n\n"), "line 1: the coefficients add up to 47, not to the divisor 35");
  EXPECT_EQ(why("35,,17,12\n\n"), "line 1: field 2 is not a number");
  EXPECT_THAT(why("0,0,0,0\n\n"), HasSubstr("divisor"));
  std::string many;
  for (int row = 0; row < 12; ++row) {
    many += "1,1";
    for (int k = 0; k < row + 2; ++k) many += ",0";
    many += "\n";
  }
  EXPECT_EQ(why(many + "\n"), "there are more than 11 rows");
}

TEST(SavitzkyGolayFile, TheHomesGoesBeforeTheInstalledOne) {
  MemoryFiles files;
  const auto center = [&] {
    const auto table = ReadSavitzkyGolay(files, {"/home", "/program"});
    return table.ok() ? table.value()[0].a[0] : std::nan("");
  };
  EXPECT_THAT(ReadSavitzkyGolay(files, {"/home", "/program"}).why(),
              HasSubstr("Savitzky-Golay.dat is in none of these folders: /home, /program"));
  ASSERT_TRUE(files.Replace("/program/Savitzky-Golay.dat", "35,17,12,-3\n\n").ok());
  EXPECT_EQ(center(), 17);
  ASSERT_TRUE(files.Replace("/home/Savitzky-Golay.dat", "1,1,0,0\n\n").ok());
  EXPECT_EQ(center(), 1);
  ASSERT_TRUE(files.Replace("/home/Savitzky-Golay.dat", "broken").ok());
  EXPECT_THAT(ReadSavitzkyGolay(files, {"/home", "/program"}).why(), HasSubstr("/home"));
}

}  // namespace
}  // namespace zento
