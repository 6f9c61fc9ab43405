#include <bit>
#include <cmath>
#include <functional>
#include <random>
#include <span>

#include "analysis/analysis_test_rig.h"
#include "analysis/fft_form.h"
#include "analysis/test_definitions.h"
#include "analysis/track_points.h"
#include "analysis/vector_passes.h"
#include "core/track_history.h"
#include "measure/step_form.h"
#include "measure/test_bench.h"

namespace zento {
namespace {

using ::testing::HasSubstr;

struct Sequence {
  Values re, im;
};

// Numbers of both signs and of many sizes, zeros of both signs among them.
Sequence Random(std::size_t points, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> value;
  std::uniform_int_distribution<int> power(-20, 20);
  const auto draw = [&] {
    const int p = power(random);
    return p == 0 ? 0.0 * value(random) : std::ldexp(value(random), p);
  };
  Sequence sequence;
  for (std::size_t i = 0; i < points; ++i) {
    sequence.re.push_back(draw());
    sequence.im.push_back(points % 3 == 0 ? 0 : draw());
  }
  return sequence;
}

// The first index at which the bits differ, or the length.
std::size_t Agreement(const Values& a, const Values& b) {
  std::size_t i = 0;
  while (i < a.size() && std::bit_cast<std::uint64_t>(a[i]) == std::bit_cast<std::uint64_t>(b[i])) {
    ++i;
  }
  return i;
}

TEST(Fft, GivesTheBitsOfItsDefinition) {
  for (std::size_t points = 2; points <= 1u << 17; points *= 2) {
    for (const double sign : {1.0, -1.0}) {
      SCOPED_TRACE(std::to_string(points) + " points, sign " + std::to_string(sign));
      Sequence fast = Random(points, static_cast<std::uint32_t>(points));
      Sequence literal = fast;
      Sequence baseline = fast;
      FFT(fast.re.data(), fast.im.data(), points, sign);
      LiteralFft(literal.re.data(), literal.im.data(), static_cast<long>(points), sign);
      EXPECT_EQ(Agreement(fast.re, literal.re), points);
      EXPECT_EQ(Agreement(fast.im, literal.im), points);
      if (points < 16) continue;
      // What a processor without the wide registers computes.
      FftPassesBaseline(baseline.re.data(), baseline.im.data(), TablesFor(points, sign < 0),
                        sign < 0 ? 1 / static_cast<double>(points) : 1);
      EXPECT_EQ(Agreement(baseline.re, literal.re), points);
      EXPECT_EQ(Agreement(baseline.im, literal.im), points);
    }
  }
}

TEST(Fft, FindsALineAndIsUndone) {
  constexpr std::size_t kPoints = 64;
  Sequence x;
  for (std::size_t n = 0; n < kPoints; ++n) {
    x.re.push_back(3 * std::cos(2 * 3.14159265358979 * 5 * static_cast<double>(n) / kPoints));
    x.im.push_back(0);
  }
  const Sequence before = x;
  FFT(x.re.data(), x.im.data(), kPoints, 1);
  for (std::size_t k = 0; k < kPoints; ++k) {
    EXPECT_NEAR(x.re[k], k == 5 || k == kPoints - 5 ? 3.0 * kPoints / 2 : 0, 1e-10) << k;
    EXPECT_NEAR(x.im[k], 0, 1e-10) << k;
  }
  FFT(x.re.data(), x.im.data(), kPoints, -1);
  for (std::size_t n = 0; n < kPoints; ++n) EXPECT_NEAR(x.re[n], before.re[n], 1e-12);
}

TEST(Fft, LeavesOtherLengthsAlone) {
  for (const std::size_t points : {0, 1, 3, 12, 100}) {
    Sequence x = Random(points + 1, 3);
    const Sequence before = x;
    FFT(x.re.data(), x.im.data(), points, -1);
    EXPECT_EQ(Agreement(x.re, before.re), points + 1);
  }
}

TEST(Spectrum, TakesThePowerOfTwoAboveTheTracksPoints) {
  for (std::size_t points = 1; points <= 40001; ++points) {
    // The definition, by logarithms; exact in binary for a power of two.
    const double power = std::floor(std::log2(static_cast<double>(points)) + 1);
    ASSERT_EQ(TransformLength(points),
              static_cast<std::size_t>(std::ldexp(1, static_cast<int>(power))));
  }
  EXPECT_EQ(TransformLength(0), 0u);
  const Spectrum spectrum = SpectrumOf(Values{1, 2, 3, 4});
  ASSERT_EQ(spectrum.magnitude.size(), 9u);
  EXPECT_EQ(spectrum.magnitude[0], 10);
  EXPECT_NEAR(spectrum.magnitude[4], 2, 1e-12);  // alternating signs: 1 - 2 + 3 - 4
  EXPECT_EQ(spectrum.magnitude[8], 0);
}

TEST(Spectrum, CutsAtTheLimitAndAboveIt) {
  Values values(8, 0.0);
  for (std::size_t i = 0; i < 8; ++i) values[i] = 1 + static_cast<double>(i % 2);
  const Spectrum spectrum = SpectrumOf(values);  // 16 bins
  const Values same = LowPass(spectrum, 1, 8.5, 8);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(same[i], values[i], 1e-12);
  // Only bin 0 stays: the mean of all sixteen, zeros included.
  for (const double value : LowPass(spectrum, 1, 1, 8)) EXPECT_NEAR(value, 12.0 / 16, 1e-12);
  // A bin that lies on the limit goes.
  EXPECT_NE(LowPass(spectrum, 1, 8, 8), LowPass(spectrum, 1, 8.5, 8));
  EXPECT_EQ(LowPass(spectrum, 1, 8, 8), LowPass(spectrum, 1, 7.5, 8));
}

// Track 0: a ring-disk curve of 500 points, 1 ms apart, with hum of 50 Hz on both currents.
struct FftForm : AnalysisTest {
  FftForm() {
    ws.settings.FFTFxmax = 25;
    ws.settings.FFTFymax = 20;
    FillHum(0);
    form = &Open<frmFFTFilter>();
  }
  void FillHum(int track) {
    Values x, disk, ring;
    for (int i = 0; i < kPoints; ++i) {
      x.push_back(0.002 * i);
      disk.push_back(Slow(i) + 1e-5 * Hum(i));
      ring.push_back(-0.4 * Slow(i) + 2e-6 * Hum(i));
    }
    TrackRecord& record = Fill(track, kModeRDE, x, disk, ring);
    record.MaxTime = kPoints;
    record.DiskYscale = 0.001;
  }
  static double Slow(int i) { return 1e-4 * (1 - std::cos(2 * 3.141592653589793 * i / kPoints)); }
  static double Hum(int i) { return std::sin(2 * 3.141592653589793 * i / 20); }
  double WorstHum(int track) const {
    double worst = 0;
    for (int i = 50; i < kPoints - 50; ++i) {
      worst = std::max(worst, std::abs(ws.tracks.Value(1, track, i) - Slow(i)));
      worst = std::max(worst, std::abs(ws.tracks.Value(2, track, i) + 0.4 * Slow(i)));
    }
    return worst;
  }

  static constexpr int kPoints = 500;
  frmFFTFilter* form = nullptr;
};

TEST_F(FftForm, OpensOnTrackZeroWithItsSpectrum) {
  EXPECT_EQ(form->txtDataNum.text() + form->lblMode.text() + form->txtDesNum.text() +
                form->lblDestMode.text(),
            "0RDE10None");
  EXPECT_EQ(form->lblNote.text(),
            "500 points, one every 0.001 s: frequencies up to 500 Hz in steps of 1.953 Hz.");
  // 10 % beyond fs/2; the largest bin is the mean potential's, 249.5 V in all.
  EXPECT_NEAR(form->FrequencyGraph.shown().x2, 550, 1e-9);
  EXPECT_NEAR(form->FrequencyGraph.shown().x1, -110, 1e-9);
  EXPECT_NEAR(form->FrequencyGraph.shown().y1, 1.1 * 249.5, 1e-6);
  EXPECT_TRUE(form->updGraphScale.UserStep(+1).ok());
  EXPECT_NEAR(form->FrequencyGraph.shown().y1, 1.1 * 249.5 / 2, 1e-6);
  // The disk current's alone: 500 times its mean of 1e-4 A.
  EXPECT_TRUE(form->chkXSpectrum.UserSet("0").ok());
  EXPECT_NEAR(form->FrequencyGraph.shown().y1, 1.1 * 0.05, 1e-6);

  EXPECT_TRUE(form->UpDown1.UserStep(-1).ok());
  EXPECT_EQ(form->txtDataNum.text(), "20");
  EXPECT_EQ(form->lblNote.text(), "Track 20 is empty.");
  form->Calculate();
  EXPECT_TRUE(machine.dialogs.TakeMessages().empty());
}

TEST_F(FftForm, CutOffsAreHeldAboveZero) {
  for (const char* typed : {"0", "-3", "fast"}) {
    EXPECT_TRUE(form->txtXMaxFrequency.UserSet(typed).ok());
    EXPECT_EQ(ws.settings.FFTFxmax, 0.1);
    EXPECT_EQ(form->txtXMaxFrequency.text(), "0.1");
  }
  EXPECT_TRUE(form->txtYMaxFrequency.UserSet("12.5 Hz").ok());
  EXPECT_EQ(ws.settings.FFTFymax, 12.5);
}

TEST_F(FftForm, FiltersIntoAnotherTrackAndBack) {
  const TrackStore before = ws.tracks;
  EXPECT_FALSE(form->cmdRecordAnotherTrack.enabled());
  ws.tracks.Record(10).DiskYscale = 7;
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(form->txtDestTitle.text(), "FFT_track 0");
  EXPECT_TRUE(form->txtDestTitle.UserSet("quiet").ok());
  EXPECT_TRUE(form->cmdRecordAnotherTrack.UserClick().ok());
  EXPECT_EQ(ws.tracks.Record(10).Title, "quiet");
  EXPECT_EQ(ws.tracks.Record(10).pnum, kPoints);
  EXPECT_EQ(ws.tracks.Record(10).DiskYscale, 7);
  EXPECT_EQ(form->lblDestHolds.text(), "quiet");
  EXPECT_GT(WorstHum(0), 9e-6);
  EXPECT_LT(WorstHum(10), 5e-7);
  for (int i = 0; i < kPoints; ++i) EXPECT_NEAR(ws.tracks.Value(0, 10, i), 0.002 * i, 1e-12);
  EXPECT_EQ(ws.history.UndoName(), "FFT filter into track 10");
  EXPECT_TRUE(shown.empty());

  // The same into the track itself; its spectrum is then the filtered points'.
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  EXPECT_EQ(ws.history.UndoName(), "FFT filter");
  EXPECT_EQ(ws.tracks.Column(1, 0), ws.tracks.Column(1, 10));
  EXPECT_EQ(shown, std::vector<int>{0});
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  for (int c = 0; c < 3; ++c) EXPECT_EQ(ws.tracks.Column(c, 0), before.Column(c, 0));
  EXPECT_EQ(ws.tracks.Record(0), before.Record(0));
}

TEST_F(FftForm, XHasACutOffOfItsOwn) {
  for (int i = 0; i < kPoints; ++i) ws.tracks.SetValue(0, 0, i, 0.1 * (Hum(i) - Slow(i) * 5e3));
  form->Activate();
  EXPECT_TRUE(form->opnXFilter.UserSet("1").ok());
  EXPECT_TRUE(form->txtYMaxFrequency.UserSet("400").ok());
  form->Calculate();
  form->RecordAnotherTrack();
  EXPECT_GT(WorstHum(10), 9e-6) << "the currents keep what is slower than 400 Hz";
  for (int i = 50; i < kPoints - 50; ++i) {
    EXPECT_NEAR(ws.tracks.Value(0, 10, i), -500 * Slow(i), 0.01) << i;
  }
}

TEST_F(FftForm, WritesOnlyWhatWasCalculatedForWhatIsShown) {
  FillHum(1);
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"another source", [&] { (void)form->UpDown1.UserStep(+1); }},
      {"another cut-off", [&] { (void)form->txtYMaxFrequency.UserSet("30"); }},
      {"another filter", [&] { (void)form->opnXFilter.UserSet("1"); }},
      {"another time", [&] { ws.tracks.Record(1).MaxTime = 1000; }},
      {"other points", [&] { ws.tracks.SetValue(2, 1, 3, 0.5); }},  // as by an editor
  };
  form->UpdateData();
  for (const auto& [what, change] : changes) {
    form->Calculate();
    EXPECT_TRUE(form->cmdUpdate.enabled()) << what;
    change();
    form->UpdateData();
    form->RecordAnotherTrack();
    EXPECT_EQ(ws.history.UndoName(), "") << what;
  }
}

TEST_F(FftForm, SaysWhyATrackHasNoSpectrum) {
  ws.tracks.Record(0).MaxTime = 0;  // nor a scan rate
  form->Activate();
  EXPECT_THAT(form->lblNote.text(), HasSubstr("neither measurement time nor scan rate"));
  form->Calculate();
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_FALSE(form->cmdUpdate.enabled());
  ws.tracks.Record(0).MaxTime = kPoints;
  ws.tracks.SetValue(2, 0, 7, std::nan(""));
  form->Activate();
  EXPECT_EQ(form->lblNote.text(), "The track holds values that are no numbers.");
  ws.tracks.Record(0).pnum = 0;
  EXPECT_TRUE(form->UpDown1.UserStep(+1).ok());
  EXPECT_TRUE(form->UpDown1.UserStep(-1).ok());
  EXPECT_EQ(form->lblNote.text(), "Track 0 has no points.");
}

// The header of a sweep has its planned time.
TEST_F(FftForm, SaysWhenTheTimeIsNotThatOfThePoints) {
  TrackRecord& record = ws.tracks.Record(0);
  record.Scanrate = 2000;  // 2 mV a point, 1 ms each
  for (const double planned : {450.0, 500.0, 5000.0}) {
    record.MaxTime = planned;
    form->Activate();
    EXPECT_EQ(form->lblNote.text().find("stopped early") != std::string::npos, planned > 1000);
  }
}

TEST_F(FftForm, KeepsTheTimesOfTheThirdColumn) {
  TrackRecord& record = ws.tracks.Record(0);
  record.TimeRecording = 1;
  for (const std::int32_t mode : {kModeRPMvsj, kModeSSVAll}) {
    record.Mode = mode;
    ws.tracks.Column(2, 10).assign(10, 5e-6);  // another track's ring
    form->Activate();
    form->Calculate();
    form->RecordAnotherTrack();
    EXPECT_EQ(ws.tracks.Record(10).TimeRecording, 1);
    EXPECT_EQ(ws.tracks.Column(2, 10), ws.tracks.Column(2, 0));
  }
}

// The frequencies are those of the run, not only of numbers made for the test.
TEST(FilterOnTheBench, TakesTheMainsHumOutOfAStep) {
  constexpr int kTrack = 5;
  Laboratory lab(sim::With({"mains=20", "noise=0", "mains_frequency=50"}));
  RegisterAnalysisForms(lab.machine.desktop, lab.ws, lab.machine.host);
  auto& step = *dynamic_cast<frmPotentialStep*>(lab.machine.desktop.Show("frmPotentialStep"));
  for (const auto& [name, text] : {std::pair{"txtRetainTime", "1"},
                                   {"txtMaxTime", "4"},
                                   {"txtInitSamplingRate", "250"},
                                   {"txtAccum", "1"},
                                   {"txtDataNum", "5"}}) {
    ASSERT_TRUE(step.Find(name)->UserSet(text).ok()) << name;
  }
  ASSERT_TRUE(step.txtVoltSetting[0].UserSet("0").ok());
  ASSERT_TRUE(step.txtVoltSetting[1].UserSet("0.2").ok());
  ASSERT_TRUE(step.cmdStart.UserClick().ok());
  ASSERT_TRUE(lab.RunUntilIdle());
  // The highest line of a current's spectrum from 40 to 60 Hz, and where it stands.
  const auto highest = [&](int track) {
    const std::span<const double> current = lab.ws.tracks.Points(1, track);
    const Spectrum spectrum = SpectrumOf(current);
    const double df = static_cast<double>(current.size()) * 1000 /
                      TrackTime(lab.ws.tracks, kTrack) / static_cast<double>(spectrum.Length());
    std::pair<double, double> line;
    for (std::size_t k = static_cast<std::size_t>(40 / df); static_cast<double>(k) * df < 60; ++k) {
      line = std::max(line, {spectrum.magnitude[k], static_cast<double>(k) * df});
    }
    return line;
  };
  auto& form = *dynamic_cast<frmFFTFilter*>(lab.machine.desktop.Show("frmFFTFilter"));
  ASSERT_TRUE(form.txtDataNum.UserSet("5").ok());
  ASSERT_TRUE(form.txtYMaxFrequency.UserSet("30").ok());
  ASSERT_TRUE(form.cmdCalc.UserClick().ok());
  ASSERT_TRUE(form.cmdRecordAnotherTrack.UserClick().ok());
  EXPECT_NEAR(highest(kTrack).second, 50, 0.5);
  EXPECT_LT(highest(10).first, 0.02 * highest(kTrack).first);
}

}  // namespace
}  // namespace zento
