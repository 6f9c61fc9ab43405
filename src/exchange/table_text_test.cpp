// What tracks are exported as, byte for byte, against approved files. Setting ZENTO_APPROVE in the
// environment writes them anew, to be looked at before they are committed.

#include "exchange/table_text.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "exchange/exporters.h"
#include "exchange/test_tracks.h"
#include "host/native/native_files.h"

namespace zento {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class ExportTest : public ::testing::Test {
 protected:
  std::string Export(const char* format, int track, const ExportOptions& options = {}) {
    auto text = ExportText(*FindExporter(format), {tracks, track, "run 1.znt", options});
    return text.ok() ? text.value() : "refused: " + text.why();
  }
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
  void CheckOptions(const std::string& name, int track, const TableOptions& options) {
    Check(name, DataTableText(tracks, track, options));
  }
  std::string FirstLine(int track) {
    const std::string text = Export("csv", track);
    return text.substr(0, text.find("\r\n"));
  }

  TrackStore tracks = ExchangeTracks();
};

TEST_F(ExportTest, EveryMode) {
  Check("cv", Export("all", 1));
  Check("rde", Export("all", 2));
  Check("ps", Export("all", 3));
  Check("rpm_time", Export("all", 4));
  tracks.Record(4).TimeRecording = 0;
  Check("rpm", Export("all", 4));
  Check("multi_first", Export("all", 0));
  Check("multi", Export("all", 5));
  Check("ssv", Export("all", 6));
  Check("ssvall", Export("all", 7));
  EXPECT_EQ(TrackInfoText(tracks, 8, "run 1.znt"), "No Data");
}

TEST_F(ExportTest, MultichannelTablesInPieces) {
  Check("multi_i_t", Export("i-t", 5));
  Check("multi_v_i", Export("v-i", 5));
  MultiTable table(tracks, 5, "run 1.znt", MultiTableKind::kCurrentTime);
  while (table.Continue(4)) {
  }
  Check("multi_i_t", table.text);
}

TEST_F(ExportTest, Options) {
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

TEST_F(ExportTest, PointsHaveTheColumnsOfTheirModeAndAllDigits) {
  EXPECT_EQ(FirstLine(0), "E/V,I/A,t/s");
  EXPECT_EQ(FirstLine(1), "E/V,I/A");
  EXPECT_EQ(FirstLine(2), "E/V,disk I/A,ring I/A");
  EXPECT_EQ(FirstLine(3), "t/s,I/A");
  EXPECT_EQ(FirstLine(4), "rotation rate/rpm,I/A,t/ms");
  EXPECT_EQ(FirstLine(5), "E/V,I/A,t/s");  // that of track 0
  EXPECT_EQ(FirstLine(6), "E/V,disk I/A,ring I/A");
  EXPECT_EQ(FirstLine(7), "E/V,I/A,t/s");
  tracks.Record(4).TimeRecording = 0;
  EXPECT_EQ(FirstLine(4), "rotation rate/rpm,I/A");
  tracks.Record(1).pnum = 2;
  tracks.SetValue(1, 1, 1, -1.0 / 3);
  const std::string rows = "-0.1\t-1.23456789E-05\n0.15\t-0.3333333333333333\n";
  EXPECT_EQ(Export("points", 1), rows);
  ExportOptions headings;
  headings.headings = true;
  EXPECT_EQ(Export("points", 1, headings), "E/V\tI/A\n" + rows);
}

TEST_F(ExportTest, OnlyWhatATrackHasIsExported) {
  for (const Exporter& exporter : Exporters()) {
    EXPECT_EQ(Export(std::string(exporter.id).c_str(), 11), "refused: track 11 is empty");
    EXPECT_EQ(FindExporter(exporter.id), &exporter) << "an id names one format";
  }
  EXPECT_EQ(FindExporter("none"), nullptr);
  EXPECT_THAT(Export("v-i", 2), HasSubstr("not of the mode"));
  tracks.Record(2).Area = 0;
  ExportOptions options;
  options.table.normalisation = Normalisation::kPerArea;
  EXPECT_THAT(Export("special", 2, options), HasSubstr("no current per area"));
  options.table.normalisation = Normalisation::kPerWeight;
  EXPECT_THAT(Export("special", 2, options), StartsWith("Filename\trun 1.znt\r\n"));
}

TEST_F(ExportTest, SpecialTablesTakeACycleAndThinIt) {
  // Two triangles of eight steps.
  TrackRecord& record = tracks.Record(1);
  record.pnum = 17;
  record.V = {0, 0.4, 0};
  for (std::int32_t i = 0; i < 17; ++i) {
    const int step = i % 8;
    tracks.SetValue(0, 1, i, 0.1 * (step < 4 ? step : 8 - step));
    tracks.SetValue(1, 1, i, i);
  }
  ExportOptions options;
  options.header_block = false;
  options.thinning.order = 3;
  options.cycle = 2;
  const std::string second =
      "Potential/V\tDisk/A\r\n0.0000\t8\r\n0.3000\t11\r\n0.2000\t14\r\n0.0000\t16\r\n";
  EXPECT_EQ(Export("special", 1, options), second);
  options.cycle = 99;  // the last there is
  EXPECT_EQ(Export("special", 1, options), second);
  // A time in the third column stays what it is.
  options = {};
  options.table.ring_unit = 3;
  EXPECT_EQ(Export("special", 7, options), Export("all", 7));
}

}  // namespace
}  // namespace zento
