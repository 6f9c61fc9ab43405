// Oxygen reduction on the simulated ring-disk electrode, measured through the window and held
// against theory.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "core/track_file.h"
#include "measure/rde_form.h"
#include "measure/test_bench.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kTolerance = 1e-3;

// The oxygen cell without noise, mains and quantisation, and with a motor that keeps its law.
sim::Parameters QuietOxygen(std::initializer_list<std::string_view> changes = {}) {
  return sim::With(changes,
                   sim::With({"cell=oxygen", "noise=0", "mains=0", "bits=0", "rotor_gain=1"}));
}

struct RingDisk {
  std::vector<double> volts, disk, ring;  // V, A, A
  TrackRecord record;

  // Mean of a current within `reach` of `centre`, over both directions of the sweep.
  double Mean(const std::vector<double>& current, double centre, double reach) const {
    double sum = 0;
    int points = 0;
    for (std::size_t i = 0; i < volts.size(); ++i) {
      if (std::abs(volts[i] - centre) > reach) continue;
      sum += current[i];
      ++points;
    }
    EXPECT_GT(points, 10);
    return sum / points;
  }
};

struct Programme {
  const char* first;
  const char* second;
  const char* scan_rate;
};

// The window as a person sets it, up to Start.
frmMeasureRDE& FillIn(Laboratory& lab, const Programme& programme, const std::string& rpm) {
  auto& rde = *dynamic_cast<frmMeasureRDE*>(lab.machine.desktop.Show("frmMeasureRDE"));
  const auto type = [](TextBox& box, const std::string& text) {
    EXPECT_TRUE(box.UserSet(text).ok()) << box.name();
    EXPECT_EQ(box.text(), text) << box.name();
  };
  type(rde.txtVoltSetting[0], programme.first);
  type(rde.txtVoltSetting[1], programme.second);
  type(rde.txtVoltSetting[2], programme.first);
  type(rde.txtScanrate, programme.scan_rate);
  type(rde.txtCycleNum, "1");
  type(rde.txtRetainTime, "6");
  type(rde.txtSamplingrate, "10");
  type(rde.txtAccum, "20");
  type(rde.txtRPM, rpm);
  type(rde.txtDataNum, "5");
  return rde;
}

RingDisk Measure(Laboratory& lab, const Programme& programme, const std::string& rpm) {
  EXPECT_TRUE(FillIn(lab, programme, rpm).cmdStart.UserClick().ok());
  EXPECT_TRUE(lab.RunUntilIdle());
  EXPECT_TRUE(SaveTracksAs(lab.ws, lab.machine.files, "run").ok());
  Workstation another_day;
  EXPECT_TRUE(OpenTracks(another_day, lab.machine.files, "run.znt").complete());
  const auto column = [&](int number) {
    const auto points = another_day.tracks.Points(number, 5);
    return std::vector<double>(points.begin(), points.end());
  };
  return {column(0), column(1), column(2), another_day.tracks.Record(5)};
}

double Omega(const std::string& rpm) {
  return ParseLenient(rpm) * 2 * std::numbers::pi / 60;
}

double Electrons(const sim::Parameters& p) {
  return 4 - 2 * p.peroxide_share;
}

// n F A C, in A s/cm.
double PerRate(const sim::Parameters& p) {
  return Electrons(p) * kFaraday * p.area * p.bulk_oxygen * 1e-6;
}

// i = 0.62045 n F A C D^(2/3) nu^(-1/6) omega^(1/2) (Levich 1962).
double Levich(const sim::Parameters& p, double omega) {
  return 0.62045 * PerRate(p) * std::pow(p.diffusion_oxygen, 2.0 / 3) *
         std::pow(p.viscosity, -1.0 / 6) * std::sqrt(omega);
}

// Per cent of the oxygen that becomes water.
double Water(const sim::Parameters& p, double disk, double ring) {
  const double collected = ring / p.collection;
  return 100 * (std::abs(disk) - collected) / (std::abs(disk) + collected);
}

TEST(RingDiskOnTheBench, LimitingCurrentsAndShareOfWater) {
  for (const char* rpm : {"400", "900", "1600", "2400"}) {
    SCOPED_TRACE(rpm);
    const sim::Parameters p = QuietOxygen();
    Laboratory lab(p);
    const RingDisk run = Measure(lab, {"1", "0.1", "20"}, rpm);
    EXPECT_EQ(run.record.Mode, kModeRDE);
    EXPECT_EQ(run.record.RPM, ParseLenient(rpm));
    EXPECT_EQ(run.record.pnum, 902);
    const double disk = run.Mean(run.disk, 0.2, 0.1);
    const double ring = run.Mean(run.ring, 0.2, 0.1);
    EXPECT_NEAR(-disk / Levich(p, Omega(rpm)), 1, kTolerance);
    EXPECT_NEAR(Water(p, disk, ring), 95, 0.1);
  }
}

// Where kinetics and transport share the control: 1/i = 1/(n F A C k) + 1/i_L, a line against
// omega^(-1/2) whose slope gives the electrons and whose intercept the rate constant.
TEST(RingDiskOnTheBench, KouteckyLevichLine) {
  const sim::Parameters p = QuietOxygen({"R_u=0", "C_dl=0"});
  std::vector<double> x, y;
  for (const char* rpm : {"400", "900", "1600", "2400"}) {
    Laboratory lab(p);
    const RingDisk run = Measure(lab, {"0.86", "0.84", "2"}, rpm);
    x.push_back(1 / std::sqrt(Omega(rpm)));
    y.push_back(1 / -run.Mean(run.disk, 0.85, 0.0015));
  }
  double sx = 0, sy = 0, sxx = 0, sxy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sx += x[i];
    sy += y[i];
    sxx += x[i] * x[i];
    sxy += x[i] * y[i];
  }
  const auto n = static_cast<double>(x.size());
  const double slope = (n * sxy - sx * sy) / (n * sxx - sx * sx);
  const double intercept = (sy - slope * sx) / n;
  EXPECT_NEAR(slope * Levich(p, 1), 1, 1e-3);
  const double rate = p.oxygen_rate * std::pow(10, (0.9 - 0.85) / (p.oxygen_slope * 1e-3));
  EXPECT_NEAR(intercept * PerRate(p) * rate, 1, 2e-3);
  for (std::size_t i = 0; i < x.size(); ++i) {
    EXPECT_NEAR((intercept + slope * x[i]) / y[i], 1, 1e-3);
  }
}

// The motor turns 1.5 % too slowly: the feedback brings the rate to the edge of its band, 10 rpm
// below what was set, and stays there.
TEST(RingDiskOnTheBench, FeedbackBringsTheRotorIntoItsBand) {
  Laboratory lab(QuietOxygen({"rotor_gain=0.985"}));
  frmMeasureRDE& rde = FillIn(lab, {"1", "0.1", "100"}, "1600");
  ASSERT_TRUE(rde.cmdStart.UserClick().ok());
  lab.machine.RunFor(5'000'000);
  EXPECT_EQ(rde.lblRPM.text(), "1575RPM");
  lab.machine.RunFor(15'000'000);
  const std::string steered = rde.lblRPM.text();
  EXPECT_GE(ParseLenient(steered), 1590);
  EXPECT_LE(ParseLenient(steered), 1593);
  EXPECT_TRUE(lab.RunUntilIdle());
  EXPECT_EQ(rde.lblRPM.text(), steered);
}

// Rates that the input board cannot show, under the default noise. Unheeded, the feedback would add
// 0.45 V in this run.
TEST(RingDiskOnTheBench, AClippedRotationSignalDoesNotWindTheMotorUp) {
  for (const char* rpm : {"2515", "2800"}) {
    SCOPED_TRACE(rpm);
    Laboratory lab(sim::With({"cell=oxygen"}));
    ASSERT_TRUE(FillIn(lab, {"1", "0.1", "20"}, rpm).cmdStart.UserClick().ok());
    EXPECT_TRUE(lab.RunUntilIdle());
    const double law = ParseLenient(rpm) / 1000;
    EXPECT_GE(lab.ws.motor_voltage, law);
    EXPECT_LT(lab.ws.motor_voltage, law / 0.985 + 0.02);
  }
}

}  // namespace
}  // namespace zento
