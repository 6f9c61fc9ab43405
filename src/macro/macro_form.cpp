#include "macro/macro_form.h"

#include "host/host.h"
#include "macro/macro_file.h"
#include "macro/macro_look.h"
#include "macro/templates.h"
#include "text/number.h"

namespace zento {
namespace {

// Room for a template and its longest lines.
constexpr int kWidth = 640;
constexpr int kHeight = 560;

}  // namespace

frmMacro::frmMacro(Workstation& workstation, Host& host, Instruments& instruments)
    : Form(host, kName, "Macro Editor"),
      workstation_(workstation),
      interpreter_(workstation, host, instruments) {
  OpenMacro.on_click = [this] { AskToOpen(); };
  SaveMacro.on_click = [this] { AskToSave(); };
  for (const MacroTemplate& block : MacroTemplates()) {
    auto& entry = templates.emplace_back(std::make_unique<MenuEntry>(
        *this, std::string(block.control), "Template", std::string(block.caption)));
    entry->on_click = [this, &block] { InsertTemplate(block.block); };
  }
  txtMacro.multiline = true;
  txtMacro.look = LookOfMacroLine;
  txtMacro.on_change = [this] { TextChanged(); };
  txtMacro.on_select = [this] { ShowLineHelp(); };
  cmdRun.on_click = [this] { Run(); };
  cmdStop.on_click = [this] { interpreter_.Stop(); };
  chkDebugMode.on_click = [this](int value) {
    interpreter_.SetDebugMode(static_cast<std::int16_t>(value));
  };
  interpreter_.observer = this;
  RequestGeometry({false, 0, 0, kWidth, kHeight});
}

bool frmMacro::Load() {
  const auto draft = ReadMacroDraft(workstation_, host().files);
  if (!draft.ok()) {
    lblNotice.SetText("The text left unsaved could not be read: " + draft.why());
  } else if (!draft.value().empty()) {
    txtMacro.SetText(draft.value());
    lblNotice.SetText("This text was left unsaved");
  }
  ShowLineHelp();
  return true;
}

void frmMacro::CloseRequested() {
  interpreter_.Stop();
  const Status kept = KeepDraft();
  if (kept.ok()) {
    Form::CloseRequested();
    return;
  }
  // The text lives on in the window, which can be shown again.
  host().dialogs.Message("The macro could not be kept, save it elsewhere.\n" + kept.why());
  host().desktop.Hide(name());
}

void frmMacro::Unload() {
  interpreter_.Stop();
  static_cast<void>(KeepDraft());
}

bool frmMacro::Unsaved() const {
  const std::string& text = txtMacro.text();
  return text != kept_text_ && text.find_first_not_of(" \n") != text.npos;
}

Status frmMacro::KeepDraft() {
  return KeepMacroDraft(workstation_, host().files, Unsaved() ? txtMacro.text() : "");
}

void frmMacro::Run() {
  // A night may end with a power cut.
  static_cast<void>(KeepDraft());
  run_text_shown_ = true;
  lblNotice.SetText({});
  const bool changed = !file_title_.empty() && Unsaved();
  if (interpreter_.Start(txtMacro.text(), file_title_ + (changed ? " (changed)" : "")))
    cmdRun.SetEnabled(false);
}

void frmMacro::InsertTemplate(std::string_view block) {
  txtMacro.ReplaceSelection(block);
  TextChanged();
  Focus(txtMacro);
}

// The run's line numbers are those of another text from here on.
void frmMacro::TextChanged() {
  run_text_shown_ = false;
  txtMacro.MarkLine(-1);
  ShowLineHelp();
}

void frmMacro::ShowLineHelp() {
  lblLine.SetText(HelpForMacroLine(txtMacro.CaretLineText(), txtMacro.CaretLine() + 1));
}

void frmMacro::Yielded(int line) {
  if (run_text_shown_) txtMacro.MarkLine(line - 1);
  lblNotice.SetText("Line" + SignedNumber(line) + " is running");
}

void frmMacro::WaitTicked(std::int64_t remaining_millis) {
  lblStatus.SetText(SignedNumber(remaining_millis) + "remain");
}

void frmMacro::RunEnded(const MacroOutcome& outcome) {
  txtMacro.MarkLine(-1);
  cmdRun.SetEnabled(true);
  lblNotice.SetText(MacroOutcomeText(outcome));
}

LayoutNode frmMacro::Layout() {
  using namespace layout;
  return Rows(
      {
          Item(txtMacro, 1),
          Item(lblLine),
          Columns({Item(cmdRun), Item(cmdStop), Item(chkDebugMode), Item(lblStatus, 1)}),
          Item(lblNotice),
      },
      1);
}

void RegisterMacroForms(Desktop& desktop, Workstation& workstation, Host& host,
                        Instruments& instruments) {
  desktop.Register(frmMacro::kName, [&workstation, &host, &instruments] {
    return std::make_unique<frmMacro>(workstation, host, instruments);
  });
}

}  // namespace zento
