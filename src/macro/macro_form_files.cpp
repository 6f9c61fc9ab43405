// The macro editor's files.

#include "host/host.h"
#include "host/path_text.h"
#include "macro/macro_file.h"
#include "macro/macro_form.h"

namespace zento {
namespace {

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

}  // namespace zento
