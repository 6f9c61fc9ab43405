#include "cli/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cli/script_words.h"
#include "host/controls.h"
#include "host/desktop.h"
#include "host/virtual/memory_services.h"
#include "host/virtual/virtual_time.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A window with one control of each kind a script can act on, and a run of two seconds.
class Probe : public Form {
 public:
  Probe(Host& host, Workstation& workstation) : Form(host, "frmProbe", "Probe window") {
    txtName.on_change = [this] { lblLog.SetText(lblLog.text() + "c"); };
    txtName.on_lost_focus = [this] { lblLog.SetText(lblLog.text() + "l"); };
    txtKeys.on_key = [this](Key key) {
      lblLog.SetText(lblLog.text() + (key.code == KeyCode::kEnter ? "E" : "?"));
    };
    cmdAsk.on_click = [this] {
      this->host().dialogs.Ask("Really?", Buttons::kYesNo, [this](bool yes) {
        this->host().dialogs.Message(yes ? "You said\nyes" : "You said no");
      });
    };
    cmdRun.on_click = [this, &workstation] {
      workstation.running_flag = -1;
      ProbeTimer.SetInterval(2000);
      ProbeTimer.SetEnabled(true);
    };
    cmdStick.on_click = [&workstation] { workstation.running_flag = -1; };
    cmdOK.on_click = [this] { lblLog.SetText(lblLog.text() + "D"); };
    cmdOK.is_default = true;
    ProbeTimer.on_tick = [this, &workstation] {
      workstation.running_flag = 0;
      ProbeTimer.SetEnabled(false);
    };
    updName.on_up = [this] { lblLog.SetText(lblLog.text() + "+"); };
    updName.on_down = [this] { lblLog.SetText(lblLog.text() + "-"); };
    grdCells.SetCell(0, 0, "a");
    grdCells.SetCell(0, 1, "b");
    grdCells.SetCell(1, 1, "d");
    grdCells.on_click = [this](int row, int column) {
      lblLog.SetText(std::to_string(row) + "," + std::to_string(column));
    };
    cmdOff.SetEnabled(false);
  }
  LayoutNode Layout() override { return layout::Field("Name", txtName, &updName); }

  TextBox txtName{*this, "txtName"};
  TextBox txtKeys{*this, "txtKeys"};
  ControlArray<TextBox, 3> txtVolt{*this, "txtVolt", {"0", "1", "2"}};
  UpDown updName{*this, "updName"};
  OptionGroup opnMode{*this, "opnMode", {"one", "two"}};
  Grid grdCells{*this, "grdCells", 2, 2};
  Button cmdAsk{*this, "cmdAsk", "Ask"};
  Button cmdRun{*this, "cmdRun", "Run"};
  Button cmdStick{*this, "cmdStick", "Stick"};
  Button cmdOff{*this, "cmdOff", "Off"};
  Button cmdOK{*this, "cmdOK", "OK"};
  Label lblLog{*this, "lblLog"};
  Timer ProbeTimer{*this, "ProbeTimer"};
};

class ScriptTest : public testing::Test {
 protected:
  ScriptTest() {
    program_.desktop().Register("frmProbe", [this] {
      return std::make_unique<Probe>(program_.host(), program_.workstation());
    });
  }

  ScriptEnd Run(const std::string& text) {
    ScriptDriver driver(program_,
                        {[this](std::string_view line) { printed_.emplace_back(line); },
                         [this](std::string_view line) { notes_.emplace_back(line); }},
                        [this] { return interrupted_; });
    return driver.Run(text);
  }
  // What the script prints, which must be carried out to its end.
  std::vector<std::string> Printed(const std::string& text) {
    printed_.clear();
    EXPECT_EQ(Run("open frmProbe\n" + text), ScriptEnd::kCompleted)
        << (notes_.empty() ? "" : notes_.back());
    return printed_;
  }

  bool interrupted_ = false;
  std::vector<std::string> printed_;
  std::vector<std::string> notes_;
  MemoryFiles files_;
  HeadlessProgram program_{{.program = {.windows = Windows::kAnalyses}, .files = &files_}};
};

TEST_F(ScriptTest, SetsTypesAndReads) {
  EXPECT_THAT(Printed("# a comment\r\n"
                      "\r\n"
                      "set frmProbe.txtName  two  blanks \r\n"
                      "get frmProbe.txtName\r\n"
                      "type frmProbe.txtName 日本\r\n"
                      "get frmProbe.txtName\r\n"
                      "get frmProbe.lblLog\r\n"),
              ElementsAre(" two  blanks ", "日本", "clc"));
  EXPECT_THAT(Printed("set frmProbe.txtVolt(2) 7\nget frmProbe.txtVolt(2)\n"
                      "set frmProbe.opnMode 1\nget frmProbe.opnMode\nget frmProbe"),
              ElementsAre("7", "1", "Probe window"));
}

TEST_F(ScriptTest, ClicksCellsAndPrintsGrids) {
  EXPECT_THAT(Printed("click frmProbe.grdCells 1 0\nget frmProbe.lblLog\nget frmProbe.grdCells"),
              ElementsAre("1,0", "a\tb", "\td"));
}

TEST_F(ScriptTest, PressesKeysAsAWindowDoes) {
  EXPECT_THAT(Printed("type frmProbe.txtName aä\nkey frmProbe.txtName Backspace\n"
                      "key frmProbe.txtName µ\nget frmProbe.txtName\n"),
              ElementsAre("aµ"));
  EXPECT_THAT(Printed("close frmProbe\nopen frmProbe\n"
                      "key frmProbe.txtKeys Enter\n"  // its own handler keeps it
                      "key frmProbe.txtName Enter\n"  // leaves, then the default button
                      "key frmProbe.txtName Up\nkey frmProbe.txtName Down\nup frmProbe.updName\n"
                      "get frmProbe.lblLog"),
              ElementsAre("ElD+-+"));
}

TEST_F(ScriptTest, AnswersQuestionsAndTellsOfThoseItHadNoAnswerFor) {
  EXPECT_THAT(Printed("answer yes\nclick frmProbe.cmdAsk\nclick frmProbe.cmdAsk\nmessages"),
              ElementsAre("You said yes", "You said no"));
  EXPECT_THAT(notes_,
              ElementsAre("line 4: no answer was queued for 'Really?'; taken as cancelled"));
  EXPECT_THAT(Printed("messages"), ElementsAre());
}

TEST_F(ScriptTest, AClickOnADisabledControlIsOnlyNoted) {
  Printed("click frmProbe.cmdOff");
  EXPECT_THAT(notes_, ElementsAre("line 2: frmProbe.cmdOff is disabled"));
}

TEST_F(ScriptTest, WaitsForRunsAndForTime) {
  const std::int64_t began = program_.host().clock.Micros();
  Printed("click frmProbe.cmdRun\nwait idle");
  EXPECT_EQ(program_.host().clock.Micros() - began, 2'000'000);
  Printed("wait 2.5s\nwait 250ms");
  EXPECT_EQ(program_.host().clock.Micros() - began, 4'750'000);
}

TEST_F(ScriptTest, AWaitThatCannotEndFails) {
  EXPECT_EQ(Run("open frmProbe\nclick frmProbe.cmdStick\nwait idle"), ScriptEnd::kFailed);
  EXPECT_THAT(notes_.back(), HasSubstr("line 3: a run is active, but no timer is left"));
  TimerQueue::PeriodicTimer monitor(program_.host().timers, [] {});
  monitor.SetInterval(60'000);
  monitor.SetEnabled(true);
  EXPECT_EQ(Run("wait idle 8h"), ScriptEnd::kFailed);
  EXPECT_THAT(notes_.back(), HasSubstr("line 1: the run did not end within"));
}

TEST_F(ScriptTest, StopsAtTheFirstLineThatCannotBeCarriedOut) {
  const std::pair<const char*, const char*> kBad[] = {
      {"jump frmProbe", "no verb 'jump'"},
      {"open frmNone", "no form 'frmNone'"},
      {"close frmNone", "no form 'frmNone' is open"},
      {"get frmProbe.txtNone", "no control 'frmProbe.txtNone'"},
      {"get frmProbe.txtVolt(3)", "no control 'frmProbe.txtVolt(3)'"},
      {"get frmNone.txtName", "no form 'frmNone'"},
      {"get txtName", "'txtName' is not FORM.CONTROL"},
      {"set frmProbe.opnMode 2", "opnMode has no entry 2"},
      {"set frmProbe.cmdRun x", "cannot be set"},
      {"click frmProbe.grdCells 9 9", "no cell 9 9"},
      {"click frmProbe.grdCells 1", "ROW COLUMN"},
      {"key frmProbe.txtName Rubbish", "no key 'Rubbish'"},
      {"wait", "wait takes"},
      {"wait -1s", "wait takes"},
      {"wait idle soon", "'soon' is no time"},
      {"plot frmProbe.txtName a.svg", "no picture"},
      {"clipboard set none.txt", "none.txt"},
  };
  for (const auto& [line, why] : kBad) {
    notes_.clear();
    printed_.clear();
    EXPECT_EQ(Run("open frmProbe\n\n" + std::string(line) + "\nget frmProbe"), ScriptEnd::kFailed)
        << line;
    ASSERT_EQ(notes_.size(), 1U) << line;
    EXPECT_THAT(notes_[0], HasSubstr("line 3: "));
    EXPECT_THAT(notes_[0], HasSubstr(why));
    EXPECT_TRUE(printed_.empty()) << "nothing behind the line is carried out";
  }
}

TEST_F(ScriptTest, FillsAndPrintsTheClipboard) {
  ASSERT_TRUE(files_.Replace("table.txt", "1\t2\r\n3\t4").ok());
  EXPECT_THAT(Printed("clipboard set table.txt\nclipboard"), ElementsAre("1\t2", "3\t4"));
}

TEST_F(ScriptTest, EndsWhenTheProgramIsAskedTo) {
  interrupted_ = true;
  EXPECT_EQ(Run("open frmProbe"), ScriptEnd::kInterrupted);
  interrupted_ = false;
  int asked = 0;
  dynamic_cast<VirtualLoop&>(program_.loop()).interrupted = [&] { return ++asked > 3; };
  TimerQueue::PeriodicTimer monitor(program_.host().timers, [] {});
  monitor.SetEnabled(true);
  EXPECT_EQ(Run("wait 1h\nget frmNone"), ScriptEnd::kInterrupted);
}

TEST(ScriptWords, ReadsDurationsAndAddresses) {
  EXPECT_EQ(ParseDuration("2.5s"), 2'500'000);
  EXPECT_EQ(ParseDuration("2.5"), 2'500'000);
  EXPECT_EQ(ParseDuration("1.5ms"), 1'500);
  EXPECT_EQ(ParseDuration("2min"), 120'000'000);
  EXPECT_EQ(ParseDuration("1h"), 3'600'000'000);
  for (const char* bad : {"", "s", "-1s", "1 parsec", "1e300s", "nan"}) {
    EXPECT_EQ(ParseDuration(bad), std::nullopt) << bad;
  }
  for (const char* bad : {"", "frm", "frm.", ".txt", "frm.txt)", "frm.txt(-1)", "frm.txt(x)"}) {
    EXPECT_FALSE(ParseControlAddress(bad)) << bad;
  }
}

}  // namespace
}  // namespace zento
