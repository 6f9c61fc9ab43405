// Voltammograms of the simulated bench, measured as a person does (through the window, from Start
// to the saved track file, read back) and held against theory.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "measure/cv_form.h"
#include "measure/test_bench.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kHalfWave = 0.25;  // V, of the bench's couple with equal diffusion coefficients

// What is typed into the window.
struct Programme {
  std::array<std::string, 3> volts = {"-0.15", "0.65", "-0.15"};
  std::string scan_rate = "50";  // mV/s
  std::string retain_time = "2";
  std::string rpm = "0";
  std::string sampling_rate = "100";
  std::string accumulation = "1";
};

struct Voltammogram {
  std::vector<double> volts;
  std::vector<double> amperes;
  TrackRecord record;
};

Voltammogram Measure(Laboratory& lab, const Programme& programme) {
  auto& cv = lab.Open<frmMeasureCV>("frmMeasureCV");
  for (std::size_t i = 0; i < 3; ++i) Type(cv.txtVoltSetting[i], programme.volts[i]);
  Type(cv.txtCycleNum, "1");
  Type(cv.txtScanrate, programme.scan_rate);
  Type(cv.txtRetainTime, programme.retain_time);
  Type(cv.txtRPM, programme.rpm);
  Type(cv.txtSamplingrate, programme.sampling_rate);
  Type(cv.txtAccum, programme.accumulation);
  Type(cv.txtDataNum, "5");
  lab.Measure(cv.cmdStart);
  return {lab.ReadBack(0), lab.ReadBack(1), lab.another_day.tracks.Record(5)};
}

Voltammogram Measure(const sim::Parameters& parameters, const Programme& programme) {
  Laboratory lab(parameters);
  return Measure(lab, programme);
}

double PerVolt(const sim::Parameters& p) {
  return p.electrons * kFaraday / (8.314462618 * p.temperature);
}

// n F A C sqrt(D n F v / (R T)): what turns chi sqrt(pi) into a current.
double SweepUnit(const sim::Parameters& p, double volts_per_second) {
  return p.electrons * kFaraday * p.area * p.bulk_red * 1e-6 *
         std::sqrt(p.diffusion_red * PerVolt(p) * volts_per_second);
}

// Sweep `part` of a voltammogram: 0 up to the highest potential, 1 from there on.
Voltammogram Part(const Voltammogram& all, int part) {
  const auto top = std::max_element(all.volts.begin(), all.volts.end()) - all.volts.begin();
  const auto half = [&](const std::vector<double>& v) {
    return part == 0 ? std::vector(v.begin(), v.begin() + top)
                     : std::vector(v.begin() + top, v.end());
  };
  return {half(all.volts), half(all.amperes), all.record};
}

// The least-squares polynomial of fourth degree through the points within `reach` of `centre`: what
// the digits of a track file have rounded away is small in the mean over many points.
class Smooth {
 public:
  Smooth(const Voltammogram& sweep, double centre, double reach) : centre_(centre), reach_(reach) {
    std::array<std::array<double, kTerms + 1>, kTerms> m{};
    for (std::size_t k = 0; k < sweep.volts.size(); ++k) {
      const double x = (sweep.volts[k] - centre) / reach;
      if (std::abs(x) > 1) continue;
      std::array<double, kTerms> powers{1};
      for (std::size_t i = 1; i < kTerms; ++i) powers[i] = powers[i - 1] * x;
      for (std::size_t i = 0; i < kTerms; ++i) {
        for (std::size_t j = 0; j < kTerms; ++j) m[i][j] += powers[i] * powers[j];
        m[i][kTerms] += powers[i] * sweep.amperes[k];
      }
    }
    for (std::size_t i = 0; i < kTerms; ++i) {
      for (std::size_t row = 0; row < kTerms; ++row) {
        if (row == i) continue;
        const double factor = m[row][i] / m[i][i];
        for (std::size_t j = i; j <= kTerms; ++j) m[row][j] -= factor * m[i][j];
      }
    }
    for (std::size_t i = 0; i < kTerms; ++i) terms_[i] = m[i][kTerms] / m[i][i];
  }

  double operator()(double volts) const {
    const double x = (volts - centre_) / reach_;
    double value = 0;
    for (std::size_t i = kTerms; i-- > 0;) value = value * x + terms_[i];
    return value;
  }

 private:
  static constexpr std::size_t kTerms = 5;
  double centre_;
  double reach_;
  std::array<double, kTerms> terms_{};
};

struct Peak {
  double volts = 0;
  double amperes = 0;
};

// The highest point (`sign` 1) or the lowest (-1) of a sweep.
Peak FindPeak(const Voltammogram& sweep, double sign, double reach = 0.015) {
  const auto at = std::max_element(sweep.amperes.begin(), sweep.amperes.end(),
                                   [sign](double a, double b) { return sign * a < sign * b; });
  const double centre = sweep.volts[static_cast<std::size_t>(at - sweep.amperes.begin())];
  const Smooth smooth(sweep, centre, reach);
  Peak peak{centre, smooth(centre)};
  for (double e = centre - reach; e <= centre + reach; e += 1e-5) {
    if (sign * smooth(e) > sign * peak.amperes) peak = {e, smooth(e)};
  }
  return peak;
}

// Where a rising sweep first reaches the current.
double VoltsAt(const Voltammogram& sweep, double amperes) {
  const auto at = std::find_if(sweep.amperes.begin(), sweep.amperes.end(),
                               [amperes](double i) { return i >= amperes; });
  const double near = sweep.volts[static_cast<std::size_t>(at - sweep.amperes.begin())];
  const Smooth smooth(sweep, near, 0.01);
  double e = near - 0.002;
  while (e < near + 0.002 && smooth(e) < amperes) e += 1e-6;
  return e;
}

double CurrentAt(const Voltammogram& sweep, double volts) {
  return Smooth(sweep, volts, 0.01)(volts);
}

double ReversiblePeak(const sim::Parameters& p, double volts_per_second) {
  return 2.6865e5 * std::pow(p.electrons, 1.5) * p.area *
         std::sqrt(p.diffusion_red * volts_per_second) * p.bulk_red * 1e-6;
}

TEST(CVOnTheBench, ReversiblePeak) {
  struct Case {
    const char* electrons;
    const char* scan_rate;
    const char* sampling_rate;
  };
  for (const auto& [electrons, scan_rate, sampling_rate] :
       {Case{"n=1", "50", "100"}, Case{"n=2", "50", "100"}, Case{"n=1", "500", "1000"}}) {
    const sim::Parameters p = Quiet({electrons});
    const double rate = ParseLenient(scan_rate) * 1e-3;
    Programme programme;
    programme.scan_rate = scan_rate;
    programme.sampling_rate = sampling_rate;
    const Voltammogram up = Part(Measure(p, programme), 0);
    const Peak peak = FindPeak(up, 1, 0.015 / p.electrons);
    SCOPED_TRACE(std::string(electrons) + ", " + scan_rate + " mV/s");
    EXPECT_NEAR(peak.amperes / ReversiblePeak(p, rate), 1, 1e-3);
    EXPECT_NEAR((peak.volts - kHalfWave) * 1e3, 28.49 / p.electrons, 0.1);
    EXPECT_NEAR((peak.volts - VoltsAt(up, peak.amperes / 2)) * 1e3, 56.58 / p.electrons, 0.1);
  }
}

TEST(CVOnTheBench, ReversibleCurve) {
  const sim::Parameters p = Quiet();
  Programme programme;
  programme.volts = {"-0.25", "0.65", "-0.25"};
  const Voltammogram up = Part(Measure(p, programme), 0);
  const double unit = SweepUnit(p, 0.05);
  const double table[][2] = {{-.120, .00924}, {-.060, .08495}, {-.020, .27008}, {0, .38011},
                             {.0285, .44630}, {.060, .39918},  {.120, .28021}};
  for (const auto& [past, value] : table) {
    EXPECT_NEAR(CurrentAt(up, kHalfWave + past) / unit, value, 0.001) << past;
  }
}

// Reversal 141 mV past the half-wave potential.
TEST(CVOnTheBench, QuasiReversiblePeakSeparations) {
  Programme programme;
  programme.volts = {"-0.25", "0.391", "-0.25"};
  programme.scan_rate = "100";
  programme.sampling_rate = "200";
  const double table[][2] = {{20, 60.2}, {7, 62.6}, {3, 67.4}, {1, 83.1}, {.5, 104.3}, {.1, 210.7}};
  for (const auto& [psi, separation] : table) {
    sim::Parameters p = Quiet();
    p.rate_constant = psi * std::sqrt(std::numbers::pi * p.diffusion_red * PerVolt(p) * 0.1);
    const Voltammogram all = Measure(p, programme);
    const double found = FindPeak(Part(all, 0), 1).volts - FindPeak(Part(all, 1), -1).volts;
    EXPECT_NEAR(found * 1e3, separation, 0.5) << psi;
  }
}

TEST(CVOnTheBench, IrreversiblePeak) {
  const sim::Parameters p = Quiet({"k0=1e-8", "alpha=0.4"});
  Programme programme;
  programme.volts = {"0.25", "1.3", "0.25"};
  programme.scan_rate = "100";
  const Peak peak = FindPeak(Part(Measure(p, programme), 0), 1, 0.025);
  EXPECT_NEAR(peak.amperes / (SweepUnit(p, 0.1) * std::sqrt(0.6)), 0.4958, 0.0005);
}

TEST(CVOnTheBench, LimitingCurrentsOfTheRotatingDisk) {
  for (const char* rpm : {"100", "400", "1600", "4900"}) {
    const sim::Parameters p = Quiet();
    Programme programme;
    programme.volts = {"-0.2", "0.7", "-0.2"};
    programme.scan_rate = "20";
    programme.sampling_rate = "10";
    programme.retain_time = "10";
    programme.rpm = rpm;
    const Voltammogram up = Part(Measure(p, programme), 0);
    EXPECT_EQ(up.record.RPM, ParseLenient(rpm));
    const double limit = Levich(p, p.bulk_red, p.diffusion_red, ParseLenient(rpm));
    EXPECT_NEAR(MeanAround(up.volts, up.amperes, 0.7, 0.1) / limit, 1, 1e-4) << rpm;
  }
}

TEST(CVOnTheBench, PeakUnderTheNoiseOfTheDefaultBench) {
  const sim::Parameters p;
  Programme programme;
  programme.volts = {"-0.2", "0.8", "-0.2"};
  programme.accumulation = "100";
  const Peak peak = FindPeak(Part(Measure(p, programme), 0), 1, 0.02);
  EXPECT_NEAR(peak.amperes / ReversiblePeak(p, 0.05), 1, 0.03);
}

// Whatever stands between the workstation and the cell, and whoever makes the sweep.
TEST(CVOnTheBench, TheSameCurveThroughEveryBoardLinkAndOutlet) {
  const std::initializer_list<std::string_view> own = {
      "own=on",       "own_delay=6",  "own_1=-0.199", "own_2=0.7",
      "own_3=-0.199", "own_rate=100", "own_cycles=1",
  };
  Programme programme;
  programme.volts = {"-0.199", "0.7", "-0.199"};
  programme.scan_rate = "100";
  programme.retain_time = "5";
  programme.rpm = "900";
  programme.sampling_rate = "20";
  programme.accumulation = "50";
  const Voltammogram expected = Measure(Quiet({"rotor_gain=0.985"}), programme);
  const double limit = *std::max_element(expected.amperes.begin(), expected.amperes.end());
  ASSERT_GT(limit, 5e-4);

  for (const int board : {0, 1, 2}) {
    for (const int link : {0, 1, 2}) {
      for (const int outlets : {1, 2}) {
        SCOPED_TRACE("board " + std::to_string(board) + ", link " + std::to_string(link) +
                     ", outlets " + std::to_string(outlets));
        // The default noise on the textbook couple.
        sim::Parameters p = Quiet({"rotor_gain=0.985", "noise=0.6", "mains=0.5", "bits=12"});
        if (link == 0) p = sim::With(own, p);
        Laboratory lab(p);
        lab.ws.settings.ADBoard = board;
        lab.ws.settings.GPIBControl = link;
        lab.ws.settings.PowerControl = outlets;
        const Voltammogram measured = Measure(lab, programme);
        EXPECT_NEAR(static_cast<double>(measured.record.pnum), 361, 4);
        for (const int part : {0, 1}) {
          const Voltammogram sweep = Part(measured, part);
          double squares = 0;
          int points = 0;
          for (double e = -0.15; e < 0.65; e += 0.02) {
            const double off = Smooth(sweep, e, 0.03)(e) - Smooth(Part(expected, part), e, 0.03)(e);
            squares += off * off;
            ++points;
          }
          EXPECT_LT(std::sqrt(squares / points) / limit, 0.005) << "sweep " << part;
        }
      }
    }
  }
}

}  // namespace
}  // namespace zento
