// The clipboard texts byte for byte, against approved files. Setting ZENTO_APPROVE in the
// environment writes them anew, to be looked at before they are committed.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/native/native_files.h"
#include "text/status.h"
#include "ui/main/exchange_test_tracks.h"
#include "ui/main/multi_table_text.h"
#include "ui/main/table_text.h"
#include "ui/main/track_text.h"

namespace zento {
namespace {

class ExchangeGolden : public ::testing::Test {
 protected:
  void Check(const std::string& name, const std::string& text) {
    NativeFiles files;
    const auto path = std::filesystem::path(ZENTO_GOLDEN) / ("clipboard_" + name + ".txt");
    if (std::getenv("ZENTO_APPROVE") != nullptr) {
      ASSERT_TRUE(files.Replace(path, text).ok());
    }
    const auto approved = files.Read(path);
    ASSERT_TRUE(approved.ok()) << approved.why();
    EXPECT_EQ(text, approved.value()) << name;
  }
  std::string All(int track) {
    return TrackInfoText(tracks, track, "run 1.znt") + "\r\n" + DataTableText(tracks, track);
  }
  void CheckOptions(const std::string& name, int track, const TableOptions& options) {
    Check(name, DataTableText(tracks, track, options));
  }
  std::string Multi(MultiTableKind kind) {
    MultiTable table(tracks, 5, "run 1.znt", kind);
    while (table.Continue(4)) {
    }
    return table.text;
  }

  TrackStore tracks = ExchangeTracks();
};

TEST_F(ExchangeGolden, EveryMode) {
  Check("cv", All(1));
  Check("rde", All(2));
  Check("ps", All(3));
  Check("rpm_time", All(4));
  tracks.Record(4).TimeRecording = 0;
  Check("rpm", All(4));
  Check("multi_first", All(0));
  Check("multi", All(5));
  Check("ssv", All(6));
  Check("ssvall", All(7));
  EXPECT_EQ(TrackInfoText(tracks, 8, "run 1.znt"), "No Data");
}

TEST_F(ExchangeGolden, MultichannelTables) {
  Check("multi_i_t", Multi(MultiTableKind::kCurrentTime));
  Check("multi_v_i", Multi(MultiTableKind::kPotentialCurrent));
}

TEST_F(ExchangeGolden, Options) {
  TableOptions options;
  options.disk_unit = 2;
  options.ring_unit = 3;
  options.normalisation = Normalisation::kPerArea;
  options.water_fraction = true;
  options.collection_efficiency = 0.39;
  CheckOptions("rde_units_area_water", 2, options);

  options.logarithm = true;
  options.normalisation = Normalisation::kPerWeight;
  CheckOptions("rde_log_weight_water", 2, options);
  CheckOptions("cv_log_weight", 1, options);

  TableOptions signs;
  signs.absolute = true;
  CheckOptions("rde_absolute", 2, signs);
  EXPECT_EQ(DataTableText(tracks, 1, signs), DataTableText(tracks, 1));  // no middle column
  signs.absolute_last = true;
  signs.disk_unit = 4;
  CheckOptions("cv_absolute_nA", 1, signs);

  TableOptions some;
  some.logarithm = true;
  some.filter = PointFilter::kPositive;
  CheckOptions("cv_log_positive", 1, some);
  some.filter = PointFilter::kNegative;
  some.points = {0, 2, 3, 17};
  CheckOptions("cv_log_negative_some", 1, some);
}

}  // namespace
}  // namespace zento
