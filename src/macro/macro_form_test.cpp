#include "macro/macro_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "host/path_text.h"
#include "macro/macro_file.h"
#include "measure/test_rig.h"
#include "text/lines.h"
#include "ui/main/device_forms.h"

namespace zento {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class MacroForm : public testing::Test, public TestRig {
 protected:
  MacroForm() {
    ws.home = "home";
    RegisterDeviceForms(machine.desktop, ws, machine.host, instruments);
    RegisterMacroForms(machine.desktop, ws, machine.host, instruments);
    machine.desktop.Show(frmMacro::kName);
  }
  frmMacro& Window() { return *machine.desktop.FindAs<frmMacro>(frmMacro::kName); }
  void Put(const char* path, std::string_view bytes) {
    ASSERT_TRUE(machine.files.Replace(path, bytes).ok());
  }
  std::string Bytes(const char* path) {
    const auto bytes = machine.files.Read(path);
    return bytes.ok() ? bytes.value() : "no file";
  }
  void Open(const std::string& answer) {
    machine.dialogs.Answer(answer);
    static_cast<void>(Window().OpenMacro.UserClick());
    machine.Settle();
  }
  void Save(const std::string& answer) {
    machine.dialogs.Answer(answer);
    static_cast<void>(Window().SaveMacro.UserClick());
    machine.Settle();
  }
  void Reopen() {
    machine.desktop.RequestClose(frmMacro::kName);
    machine.Settle();
    ASSERT_EQ(machine.desktop.Find(frmMacro::kName), nullptr);
    machine.desktop.Show(frmMacro::kName);
  }
};

TEST_F(MacroForm, ARoundThroughAFileAddsOneEmptyLine) {
  Put("a.zmc", "A\r\nB");
  Open("a.zmc");
  EXPECT_EQ(Window().txtMacro.text(), "A\nB\n");
  Save("a.zmc");
  EXPECT_EQ(Bytes("a.zmc"), "A\r\nB\r\n\r\n");
  Open("a.zmc");
  EXPECT_EQ(Window().txtMacro.text(), "A\nB\n\n");
  static_cast<void>(Window().txtMacro.UserSet("CV.Title \xE6\x97\xA5\xE6\x9C\xAC"));
  Save("b");
  EXPECT_EQ(Bytes("b.zmc"), "CV.Title \xE6\x97\xA5\xE6\x9C\xAC\r\n");
  Put("old.zmc", "CV.Title \x93\xFA\x96\x7B\r\n");
  Open("old.zmc");
  EXPECT_EQ(Window().txtMacro.text(), "CV.Title \xE6\x97\xA5\xE6\x9C\xAC\n") << "code page 932";
}

TEST_F(MacroForm, TheExtensionIsAddedAndNothingReplacedUnasked) {
  static_cast<void>(Window().txtMacro.UserSet("new"));
  Save("x.ZMC");
  EXPECT_EQ(Bytes("x.ZMC.zmc"), "new\r\n");
  Put("y.zmc", "old");
  machine.dialogs.Answer("y");
  Save("no");
  EXPECT_EQ(Bytes("y.zmc"), "old");
  machine.dialogs.Answer("y");
  Save("yes");
  EXPECT_EQ(Bytes("y.zmc"), "new\r\n");
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  static_cast<void>(Window().txtMacro.UserSet("newer"));
  Save("y.zmc");
  EXPECT_THAT(Window().lblNotice.text(), StartsWith("NOT SAVED: "));
  EXPECT_EQ(Bytes("y.zmc"), "new\r\n");
}

TEST_F(MacroForm, WhatCannotBeOpenedLeavesTheText) {
  static_cast<void>(Window().txtMacro.UserSet("mine"));
  Put("empty.zmc", "");
  for (const char* answer : {"cancel", "none.zmc", "empty.zmc"}) {
    Open(answer);
    EXPECT_EQ(Window().txtMacro.text(), "mine") << answer;
  }
  EXPECT_THAT(machine.dialogs.messages, IsEmpty());
  Put("a.zmc", "A");
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  Open("a.zmc");
  EXPECT_EQ(Window().txtMacro.text(), "mine") << "unsaved text could not be kept";
  Open("a.zmc");
  EXPECT_EQ(Window().txtMacro.text(), "A\n");
  EXPECT_EQ(Bytes("home/Rescued macro 1.zmc"), "mine\r\n");
  static_cast<void>(Window().txtMacro.UserSet("mine too"));
  Open("a.zmc");
  EXPECT_EQ(Bytes("home/Rescued macro 1.zmc"), "mine\r\n");
  EXPECT_EQ(Bytes("home/Rescued macro 2.zmc"), "mine too\r\n");
}

TEST_F(MacroForm, UnsavedTextComesBackWithTheNextWindow) {
  const std::string text = "one\n\ntwo\n\n";
  static_cast<void>(Window().txtMacro.UserSet(text));
  Reopen();
  EXPECT_EQ(Window().txtMacro.text(), text);
  Save("kept.zmc");
  Reopen();
  EXPECT_EQ(Window().txtMacro.text(), "");
  static_cast<void>(Window().txtMacro.UserSet("lost?"));
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  machine.desktop.RequestClose(frmMacro::kName);
  machine.Settle();
  EXPECT_THAT(machine.dialogs.messages, ElementsAre(HasSubstr("disk full")));
  EXPECT_FALSE(machine.desktop.Shown(frmMacro::kName));
  machine.desktop.Show(frmMacro::kName);
  EXPECT_EQ(Window().txtMacro.text(), "lost?") << "the window lived on";
}

TEST_F(MacroForm, ATemplateSplitsTheLineAtTheCaret) {
  TextBox& box = Window().txtMacro;
  static_cast<void>(box.UserSet("CV.RPM 4 tail"));
  box.UserSelect({7, 8});
  static_cast<void>(Window().Find("Mail_Acc")->UserClick());
  EXPECT_THAT(box.text(), StartsWith("CV.RPM Mail.DisplayName Displayname\nMail.Address"));
  EXPECT_TRUE(box.text().ends_with("Mail.Send\n tail"));
  EXPECT_EQ(box.selection(), (TextBox::Range{box.text().size() - 5, box.text().size() - 5}));
  EXPECT_EQ(Window().lblLine.text(), " 6line Syntax Error") << "the help follows the caret";
}

TEST_F(MacroForm, RunAndStopByTheButtons) {
  frmMacro& window = Window();
  static_cast<void>(window.txtMacro.UserSet("Motor.On 400\nWait 60000\nMotor.On 900"));
  static_cast<void>(window.cmdRun.UserClick());
  EXPECT_FALSE(window.cmdRun.enabled());
  RunFor(1.2);
  EXPECT_EQ(window.txtMacro.marked_line(), 1);
  EXPECT_EQ(window.lblStatus.text(), " 59000remain");
  static_cast<void>(window.txtMacro.UserInsert("\nx"));
  EXPECT_EQ(window.txtMacro.marked_line(), -1) << "another text now";
  static_cast<void>(window.cmdStop.UserClick());
  EXPECT_TRUE(window.cmdRun.enabled());
  EXPECT_EQ(window.lblNotice.text(), "Stopped at line 2");
  EXPECT_FALSE(MotorOn());
  EXPECT_EQ(ws.running_flag, 0);

  static_cast<void>(window.chkDebugMode.UserClick());
  static_cast<void>(window.cmdRun.UserClick());
  RunFor(0.1);
  EXPECT_EQ(window.lblNotice.text(), "Finished; unknown commands: 1");
  EXPECT_FALSE(MotorOn());
}

TEST_F(MacroForm, TheLogNamesTheFileAndWhetherTheTextIsStillTheFiles) {
  ws.run_log.Attach(machine.host, "home");
  Put("a.zmc", "CV.RPM 1");
  Open("a.zmc");
  const std::pair<const char*, const char*> runs[] = {{"", "a.zmc\r\n"},
                                                      {"' new", "a.zmc (changed)\r\n"}};
  for (const auto& [added, title] : runs) {
    static_cast<void>(Window().txtMacro.UserInsert(added));
    static_cast<void>(Window().cmdRun.UserClick());
    RunFor(0.1);
    ws.run_log.Flush();
    const std::string log = Bytes("home/Run log.txt");
    EXPECT_THAT(log.substr(log.rfind("BEGIN ")), StartsWith(std::string("BEGIN Macro ") + title));
  }
}

TEST_F(MacroForm, ClosingTheWindowStopsTheRun) {
  static_cast<void>(Window().txtMacro.UserSet("Motor.On 400\nWait 60000\nMotor.On 900"));
  static_cast<void>(Window().cmdRun.UserClick());
  RunFor(1.2);
  ASSERT_TRUE(MotorOn());
  // Also when the text cannot be kept and the window only leaves the screen.
  machine.files.FailNext(MemoryFiles::Operation::kReplace, "disk full");
  machine.desktop.RequestClose(frmMacro::kName);
  EXPECT_FALSE(MotorOn());
  EXPECT_EQ(ws.running_flag, 0);
  EXPECT_FALSE(ws.macro_active);
  RunFor(120);
  EXPECT_FALSE(MotorOn());
}

}  // namespace
}  // namespace zento
