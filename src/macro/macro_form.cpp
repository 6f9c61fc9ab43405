#include "macro/macro_form.h"

#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "macro/macro_file.h"
#include "macro/macro_line.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

// Room for a template and its longest lines.
constexpr int kWidth = 640;
constexpr int kHeight = 560;

FileQuestion MacroFileQuestion(bool save, std::string title) {
  FileQuestion question;
  question.save = save;
  question.title = std::move(title);
  question.description = "Macro files";
  question.pattern = "*.zmc";
  return question;
}

// Null when the window was closed while the question stood.
frmMacro* In(Desktop& desktop) {
  return desktop.FindAs<frmMacro>(frmMacro::kName);
}

}  // namespace

frmMacro::frmMacro(Workstation& workstation, Host& host, Instruments& instruments)
    : Form(host, kName, "Macro Editor"),
      workstation_(workstation),
      interpreter_(workstation, host, instruments) {
  OpenMacro.on_click = [this] { AskToOpen(); };
  SaveMacro.on_click = [this] { AskToSave(); };
  for (const MacroTemplate& block : MacroTemplates()) {
    auto& entry = templates.emplace_back(std::make_unique<MenuItem>(
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

void frmMacro::AskToOpen() {
  host().dialogs.AskFile(
      MacroFileQuestion(false, "Open"),
      [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmMacro* form = path ? In(desktop) : nullptr;
        if (form != nullptr) form->OpenFile(*path);
      });
}

// Opening replaces the text; one that stands in no file yet is kept in the home first.
void frmMacro::OpenFile(const std::filesystem::path& path) {
  const auto bytes = host().files.Read(path);
  if (!bytes.ok() || bytes.value().empty()) {
    lblNotice.SetText("NOT OPENED: " +
                      (bytes.ok() ? TextFromPath(path) + " is empty" : bytes.why()));
    return;
  }
  std::string notice = "Opened " + TextFromPath(path);
  if (Unsaved()) {
    const auto rescued = RescueMacro(workstation_, host().files, txtMacro.text());
    if (!rescued.ok()) {
      lblNotice.SetText("NOT OPENED: " + rescued.status().Within("keep the unsaved text").why());
      return;
    }
    notice += " - unsaved before: " + TextFromPath(rescued.value());
  }
  txtMacro.SetText(MacroTextFromFile(bytes.value()));
  txtMacro.Select({0, 0});
  kept_text_ = txtMacro.text();
  file_title_ = TextFromPath(path.filename());
  TextChanged();
  lblNotice.SetText(std::move(notice));
}

void frmMacro::AskToSave() {
  FileQuestion question = MacroFileQuestion(true, "Save");
  question.suggested = file_title_;
  host().dialogs.AskFile(
      question, [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmMacro* form = path ? In(desktop) : nullptr;
        if (form != nullptr) form->ConfirmSave(*path);
      });
}

// The save dialog asks before it overwrites, but knows nothing of an extension that is added to the
// name afterwards.
void frmMacro::ConfirmSave(const std::filesystem::path& path) {
  const std::filesystem::path file = MacroFileName(path);
  if (file == path || !host().files.Exists(file)) {
    SaveFile(path);
    return;
  }
  host().dialogs.Ask(TextFromPath(file.filename()) + " already exists. Do you want to replace it?",
                     Buttons::kYesNo, [&desktop = host().desktop, file](bool yes) {
                       frmMacro* form = yes ? In(desktop) : nullptr;
                       if (form != nullptr) form->SaveFile(file);
                     });
}

void frmMacro::SaveFile(const std::filesystem::path& path) {
  const std::filesystem::path file = MacroFileName(path);
  const Status saved = host().files.Replace(file, MacroFileFromText(txtMacro.text()));
  if (!saved.ok()) {
    lblNotice.SetText("NOT SAVED: " + saved.why());
    return;
  }
  kept_text_ = txtMacro.text();
  file_title_ = TextFromPath(file.filename());
  lblNotice.SetText("Saved " + TextFromPath(file));
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
