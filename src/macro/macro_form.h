#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/controls.h"
#include "host/form.h"
#include "macro/interpreter.h"

namespace zento {

// A block of commands that the editor inserts ready to be filled in.
struct MacroTemplate {
  std::string_view control;  // the menu entry's name
  std::string_view caption;
  std::string_view block;  // every line ends with "\r\n"
};

// In the order of the menu.
std::span<const MacroTemplate> MacroTemplates();

// frmMacro: the editor for macros, with templates and files, and the buttons that run and stop
// them.
//
// Each line is coloured and checked as it is typed; lblLine says what a run would say about the
// line at the caret. While a macro runs, the line it is at is pointed out until the text is
// changed: a run works with the text as it was when it began.
//
// Text that stands in no file is kept in the home when the window closes or a run begins, and comes
// back with the next window. Closing the window stops the run; a measurement that the macro began
// goes on to its own end.
class frmMacro : public Form, private MacroObserver {
 public:
  frmMacro(Workstation& workstation, Host& host, Instruments& instruments);

  MenuItem OpenMacro{*this, "OpenMacro", "File", "Open", "Ctrl+O"};
  MenuItem SaveMacro{*this, "SaveMacro", "File", "Save", "Ctrl+S"};
  std::vector<std::unique_ptr<MenuItem>> templates;
  TextBox txtMacro{*this, "txtMacro"};
  Label lblLine{*this, "lblLine"};
  Button cmdRun{*this, "cmdRun", "Run"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  CheckBox chkDebugMode{*this, "chkDebugMode", "Debug Mode"};
  Label lblStatus{*this, "lblStatus"};  // what is left of a wait
  Label lblNotice{*this, "lblNotice"};  // what became of the last run or file

  bool Load() override;
  void Unload() override;
  void CloseRequested() override;
  LayoutNode Layout() override;

  // What the menu does once a file was chosen. Failures leave text and file as they were and stand
  // in lblNotice.
  void OpenFile(const std::filesystem::path& path);
  void SaveFile(const std::filesystem::path& path);

  // Whether the text stands in no file as it is now.
  bool Unsaved() const;

  static constexpr char kName[] = "frmMacro";

 private:
  void Run();
  void InsertTemplate(std::string_view block);
  void TextChanged();
  void ShowLineHelp();
  Status KeepDraft();
  void AskToOpen();
  void AskToSave();
  void ConfirmSave(const std::filesystem::path& path);

  void Yielded(int line) override;
  void WaitTicked(std::int64_t remaining_millis) override;
  void RunEnded(const MacroOutcome& outcome) override;

  Workstation& workstation_;
  MacroInterpreter interpreter_;
  std::string file_title_;  // of the file last opened or saved
  std::string kept_text_;   // as it stands in that file
  bool run_text_shown_ = false;
};

// Makes the window known to the desktop. All arguments outlive it.
void RegisterMacroForms(Desktop& desktop, Workstation& workstation, Host& host,
                        Instruments& instruments);

}  // namespace zento
