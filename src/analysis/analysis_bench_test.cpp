// Curves of the simulated bench, measured through the ring-disk window and evaluated through the
// analysis windows, against what the cells are made of.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/analysis_forms.h"
#include "analysis/fft.h"
#include "analysis/fft_form.h"
#include "analysis/oxygen_form.h"
#include "analysis/tafel_form.h"
#include "analysis/track_points.h"
#include "measure/rde_form.h"
#include "measure/step_form.h"
#include "measure/test_bench.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kTrack = 5;

struct Programme {
  const char* first;
  const char* second;
  const char* scan_rate;
  const char* rpm;
};

// The bench's own cells, but without noise and with a motor that keeps its law.
sim::Parameters Silent(std::initializer_list<std::string_view> changes) {
  return sim::With(changes, sim::With({"noise=0", "mains=0", "bits=0", "rotor_gain=1"}));
}

void Measure(Laboratory& lab, const Programme& programme) {
  RegisterAnalysisForms(lab.machine.desktop, lab.ws, lab.machine.host);
  auto& rde = *dynamic_cast<frmMeasureRDE*>(lab.machine.desktop.Show("frmMeasureRDE"));
  for (const auto& [box, text] :
       std::vector<std::pair<TextBox*, std::string>>{{&rde.txtVoltSetting[0], programme.first},
                                                     {&rde.txtVoltSetting[1], programme.second},
                                                     {&rde.txtVoltSetting[2], programme.first},
                                                     {&rde.txtScanrate, programme.scan_rate},
                                                     {&rde.txtCycleNum, "1"},
                                                     {&rde.txtRetainTime, "6"},
                                                     {&rde.txtSamplingrate, "10"},
                                                     {&rde.txtAccum, "5"},
                                                     {&rde.txtRPM, programme.rpm},
                                                     {&rde.txtDataNum, PlainNumber(kTrack)}}) {
    ASSERT_TRUE(box->UserSet(text).ok()) << box->name();
  }
  ASSERT_TRUE(rde.cmdStart.UserClick().ok());
  ASSERT_TRUE(lab.RunUntilIdle());
}

// Of a couple with k0 = 1e-6 cm/s: overpotentials from 0.12 V, where the reaction back has less
// than 1 %, to 0.2 V, where the current is below a hundredth of the limiting one. From there up to
// the vertex and back again, so that the double layer's current cancels.
TEST(TafelOnTheBench, TransferCoefficientAndExchangeCurrent) {
  for (const double alpha : {0.5, 0.4}) {
    for (const bool anodic : {true, false}) {
      SCOPED_TRACE(PlainNumber(alpha) + (anodic ? " anodic" : " cathodic"));
      const std::string alpha_text = "alpha=" + PlainNumber(alpha);
      const sim::Parameters p = Silent({"k0=1e-6", "C_ox=5", "C_red=5", "rest=0.25", alpha_text});
      Laboratory lab(p);
      Measure(lab, {"0.25", anodic ? "0.45" : "0.05", "5", "2400"});
      lab.ws.settings.TaEred = 0.25;
      lab.ws.settings.TaArea = p.area;
      auto& form = *dynamic_cast<frmTafelAnalyzer*>(lab.machine.desktop.Load("frmTafelAnalyzer"));
      ASSERT_TRUE(form.txtDataNum.UserSet(PlainNumber(kTrack)).ok());
      const auto volts = lab.ws.tracks.Points(0, kTrack);
      const auto far = [](double e) { return std::fabs(e - 0.25) >= 0.12; };
      const auto first = std::find_if(volts.begin(), volts.end(), far) - volts.begin();
      const auto behind = std::find_if(volts.rbegin(), volts.rend(), far) - volts.rbegin();
      const auto last = static_cast<long>(volts.size()) - 1 - behind;
      ASSERT_TRUE(form.txtStart.UserSet(PlainNumber(first)).ok());
      ASSERT_TRUE(form.txtEnd.UserSet(PlainNumber(last)).ok());
      form.Calculate();
      ASSERT_EQ(form.outcome().refusal, "");
      const double alpha_n = form.outcome().quantities[0].value;
      const double i0 = form.outcome().quantities[2].value;
      // i0 = n F k0 C_ox^(1 - alpha) C_red^alpha.
      const double expected_i0 = kFaraday * 1e-6 * 5e-6;
      EXPECT_NEAR(alpha_n / (anodic ? 1 - alpha : alpha), 1, 0.01);
      EXPECT_NEAR(i0 / expected_i0, 1, 0.03);
    }
  }
}

TEST(OxygenOnTheBench, ShareOfWaterInBothDirections) {
  const sim::Parameters p = Silent({"cell=oxygen", "x=0.05"});
  Laboratory lab(p);
  Measure(lab, {"1", "0.1", "20", "1600"});
  lab.ws.settings.O2CE = p.collection;
  lab.ws.settings.O2VStep = 0.06;
  lab.ws.settings.O2Vrange = 0.01;
  auto& form = *dynamic_cast<frmO2Reduction*>(lab.machine.desktop.Load("frmO2Reduction"));
  ASSERT_TRUE(form.txtDataNum.UserSet(PlainNumber(kTrack)).ok());
  ASSERT_EQ(form.outcome().refusal, "");
  const auto& columns = form.outcome().columns;
  const std::vector<double>& disk = columns[1].values;
  const std::vector<double>& water = columns[3].values;
  EXPECT_EQ(water.size(), 15u + 14u);
  const double limiting = *std::max_element(disk.begin(), disk.end());
  int in_current = 0;
  for (std::size_t i = 0; i < water.size(); ++i) {
    // At the foot of the wave the ring's current lags behind the sweep.
    if (disk[i] < 0.1 * limiting) continue;
    ++in_current;
    EXPECT_NEAR(water[i], 95, 0.2) << columns[0].values[i];
    EXPECT_NEAR(columns[4].values[i], 3.9, 0.004) << columns[0].values[i];
  }
  EXPECT_GE(in_current, 24);  // 0.8 V and below, both ways
}

// The highest line of a current's spectrum from 40 to 60 Hz, and where it stands.
struct Line {
  double frequency;
  double magnitude;
};
Line HighestLine(Laboratory& lab, int track) {
  const std::span<const double> current = lab.ws.tracks.Points(1, track);
  const Spectrum spectrum = SpectrumOf(current);
  const double rate = static_cast<double>(current.size()) * 1000 / TrackTime(lab.ws.tracks, track);
  Line line{0, 0};
  for (std::size_t k = 0; k < spectrum.Length() / 2; ++k) {
    const double f = static_cast<double>(k) * rate / static_cast<double>(spectrum.Length());
    if (f > 40 && f < 60 && spectrum.magnitude[k] > line.magnitude) {
      line = {f, spectrum.magnitude[k]};
    }
  }
  return line;
}

TEST(FilterOnTheBench, TakesTheMainsHumOutOfAStep) {
  Laboratory lab(sim::With({"mains=20", "noise=0", "mains_frequency=50"}));
  RegisterAnalysisForms(lab.machine.desktop, lab.ws, lab.machine.host);
  auto& step = *dynamic_cast<frmPotentialStep*>(lab.machine.desktop.Show("frmPotentialStep"));
  for (const auto& [box, text] :
       std::vector<std::pair<TextBox*, std::string>>{{&step.txtVoltSetting[0], "0"},
                                                     {&step.txtVoltSetting[1], "0.2"},
                                                     {&step.txtRetainTime, "1"},
                                                     {&step.txtMaxTime, "4"},
                                                     {&step.txtInitSamplingRate, "250"},
                                                     {&step.txtAccum, "1"},
                                                     {&step.txtDataNum, PlainNumber(kTrack)}}) {
    ASSERT_TRUE(box->UserSet(text).ok()) << box->name();
  }
  ASSERT_TRUE(step.cmdStart.UserClick().ok());
  ASSERT_TRUE(lab.RunUntilIdle());

  auto& form = *dynamic_cast<frmFFTFilter*>(lab.machine.desktop.Show("frmFFTFilter"));
  ASSERT_TRUE(form.txtDataNum.UserSet(PlainNumber(kTrack)).ok());
  ASSERT_TRUE(form.txtYMaxFrequency.UserSet("30").ok());
  ASSERT_TRUE(form.cmdCalc.UserClick().ok());
  ASSERT_TRUE(form.cmdRecordAnotherTrack.UserClick().ok());
  const Line hum = HighestLine(lab, kTrack);
  EXPECT_NEAR(hum.frequency, 50, 0.5);
  EXPECT_LT(HighestLine(lab, 10).magnitude, 0.02 * hum.magnitude);
}

}  // namespace
}  // namespace zento
