#include <bit>
#include <cmath>
#include <filesystem>
#include <functional>
#include <random>

#include "analysis/analysis_test_rig.h"
#include "analysis/smoothing_form.h"
#include "analysis/test_definitions.h"
#include "analysis/vector_passes.h"
#include "core/palette.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_history.h"
#include "graph/test_surface.h"

namespace zento {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

Values Random(std::size_t count, std::mt19937& random) {
  std::normal_distribution<double> value;
  std::uniform_int_distribution<int> power(-12, 3);
  Values values;
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

std::size_t DifferentBits(const Values& a, const Values& b) {
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
        const Values y = Random(count, random);
        for (smoothing.skip = 0; smoothing.skip < 4; smoothing.skip += 3) {
          Values out(count);
          Smooth(y, smoothing, out);
          ASSERT_EQ(DifferentBits(out, LiteralSmooth(y, smoothing)), 0u)
              << "method " << static_cast<int>(method) << ", window " << points << ", " << count
              << " values, skip " << smoothing.skip;
        }
      }
    }
  }
}

// What a processor without the wide registers computes, against the one that the tests run on.
TEST(Smooth, TheBaselineComputesTheSame) {
#ifdef ZENTO_AVX2
  if (!HasAvx2()) GTEST_SKIP();
  std::mt19937 random(7);
  constexpr std::size_t kHalf = 4;
  const Values y = Random(3 * kSmoothedAtOnce + 2 * kHalf, random);
  const SavitzkyGolayRow row = AnyRow(2 * kHalf + 1, random);
  const auto all = [&](const SmoothingPasses& passes) {
    Values out(9 * kSmoothedAtOnce);
    passes.average(y.data(), &out[0], 3, kHalf);
    passes.weigh(y.data(), &out[3 * kSmoothedAtOnce], 3, kHalf, row.a.data(), row.divisor);
    passes.suppress(y.data(), &out[6 * kSmoothedAtOnce], 3, kHalf, 0.02);
    return out;
  };
  EXPECT_EQ(DifferentBits(all(BaselineSmoothing()), all(Avx2Smoothing())), 0u);
#endif
}

TEST(Smooth, DoesWhatTheMethodIsFor) {
  Values y(50);
  for (int i = 0; i < 50; ++i) y[static_cast<std::size_t>(i)] = 0.1 * i * i * i - 3 * i * i + i;
  Values out(50);
  // Of degree 3: Savitzky-Golay leaves it as it is.
  Smooth(y, {SmoothingMethod::kSavitzkyGolay, 7, {21, {7, 6, 3, -2}}, 0, 0}, out);
  for (std::size_t i = 3; i < 47; ++i) EXPECT_NEAR(out[i], y[i], 1e-9);
  // Where the window reaches beyond the end, the end's value is repeated.
  Smooth(y, {SmoothingMethod::kMovingAverage, 5, {}, 0, 0}, out);
  EXPECT_NEAR(out[0], (3 * y[0] + y[1] + y[2]) / 5, 1e-12);
  EXPECT_NEAR(out[49], (y[47] + y[48] + 3 * y[49]) / 5, 1e-12);
  // A spike of 1 among zeros becomes w/(w + 1).
  Values spike(20);
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
  tracks.Record(4).Mode = kModeRDE;
  tracks.Column(2, 4) = tracks.Column(1, 4);
  smooth_to(21);
  EXPECT_EQ(tracks.Column(2, 21), tracks.Column(1, 21)) << "the ring is smoothed as the disk is";
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

// Track 0: 200 points of a step with a spike at 100; track 1 the same, track 2 of a mode that is
// not smoothed.
struct SmoothingForm : AnalysisTest {
  SmoothingForm() {
    Values x, y;
    for (int i = 0; i < 200; ++i) {
      x.push_back(0.01 * i * i);
      y.push_back(i == 100 ? 1e-3 : 1e-6 * i);
    }
    for (const int track : {0, 1, 2}) {
      Fill(track, track == 2 ? kModeSSVAll : kModePS, x, y).DiskYscale = 0.001;
    }
    file = FormatTracks(ws.tracks);
    form = &Open<frmSmoothing>();
  }
  double Spike(int track) const { return ws.tracks.Value(1, track, 100); }

  std::string file;
  frmSmoothing* form = nullptr;
};

TEST_F(SmoothingForm, WindowsAreOddAndNotTooShortForTheMethod) {
  EXPECT_EQ(form->txtPointNum.text(), "3");
  const auto press = [&](int direction) {
    EXPECT_TRUE(form->UpDown3.UserStep(direction).ok());
    return form->txtPointNum.text();
  };
  EXPECT_EQ(press(-1), "3");
  EXPECT_EQ(press(+1), "5");
  EXPECT_TRUE(form->opnYFilter.UserSet("1").ok());
  EXPECT_EQ(form->txtPointNum.text(), "5");
  EXPECT_EQ(press(-1), "5");
  for (const auto& [typed, shown_as] : std::vector<std::pair<const char*, const char*>>{
           {"99", "15"}, {"8", "7"}, {"-4", "5"}, {"many", "5"}, {"1e30", "15"}}) {
    EXPECT_TRUE(form->txtPointNum.UserSet(typed).ok());
    EXPECT_EQ(form->txtPointNum.text(), shown_as) << typed;
  }
  EXPECT_EQ(press(+1), "15");
  EXPECT_TRUE(form->opnYFilter.UserSet("2").ok());
  EXPECT_EQ(form->txtPointNum.text(), "3");
}

TEST_F(SmoothingForm, SmoothsTheTrackItselfAndUndoGivesBackTheFile) {
  // Arithmetic can give values that are no numbers; they are no reason to refuse the others.
  ws.tracks.SetValue(1, 0, 20, std::nan(""));
  form->Activate();
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  form->Activate();
  EXPECT_EQ(Spike(0), 1e-3);
  EXPECT_EQ(form->lblNote.text(), "Smoothed 1 track in 1 piece.");
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  EXPECT_NEAR(Spike(0), (1e-3 + 2e-4) / 3, 1e-12);
  EXPECT_EQ(ws.tracks.Value(0, 0, 50), 25);
  EXPECT_EQ(Spike(1), 1e-3);
  EXPECT_THAT(shown, ElementsAre(0));
  EXPECT_EQ(form->lblNote.text(), "Written into track 0; Undo gives back what was there.");
  EXPECT_EQ(ws.history.UndoName(), "Smoothing");
}

TEST_F(SmoothingForm, AllTracksMeansThoseThatAreSmoothed) {
  EXPECT_TRUE(form->txtDataNum.UserSet("2").ok());  // shown, but not smoothed
  EXPECT_TRUE(form->chkApplyAllTrack.UserSet("1").ok());
  EXPECT_TRUE(form->chkXAxis.UserSet("1").ok());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(form->lblNote.text(), "Smoothed 2 tracks in 2 pieces that meet at the turning points.");
  EXPECT_TRUE(form->cmdUpdate.UserClick().ok());
  for (const int track : {0, 1}) {
    EXPECT_NEAR(Spike(track), (1e-3 + 2e-4) / 3, 1e-12);
    EXPECT_NEAR(ws.tracks.Value(0, track, 50), 0.01 * (49 * 49 + 50 * 50 + 51 * 51) / 3, 1e-9);
  }
  EXPECT_EQ(form->lblNote.text(), "Written into 2 tracks; Undo gives back what was there.");
  EXPECT_EQ(Spike(2), 1e-3);
  // Nobody smooths twice by pressing twice.
  EXPECT_FALSE(form->cmdUpdate.enabled());
  form->UpdateData();
  EXPECT_NEAR(Spike(0), (1e-3 + 2e-4) / 3, 1e-12);
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(FormatTracks(ws.tracks), file);
}

TEST_F(SmoothingForm, RecordsIntoAnotherTrackUnderTheTitleShown) {
  EXPECT_TRUE(form->opnYFilter.UserSet("2").ok());
  EXPECT_TRUE(form->cmdCalc.UserClick().ok());
  EXPECT_EQ(form->txtDestTitle.text(), "Smooth_track 0");
  EXPECT_TRUE(form->txtDestTitle.UserSet("without the spike").ok());
  EXPECT_TRUE(form->txtDesNum.UserSet("7").ok());
  EXPECT_TRUE(form->cmdRecordAnotherTrack.UserClick().ok());
  // Its neighbours' mean, 100 uA, and w = 1 uA against its distance from it.
  EXPECT_NEAR(Spike(7), 1e-4 + 1e-6 / (1e-6 + 9e-4) * 9e-4, 1e-12);
  EXPECT_EQ(ws.tracks.Record(7).Title, "without the spike");
  EXPECT_EQ(ws.tracks.Record(7).pnum, 200);
  EXPECT_EQ(form->lblDestHolds.text(), "without the spike");
  EXPECT_EQ(Spike(0), 1e-3);
  EXPECT_TRUE(ws.history.Undo(ws.tracks).ok());
  EXPECT_EQ(FormatTracks(ws.tracks), file);
}

TEST_F(SmoothingForm, WritesNothingElseThanThePreviewShows) {
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"another window", [&] { (void)form->UpDown3.UserStep(+1); }},
      {"the edges", [&] { (void)form->chkSkipatEdge.UserSet("1"); }},
      {"more of the edges", [&] { (void)form->txtSkipNum.UserSet("3"); }},
      {"another track", [&] { (void)form->UpDown1.UserStep(+1); }},
      {"other points", [&] { ws.tracks.SetValue(1, 1, 3, 0.5); }},  // as by an editor
      {"another scale", [&] { ws.tracks.Record(1).DiskYscale = 1; }},
      {"another mode", [&] { ws.tracks.Record(1).Mode = kModeCV; }},
      {"other vertices",
       [&] {
         ws.tracks.Record(1).V = {0, 1, 0};
       }},
  };
  for (const auto& [what, change] : changes) {
    form->Calculate();
    EXPECT_TRUE(form->cmdUpdate.enabled()) << what;
    change();
    form->UpdateData();
    form->RecordAnotherTrack();
    EXPECT_EQ(ws.history.UndoName(), "") << what;
  }
  EXPECT_TRUE(form->txtSkipNum.UserSet("-2").ok());
  EXPECT_EQ(form->txtSkipNum.text(), "0");
  EXPECT_TRUE(form->txtDataNum.UserSet("2").ok());
  form->Calculate();
  EXPECT_THAT(form->lblNote.text(), HasSubstr("Nothing is smoothed"));
  form->UpdateData();
  EXPECT_EQ(ws.history.UndoName(), "");
}

TEST_F(SmoothingForm, ThePreviewDrawsTheSmoothedTrackOverItsOwnAxis) {
  const Size size{600, 400};
  // Columns of pixels that the smoothed curve crosses.
  const auto wide = [&] {
    TestSurface picture(size);
    form->PrevGraph.Paint(picture);
    EXPECT_NE(picture.Find("Time /s"), nullptr);
    int columns = 0;
    for (int x = 0; x < 600; ++x) {
      bool red = false;
      for (int y = 0; y < 400; ++y) red |= picture.At(x, y) == kLightRed;
      columns += red ? 1 : 0;
    }
    return columns;
  };
  EXPECT_EQ(wide(), 0);
  form->Calculate();
  EXPECT_GT(wide(), 300);
  // The channels of a multichannel record share the time of channel 0, in the third column.
  for (int i = 0; i < 200; ++i) {
    ws.tracks.SetValue(2, 0, i, i);
    ws.tracks.SetValue(0, 0, i, 0.001 * i);
  }
  ws.tracks.Record(0).Mode = kModeMulti;
  form->Activate();
  EXPECT_EQ(wide(), 0);
  form->Calculate();
  EXPECT_GT(wide(), 300);
  form->UpdateData();
  EXPECT_EQ(ws.tracks.Value(2, 0, 199), 199);
}

TEST_F(SmoothingForm, TakesTheCoefficientsFromTheHomeOrTheInstalledFile) {
  EXPECT_TRUE(form->opnYFilter.UserSet("1").ok());
  const auto message = [&](const char* folder, const char* file_text) {
    if (folder != nullptr) {
      const auto path = std::filesystem::path(folder) / "Savitzky-Golay.dat";
      EXPECT_TRUE(machine.files.Replace(path, file_text).ok());
    }
    form->Calculate();
    const auto messages = machine.dialogs.TakeMessages();
    return messages.size() == 1 ? messages[0] : std::string();
  };
  EXPECT_THAT(message(nullptr, ""),
              HasSubstr("Savitzky-Golay.dat is in none of these folders: /home, /program"));
  EXPECT_THAT(message("/program", "35,17,12\n\n"), HasSubstr("line 1"));
  EXPECT_TRUE(form->txtPointNum.UserSet("7").ok());
  EXPECT_EQ(message("/program", "35,17,12,-3\n\n"),
            "Savitzky-Golay.dat has no row for a window of 7 points.");
  EXPECT_FALSE(form->cmdUpdate.enabled());
  EXPECT_THAT(message("/home", "broken"), HasSubstr("/home"));
  EXPECT_TRUE(form->txtPointNum.UserSet("5").ok());
  EXPECT_EQ(message("/home", "6,2,1,1\n\n"), "");  // goes before the installed one
  form->UpdateData();
  EXPECT_NEAR(Spike(0), (2e-3 + 2e-4 + 2e-4) / 6, 1e-12);
}

}  // namespace
}  // namespace zento
