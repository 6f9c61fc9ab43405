#include <cmath>
#include <random>

#include "analysis/analysis_test_rig.h"
#include "analysis/oxygen_form.h"
#include "analysis/test_definitions.h"
#include "core/settings.h"
#include "core/track_store.h"
#include "text/status.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A sweep along `vertices` in steps of `spacing`, with disk current -1 and ring current `ring`.
struct Sweep {
  std::array<double, 3> vertices;
  Values x, disk, ring;

  Sweep(const std::array<double, 3>& along, int points_a_segment, double ring_current)
      : vertices(along) {
    for (std::size_t s = 0; s < 2; ++s) {
      for (int i = 0; i < points_a_segment; ++i) {
        x.push_back(along[s] + (along[s + 1] - along[s]) * i / points_a_segment);
      }
    }
    x.push_back(along[2]);
    disk.assign(x.size(), -1);
    ring.assign(x.size(), ring_current);
  }
  OxygenShares Evaluate(const OxygenSettings& settings) const {
    return EvaluateOxygen(x, disk, ring, vertices, settings).value();
  }
};

TEST(Oxygen, ShareFollowsFromTheTwoCurrents) {
  EXPECT_EQ(ShareOfWater(2e-4, 0, 0.39), 100);
  EXPECT_EQ(ShareOfWater(2e-4, 1e-4, 0.5), 0);
  // x = 0.05 of the molecules become peroxide: 3.8 and 0.1 of 3.9 electrons.
  EXPECT_NEAR(ShareOfWater(3.9, 0.1 * 0.39, 0.39), 95, 1e-12);
  EXPECT_NEAR(ElectronsOfShare(95), 3.9, 1e-12);
}

TEST(Oxygen, WindowsAreOpenAtBothEnds) {
  // Binary fractions, so that points lie exactly on the windows' ends.
  const Values x{0.25, 0.375, 0.5, 0.625, 0.75, 0.625, 0.5, 0.375, 0.25};
  const Values disk{1, 2, 4, 8, 16, 32, 64, 128, 256};
  const Values ring(x.size(), 0);
  const auto shares =
      EvaluateOxygen(x, disk, ring, {0.5, 0.5625, 0.25}, {0.4, 0.25, 0.125}).value();
  // Rising: 0.375 and 0.625 are on the ends. The scan ends at the first 0.625.
  ASSERT_GE(shares.size(), 1u);
  EXPECT_EQ(shares.potential[0], 0.5);
  EXPECT_EQ(shares.disk[0], 4);
  // Falling from 0.5625: 0.6875 is passed over twice, 0.4375 ends the scan: 0.625 up, 0.625 and 0.5
  // down; then nothing but the last point about 0.3125.
  ASSERT_EQ(shares.size(), 3u);
  EXPECT_EQ(shares.disk[1], (8.0 + 32 + 64) / 3);
  EXPECT_EQ(shares.disk[2], (128.0 + 256) / 2);
  EXPECT_THAT(shares.water, ElementsAre(100, 100, 100));
}

TEST(Oxygen, OnlyTwoSegmentsAndOnlyStepsWithCurrent) {
  Sweep sweep({1, 0.1, 1}, 90, 0.039);
  for (std::size_t i = 0; i < 30; ++i) sweep.disk[i] = sweep.ring[i] = 0;  // no current above 0.7
  const std::size_t points = sweep.x.size();
  for (std::size_t i = 0; i < points; ++i) {  // a second cycle, with a share of its own
    sweep.x.push_back(sweep.x[i]);
    sweep.disk.push_back(-7);
    sweep.ring.push_back(0);
  }
  // 0.68 to 0.12 V, then 0.1 to 0.98 V.
  const OxygenShares shares = sweep.Evaluate({0.39, 0.08, 0.015});
  EXPECT_FALSE(shares.second_segment_lost);
  EXPECT_EQ(shares.size(), 8u + 12u);
  EXPECT_NEAR(shares.potential.front(), 0.68, 1e-9);
  EXPECT_NEAR(shares.potential.back(), 0.98, 1e-9);
  for (const double water : shares.water) EXPECT_NEAR(water, 100 * 0.9 / 1.1, 1e-9);
}

TEST(Oxygen, AStepOnTheVertexTakesTheWayBack) {
  const Sweep sweep({0.75, 0.25, 0.75}, 128, 0);
  const OxygenShares lost = sweep.Evaluate({0.39, 0.125, 0.03125});
  EXPECT_TRUE(lost.second_segment_lost);
  EXPECT_EQ(lost.size(), 5u);
  // Windows that reach beyond the next step's near edge remember where that one starts.
  const OxygenShares whole = sweep.Evaluate({0.39, 0.125, 0.1875});
  EXPECT_FALSE(whole.second_segment_lost);
  EXPECT_EQ(whole.size(), 10u);
  // Nothing is lost where there is no way back.
  Sweep one_way = sweep;
  one_way.x.resize(128);
  EXPECT_FALSE(one_way.Evaluate({0.39, 0.125, 0.03125}).second_segment_lost);
}

TEST(Oxygen, RefusesWhatHasNoMeaningOrNoEnd) {
  const Sweep sweep({1, 0, 1}, 100, 0.1);
  const auto why = [&](const OxygenSettings& settings) {
    return EvaluateOxygen(sweep.x, sweep.disk, sweep.ring, sweep.vertices, settings).why();
  };
  EXPECT_THAT(why({0, 0.05, 0.01}), HasSubstr("collection efficiency"));
  EXPECT_THAT(why({-0.39, 0.05, 0.01}), HasSubstr("collection efficiency"));
  EXPECT_THAT(why({0.39, 0, 0.01}), HasSubstr("voltage step"));
  EXPECT_THAT(why({0.39, 1e-9, 0.01}), HasSubstr("too small"));
  EXPECT_THAT(why({0.39, 1e-300, 0.01}), HasSubstr("too small"));
  // A step that the potential's own rounding swallows.
  const Values far(9, 1e12);
  EXPECT_TRUE(EvaluateOxygen(far, far, far, {1e12, 1e12 + 1, 1e12}, {0.39, 1e-5, 1e300}).ok());
  EXPECT_TRUE(EvaluateOxygen(far, far, far, {1e12, 1e12 + 1, 1e12}, {0.39, 1e-5, 1e-6}).ok());
  // Signs of step and half-width do not count.
  EXPECT_EQ(sweep.Evaluate({0.39, -0.06, -0.015}).potential,
            sweep.Evaluate({0.39, 0.06, 0.015}).potential);
  EXPECT_EQ(EvaluateOxygen({}, {}, {}, {1, 0, 1}, {0.39, 0.05, 0.01}).value().size(), 0u);
}

// A random sweep with noise, waits on the way, several cycles, vertices that do not fit it.
struct RandomCase {
  std::array<double, 3> vertices{};
  Values x, disk, ring;
  OxygenSettings settings;

  explicit RandomCase(std::mt19937& random) {
    const auto pick = [&](double least, double most) {
      return std::uniform_real_distribution<>(least, most)(random);
    };
    const auto whole = [&](int least, int most) {
      return std::uniform_int_distribution<>(least, most)(random);
    };
    for (double& vertex : vertices) vertex = std::round(pick(-10, 12)) / 10;
    const bool on_grid = whole(0, 2) > 0;  // as a board's steps
    const double noise = whole(0, 1) * pick(0, 0.02);
    const int segments = whole(1, 5);
    for (int segment = 0; segment < segments; ++segment) {
      const double from = vertices[static_cast<std::size_t>(segment % 2)];
      const double to = vertices[static_cast<std::size_t>(segment % 2 + 1)];
      const int points = whole(1, 200);
      for (int i = 0; i < points; ++i) {
        const double volts = from + (to - from) * i / points + pick(-noise, noise);
        x.push_back(on_grid ? std::round(volts / 0.0025) * 0.0025 : volts);
        disk.push_back(whole(0, 20) == 0 ? 0 : pick(-1e-3, 1e-4));
        ring.push_back(whole(0, 3) == 0 ? 0 : pick(0, 1e-5));
      }
    }
    settings = {0.39, std::round(pick(1, 300)) / 1000, std::round(pick(1, 100)) / 1000};
  }
};

TEST(Oxygen, GivesTheBitsOfTheDefinition) {
  std::mt19937 random(20260101);
  std::size_t evaluated = 0;
  for (int k = 0; k < 1000; ++k) {
    SCOPED_TRACE(k);
    const RandomCase c(random);
    if (c.settings.half_width > 32 * c.settings.step) continue;
    const OxygenShares found = EvaluateOxygen(c.x, c.disk, c.ring, c.vertices, c.settings).value();
    const OxygenShares expected = LiteralOxygen(c.x, c.disk, c.ring, c.vertices, c.settings);
    EXPECT_EQ(found.potential, expected.potential);
    EXPECT_EQ(found.disk, expected.disk);
    EXPECT_EQ(found.ring, expected.ring);
    EXPECT_EQ(found.water, expected.water);
    evaluated += found.size();
  }
  EXPECT_GT(evaluated, 5000u);
}

// Where the windows overlap so much that their sums move along, only rounding differs, and a sum
// of nothing is nothing.
TEST(Oxygen, MovingSumsAreThoseOfTheDefinition) {
  std::mt19937 random(20260102);
  std::size_t evaluated = 0;
  for (int k = 0; k < 200; ++k) {
    SCOPED_TRACE(k);
    RandomCase c(random);
    c.settings.step = c.settings.half_width / (33 + k);
    const OxygenShares found = EvaluateOxygen(c.x, c.disk, c.ring, c.vertices, c.settings).value();
    const OxygenShares expected = LiteralOxygen(c.x, c.disk, c.ring, c.vertices, c.settings);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      ASSERT_NEAR(found.potential[i], expected.potential[i], 1e-13);
      ASSERT_NEAR(found.disk[i], expected.disk[i], 1e-16);
      ASSERT_NEAR(found.ring[i], expected.ring[i], 1e-18);
      ASSERT_EQ(found.ring[i] == 0, expected.ring[i] == 0);
    }
    evaluated += found.size();
  }
  EXPECT_GT(evaluated, 5000u);
}

// Track 0 holds a ring-disk sweep 0.75 -> 0.25 -> 0.75 V with a share of 5 % for peroxide, track 1
// a voltammogram without a ring, the others nothing.
struct OxygenForm : AnalysisTest {
  OxygenForm() {
    Values x;
    for (int i = 0; i <= 256; ++i) x.push_back(0.25 + std::fabs(i - 128) / 256.0);
    TrackRecord& record = Fill(0, kModeRDE, x, Values(257, -3.9e-4), Values(257, 0.1e-4 * 0.39));
    record.RPM = 1600;
    record.V = {0.75, 0.25, 0.75};
    ws.tracks.Record(1).Mode = kModeCV;
    ws.settings.O2CE = 0.39;
    ws.settings.O2VStep = 0.2;
    ws.settings.O2Vrange = 0.01;
  }
  frmO2Reduction& Window() { return Open<frmO2Reduction>(); }
};

// At its start a window is cut short. On the way back the scan stands before 0.25 V at first, where
// it finds that window's far edge at once.
constexpr const char* kReport =
    "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.551\t95.0\r\n0.352\t95.0\r\n"
    "0.449\t95.0\r\n0.648\t95.0\r\n";

TEST_F(OxygenForm, EvaluatesATrackWhenItIsChosen) {
  auto& form = Window();
  EXPECT_EQ(form.lblMode.text() + form.txtTitle.text() + form.txtRPM.text(), "RDEtrack 01600");
  EXPECT_EQ(form.report(), kReport);
  ASSERT_EQ(form.result().columns.size(), 5u);
  EXPECT_NEAR(form.result().columns[4].values.front(), 3.9, 1e-9);
  EXPECT_NEAR(form.result().quantities.front().value, 95, 1e-9);

  // A track without a ring changes neither report nor plot, and the window says so.
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());
  EXPECT_EQ(form.lblMode.text(), "CV");
  EXPECT_EQ(form.report(), kReport);
  EXPECT_THAT(form.lblNote.text(), HasSubstr("those of track 0"));
  EXPECT_THAT(Messages(), IsEmpty());
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("Track 1 is no ring-disk voltammogram."));

  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(form.txtDataNum.text() + form.txtTitle.text() + form.txtRPM.text(), "20");
}

TEST_F(OxygenForm, SettingsCountWhenTheirBoxIsLeft) {
  auto& form = Window();
  EXPECT_TRUE(form.txtVstep.UserType("-0.").ok());
  EXPECT_EQ(ws.settings.O2VStep, 0);
  EXPECT_EQ(form.report(), kReport);  // nothing happens while one types
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_TRUE(form.txtVstep.UserSet("-0.3").ok());
  EXPECT_EQ(ws.settings.O2VStep, 0.3);
  EXPECT_EQ(form.txtVstep.text(), "0.3");
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.449\t95.0\r\n0.551\t95.0\r\n");

  // Half the efficiency: twice as much peroxide.
  EXPECT_TRUE(form.txtCE.UserSet("0.195").ok());
  EXPECT_THAT(form.report(), HasSubstr("0.746\t90.2\r\n"));
  EXPECT_TRUE(form.txtVrange.UserSet("0").ok());
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n");
  EXPECT_THAT(form.lblNote.text(), HasSubstr("0.75, 0.25 and 0.75 V"));
}

TEST_F(OxygenForm, SettingsWithoutMeaningAreRefusedQuietlyUntilSomebodyAsks) {
  auto& form = Window();
  EXPECT_TRUE(form.txtCE.UserSet("-0.39").ok());
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_THAT(form.lblNote.text(), HasSubstr("collection efficiency must be above zero"));
  EXPECT_EQ(form.report(), kReport);
  form.Calculate();
  EXPECT_THAT(Messages(), ElementsAre("The collection efficiency must be above zero."));
  EXPECT_TRUE(form.UpDown1.UserStep(+1).ok());  // no ring, nothing to refuse
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_TRUE(form.UpDown1.UserStep(-1).ok());
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_FALSE(form.result().refusal.empty());
}

TEST_F(OxygenForm, TellsThatTheWayBackIsMissing) {
  ws.settings.O2VStep = 0.25;  // lands on the vertex
  auto& form = Window();
  EXPECT_EQ(form.report(), "Edisk/V\t%H2O\r\n0.746\t95.0\r\n0.5\t95.0\r\n0.255\t95.0\r\n");
  EXPECT_THAT(form.lblNote.text(), HasSubstr("way back is missing"));
}

}  // namespace
}  // namespace zento
