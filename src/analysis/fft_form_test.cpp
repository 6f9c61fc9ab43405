#include "analysis/fft_form.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_forms.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

using ::testing::HasSubstr;

TEST(Spectrum, TakesThePowerOfTwoAboveTheTracksPoints) {
  for (std::size_t points = 1; points <= 40001; ++points) {
    // The definition, by logarithms; exact in binary for a power of two.
    const double power = std::floor(std::log2(static_cast<double>(points)) + 1);
    ASSERT_EQ(TransformLength(points),
              static_cast<std::size_t>(std::ldexp(1, static_cast<int>(power))));
  }
  EXPECT_EQ(TransformLength(0), 0u);
  const Spectrum spectrum = SpectrumOf(std::vector<double>{1, 2, 3, 4});
  ASSERT_EQ(spectrum.magnitude.size(), 9u);
  EXPECT_EQ(spectrum.magnitude[0], 10);
  EXPECT_NEAR(spectrum.magnitude[4], 2, 1e-12);  // alternating signs: 1 - 2 + 3 - 4
  EXPECT_EQ(spectrum.magnitude[8], 0);
}

TEST(Spectrum, CutsAtTheLimitAndAboveIt) {
  std::vector<double> values(8, 0.0);
  for (std::size_t i = 0; i < 8; ++i) values[i] = 1 + static_cast<double>(i % 2);
  const Spectrum spectrum = SpectrumOf(values);  // 16 bins
  const std::vector<double> same = LowPass(spectrum, 1, 8.5, 8);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(same[i], values[i], 1e-12);
  // Only bin 0 stays: the mean of all sixteen, zeros included.
  for (const double value : LowPass(spectrum, 1, 1, 8)) EXPECT_NEAR(value, 12.0 / 16, 1e-12);
  // A bin that lies on the limit goes.
  EXPECT_NE(LowPass(spectrum, 1, 8, 8), LowPass(spectrum, 1, 8.5, 8));
  EXPECT_EQ(LowPass(spectrum, 1, 8, 8), LowPass(spectrum, 1, 7.5, 8));
}

// Track 0: a ring-disk curve of 500 points, 1 ms apart, with hum of 50 Hz on both currents.
struct FftForm : ::testing::Test {
  FftForm() {
    RegisterAnalysisForms(machine.desktop, ws, machine.host);
    ws.settings.FFTFxmax = 25;
    ws.settings.FFTFymax = 20;
    Fill(0);
    ws.show_data_info = [this](int track) { shown.push_back(track); };
    form = dynamic_cast<frmFFTFilter*>(machine.desktop.Show("frmFFTFilter"));
  }
  void Fill(int track) {
    TrackRecord& record = ws.tracks.Record(track);
    record.Mode = kModeRDE;
    record.Title = "hum";
    record.RPM = 1600;
    record.MaxTime = kPoints;
    record.DiskYscale = 0.001;
    record.pnum = kPoints;
    for (int i = 0; i < kPoints; ++i) {
      ws.tracks.SetValue(0, track, i, 0.002 * i);
      ws.tracks.SetValue(1, track, i, Slow(i) + 1e-5 * Hum(i));
      ws.tracks.SetValue(2, track, i, -0.4 * Slow(i) + 2e-6 * Hum(i));
    }
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
  VirtualHost machine;
  Workstation ws;
  frmFFTFilter* form = nullptr;
  std::vector<int> shown;
};

TEST_F(FftForm, OpensOnTrackZeroWithItsSpectrum) {
  EXPECT_EQ(form->txtDataNum.text(), "0");
  EXPECT_EQ(form->txtDesNum.text(), "10");
  EXPECT_EQ(form->lblDestMode.text(), "None");
  EXPECT_EQ(form->lblMode.text(), "RDE");
  EXPECT_EQ(form->txtRPM.text(), "1600");
  EXPECT_EQ(form->opnXFilter.selected(), 0);
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
  EXPECT_EQ(form->txtDestTitle.text(), "FFT_hum");
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

TEST_F(FftForm, WritesOnlyWhatWasCalculatedForWhatIsShown) {
  const auto expect_nothing_written = [&](const char* why) {
    SCOPED_TRACE(why);
    const TrackStore before = ws.tracks;
    form->UpdateData();
    form->RecordAnotherTrack();
    EXPECT_EQ(ws.tracks.Column(1, 0), before.Column(1, 0));
    EXPECT_EQ(ws.tracks.Record(10), before.Record(10));
    EXPECT_EQ(ws.history.UndoName(), "");
  };
  expect_nothing_written("nothing calculated");
  Fill(1);
  form->Calculate();
  EXPECT_TRUE(form->UpDown1.UserStep(+1).ok());
  expect_nothing_written("another source");
  form->Calculate();
  EXPECT_TRUE(form->txtYMaxFrequency.UserSet("30").ok());
  expect_nothing_written("another cut-off");
  form->Calculate();
  EXPECT_TRUE(form->opnXFilter.UserSet("1").ok());
  expect_nothing_written("another filter");
  form->Calculate();
  ws.tracks.SetValue(1, 1, 3, 0.5);  // as by an editor
  expect_nothing_written("other points");
}

TEST_F(FftForm, SaysWhyATrackHasNoSpectrum) {
  Fill(2);
  ws.tracks.Record(2).MaxTime = 0;
  ws.tracks.Record(2).Scanrate = 0;
  Fill(3);
  ws.tracks.Record(3).pnum = 0;
  EXPECT_TRUE(form->txtDataNum.UserSet("2").ok());
  EXPECT_THAT(form->lblNote.text(), HasSubstr("neither measurement time nor scan rate"));
  form->Calculate();
  ASSERT_EQ(machine.dialogs.TakeMessages().size(), 1u);
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_TRUE(form->txtDataNum.UserSet("3").ok());
  EXPECT_EQ(form->lblNote.text(), "Track 3 has no points.");
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

}  // namespace
}  // namespace zento
