#include "core/track_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <string>

#include "core/tables.h"
#include "core/track_store.h"
#include "text/number.h"

namespace zento {
namespace {

std::uint64_t Bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// Reads "x TAB y" as a table of one point and holds it against the strict rule for each number, to
// the last bit. Rows at the end of a text are read another way, so `behind` matters.
void ExpectReadAsNumbers(const std::string& x, const std::string& y, const std::string& end,
                         std::string_view behind) {
  TrackStore tracks;
  const std::string table = std::string(x).append("\t").append(y).append(end).append(behind);
  std::string_view rest = table;
  const TableRead read = ReadTable(rest, tracks, 0, 1, 2);
  const std::optional<double> first = ParseStrict(x);
  const std::optional<double> second = ParseStrict(y);
  ASSERT_EQ(read.status.ok(), first && second) << table;
  if (!read.status.ok()) return;
  EXPECT_EQ(rest, behind) << table;
  EXPECT_EQ(Bits(tracks.Value(0, 0, 0)), Bits(*first)) << table;
  EXPECT_EQ(Bits(tracks.Value(1, 0, 0)), Bits(*second)) << table;
}

void ExpectReadAsNumbers(const std::string& x, const std::string& y, const std::string& end) {
  ExpectReadAsNumbers(x, y, end, "");
  if (!end.empty()) ExpectReadAsNumbers(x, y, end, "-0.1000\t1.0e-5\r\n");
}

TEST(TrackTable, EveryFormOfNumberIsReadToTheLastBit) {
  const std::string forms =
      "0.0000|-0.0000|-0.0|0.1|1.|.5|-.5|+1.5|5|-5|00.10|1.5e3|1.5e+3|1.5e-3|1.5E-3|"
      "1.5e|1.5e+|1.5e-x|1.5e-300|1.5e-330|1.5e+400|1.5e022|1.5e+22|1.5e+23|1.5e-007|"
      "1.5e-22|1.5e-23|1e5||-|.|-.|1..5|1.5.5|1-5| 1.5|1.5 |1.5x|1,5|--1.5|inf|nan|"
      "0x1.8p3|1.2345678901234567890123e-5|123456789012345678901234567890.5|"
      "9007199254740993.0|900719925474099.3|0.000000000000000000000000000000001";
  for (std::size_t at = 0, end = 0; at <= forms.size(); at = end + 1) {
    end = std::min(forms.find('|', at), forms.size());
    const std::string form = forms.substr(at, end - at);
    for (const std::string& line_end : {std::string("\r\n"), std::string("\n"), std::string()}) {
      ExpectReadAsNumbers(form, "1.2346e-5", line_end);
      ExpectReadAsNumbers("0.0027", form, line_end);
    }
  }
}

TEST(TrackTable, RandomNumbersAreReadToTheLastBit) {
  std::mt19937 random(1);
  const std::string alphabet = "0123456789012345678901234567890123456789..--e+E ";
  for (int i = 0; i < 20000; ++i) {
    std::string form;
    for (auto length = random() % 12; form.size() < length;) {
      form += alphabet[random() % alphabet.size()];
    }
    ExpectReadAsNumbers(form, "0.5", "\n");
    ExpectReadAsNumbers("1.0e+0", form, "\r\n");
  }
}

TEST(TrackTable, TakesTheLinesItIsAskedForAndLeavesTheRest) {
  TrackStore tracks;
  std::string_view rest = "0.1000\t1.0e-5\r\n0.2000\t2.0e-5\r\nDataNum= 3\r\n";
  EXPECT_EQ(ReadTable(rest, tracks, 0, 2, 2).points, 2);
  EXPECT_EQ(rest, "DataNum= 3\r\n");
  EXPECT_EQ(tracks.Value(1, 0, 1), 2e-5);
  EXPECT_EQ(ReadTable(rest, tracks, 0, 0, 2).points, 0);
  const TableRead none = ReadTable(rest, tracks, 0, 5, 2);
  EXPECT_FALSE(none.status.ok());
  EXPECT_EQ(none.points, 0);
  EXPECT_EQ(rest, "DataNum= 3\r\n");
}

TEST(TrackTable, WritesAnyDouble) {
  TrackStore tracks;
  tracks.Record(0).pnum = 4;
  tracks.Column(0, 0) = {1e300, -0.00004, 2.00006};
  tracks.Column(1, 0) = {-1e-300, 1e-5, 9.99996e9};
  std::string out;
  AppendTable(out, tracks, 0, 3);
  const std::string huge = out.substr(0, out.find('\t'));
  EXPECT_EQ(ParseStrict(huge), 1e300);
  EXPECT_EQ(out.substr(out.find('\t')),
            "\t-1.0e-300\t0.0e+0\r\n0.0000\t1.0e-5\t0.0e+0\r\n2.0001\t1.0e+10\t0.0e+0\r\n"
            "0.0000\t0.0e+0\t0.0e+0\r\n");
}

}  // namespace
}  // namespace zento
