// Options of analysis commands on their way into a window that behaves like the real ones.

#include "cli/window_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <nlohmann/json.hpp>

#include "analysis/track_selection.h"
#include "cli/option_values.h"
#include "cli/outcome_json.h"
#include "core/track_store.h"
#include "host/virtual/virtual_host.h"
#include "text/number.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kPoints = 1000;

// Keeps a range, a use and a mode for each track; its end can be stepped to only.
class FormOfTracks : public Form {
 public:
  explicit FormOfTracks(Host& machine) : Form(machine, "frmOfTracks", "") {
    ends_.fill(kPoints - 1);
    selector_.on_change = [this] { ShowTrack(); };
    range_.on_change = [this] { Keep(); };
    chkUse.on_click = [this](int value) { uses[Now()] = value; };
    opnMode.on_select = [this](int index) { modes[Now()] = index; };
    txtArea.on_lost_focus = [this] { txtArea.SetText(PlainNumber(std::abs(Area()))); };
    ShowTrack();
  }
  LayoutNode Layout() override { return {}; }
  double Area() const { return ParseLenient(txtArea.text()); }
  std::pair<int, int> RangeOf(std::size_t track) const { return {starts_[track], ends_[track]}; }

  TextBox txtDataNum{*this, "txtDataNum"}, txtArea{*this, "txtArea"};
  UpDown UpDown1{*this, "UpDown1"};
  CheckBox chkUse{*this, "chkUse", "Use"};
  OptionGroup opnMode{*this, "opnMode", {"none", "value"}};
  std::array<int, kTracks> uses{}, modes{};
  int steps = 0;

 private:
  std::size_t Now() const { return static_cast<std::size_t>(selector_.track()); }
  void ShowTrack() { range_.Show(starts_[Now()], ends_[Now()], kPoints); }
  void Keep() {
    ++steps;
    starts_[Now()] = range_.start();
    ends_[Now()] = range_.end();
  }

  std::array<int, kTracks> starts_{}, ends_{};
  TrackSelector selector_{txtDataNum, UpDown1};
  PointRange range_{*this, TypedEnd::kNotRead};
};

constexpr std::string_view kModes[] = {"none", "value"};
constexpr WindowOption kOptions[] = {
    {"--track", OptionKind::kShownTrack, "txtDataNum", "N", ""},
    {"--tracks", OptionKind::kUsedTracks, "chkUse", "LIST", ""},
    {"--area", OptionKind::kNumber, "txtArea", "CM2", ""},
    {"--points", OptionKind::kPoints, "", "FIRST:LAST", "", {}, {}, true},
    {"--mode", OptionKind::kChoice, "opnMode", "MODE", "", kModes, {}, true},
};
constexpr WindowCommand kCommand = {"of-tracks", "frmOfTracks", "", kOptions};

class WindowOptionsTest : public testing::Test {
 protected:
  WindowOptionsTest() {
    for (int track = 0; track < kTracks; ++track) tracks_.ClearTrack(track);
    for (const int track : {2, 3, 7}) tracks_.Record(track).Mode = kModeCV;
    tracks_.Record(5).Mode = kModePS;
    tracks_.kl.Resize();
    tracks_.kl.KLUseFlag[7] = 1;
  }
  // Options and values in turn.
  Status Enter(const std::vector<std::string>& words) {
    std::vector<GivenOption> given;
    for (std::size_t i = 0; i < words.size(); i += 2) {
      const auto* option = std::ranges::find(kOptions, words[i], &WindowOption::name);
      given.push_back({option, words[i + 1]});
    }
    notes_.clear();
    return EnterOptions(form_, tracks_, kCommand, given, notes_);
  }

  VirtualHost machine_;
  TrackStore tracks_;
  FormOfTracks form_{machine_.host};
  std::vector<std::string> notes_;
};

TEST_F(WindowOptionsTest, ValuesForAllUsedTracksAndForOne) {
  ASSERT_TRUE(
      Enter({"--points", "3=20:990", "--tracks", "2-3", "--points", "10:", "--mode", "2=value"})
          .ok());
  EXPECT_EQ(form_.uses[2] + form_.uses[3], 2);
  EXPECT_EQ(form_.uses[7], 0);
  EXPECT_EQ(form_.RangeOf(2), std::pair(10, kPoints - 1));
  EXPECT_EQ(form_.RangeOf(3), std::pair(20, 990));
  EXPECT_EQ(form_.RangeOf(7), std::pair(0, kPoints - 1)) << "not used";
  EXPECT_THAT(form_.modes, testing::Contains(1).Times(1));
  EXPECT_EQ(form_.modes[2], 1);
  EXPECT_EQ(form_.txtDataNum.text(), "2") << "the first that is used is shown";
  EXPECT_THAT(notes_, IsEmpty());
}

TEST_F(WindowOptionsTest, WithoutAListTheFileSaysWhichTracksAreUsed) {
  ASSERT_TRUE(Enter({"--points", ":500"}).ok());
  EXPECT_EQ(form_.RangeOf(7), std::pair(0, 500));
  EXPECT_EQ(form_.txtDataNum.text(), "2") << "the file's first";
  ASSERT_TRUE(Enter({"--tracks", "all"}).ok());
  EXPECT_EQ(form_.uses[5], 0) << "a step has no potential window";
  EXPECT_EQ(form_.uses[2] + form_.uses[3] + form_.uses[7], 3);
}

TEST_F(WindowOptionsTest, TellsWhatTheWindowsLimitsMadeOfIt) {
  ASSERT_TRUE(
      Enter({"--track", "3", "--area", "-0.3", "--tracks", "3", "--points", "5:4000"}).ok());
  EXPECT_EQ(form_.RangeOf(3), std::pair(5, kPoints - 1));
  EXPECT_THAT(notes_, ElementsAre(HasSubstr("point 4000 became 999"), "--area: -0.3 became 0.3"));
}

TEST_F(WindowOptionsTest, RefusesWhatIsNoValue) {
  const std::vector<std::string> wrong[] = {
      {"--area", "large"},   {"--area", "0.3 cm2"},  {"--track", "21"},   {"--track", "0"},
      {"--tracks", "2,x"},   {"--tracks", "5"},      {"--tracks", "0"},   {"--tracks", "3-2"},
      {"--points", "12"},    {"--points", "-1:5"},   {"--points", "a:b"}, {"--mode", "some"},
      {"--points", "x=1:2"}, {"--points", "21=1:2"},
  };
  for (const auto& words : wrong) {
    EXPECT_FALSE(Enter(words).ok()) << words[0] << " " << words[1];
  }
  EXPECT_THAT(Enter({"--mode", "some"}).why(), HasSubstr("'some' is not one of none value"));
}

TEST(OptionValues, NumberListsAreSortedAndHeldWithinTheirLimit) {
  EXPECT_THAT(*ParseNumberList("7,2-4,3", 20), ElementsAre(2, 3, 4, 7));
  for (const char* wrong : {"", "1,", "1--2", "2-", "21", "0-99999999999", "-1", "1 2"}) {
    EXPECT_FALSE(ParseNumberList(wrong, 20)) << wrong;
  }
}

TEST(OutcomeJson, ReadsBackWhateverIsInIt) {
  AnalysisResult outcome;
  outcome.refusal = "\"1/j\"\n\\ 銀 \xff";
  outcome.quantities = {{"n", "", 0.1 + 0.2, 1e-300}, {"jk", "A/cm2", -4e-5, std::nullopt}};
  outcome.columns = {{"E", "V", {0.1, 0.2}},
                     {"i", "A", {std::numeric_limits<double>::infinity(), 5e-324}}};
  outcome.fit.emplace();
  outcome.fit->points = 2;
  outcome.fit->through_origin = true;
  const auto json = nlohmann::json::parse(OutcomeJson("kl", "a \"b\".znt", outcome));
  EXPECT_EQ(json["command"], "kl");
  EXPECT_EQ(json["file"], "a \"b\".znt");
  EXPECT_EQ(json["refusal"], "\"1/j\"\n\\ 銀 \xef\xbf\xbd");
  EXPECT_EQ(json["quantities"]["n"]["value"].get<double>(), 0.1 + 0.2);
  EXPECT_EQ(json["quantities"]["n"]["error"].get<double>(), 1e-300);
  EXPECT_EQ(json["quantities"]["jk"]["unit"], "A/cm2");
  EXPECT_TRUE(json["quantities"]["jk"]["error"].is_null());
  EXPECT_EQ(json["columns"][1]["name"], "i");
  EXPECT_TRUE(json["rows"][0][1].is_null()) << "an infinity is no number";
  EXPECT_EQ(json["rows"][1][1].get<double>(), 5e-324);
  EXPECT_TRUE(json["fit"]["intercept"].is_null());
  const auto none = nlohmann::json::parse(OutcomeJson("o2", "", {}));
  EXPECT_TRUE(none["refusal"].is_null() && none["fit"].is_null() && none["rows"].empty());
}

}  // namespace
}  // namespace zento
