// The main window's track files.

#include "core/track_file.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/status.h"
#include "ui/main/control_panel.h"

namespace zento {
namespace {

FileQuestion TrackFileQuestion(bool save, std::string title, std::filesystem::path folder) {
  FileQuestion question;
  question.save = save;
  question.title = std::move(title);
  question.folder = std::move(folder);
  question.description = "Track files";
  question.pattern = "*.znt";
  return question;
}

std::string Notice(const TrackFileLoad& load, const std::filesystem::path& path) {
  using Outcome = TrackFileLoad::Outcome;
  if (load.outcome == Outcome::kUnreadable) return "NOT OPENED: " + load.status.why();
  if (load.outcome == Outcome::kBrokenOff) return "ONLY PARTLY READ: " + load.status.why();
  std::string notice = "Opened " + TextFromPath(path);
  if (!load.remarks.empty()) notice += " - " + load.remarks.front();
  if (load.remarks.size() > 1) notice += " (and more)";
  return notice;
}

}  // namespace

void frmControlPanel::AskToOpen() {
  host().dialogs.AskFile(
      TrackFileQuestion(false, "Open", recent_.Folder()),
      [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmControlPanel* panel = path ? In(desktop) : nullptr;
        if (panel != nullptr) panel->OpenFile(*path);
      });
}

// Opening replaces all tracks; those that stand in no file yet are kept in the home first.
TrackFileLoad frmControlPanel::OpenFile(const std::filesystem::path& path) {
  const auto rescued = RescueTracks(workstation_, host().files);
  if (!rescued.ok()) {
    TrackFileLoad refused;
    refused.outcome = TrackFileLoad::Outcome::kUnreadable;
    refused.status = rescued.status().Within("keep the unsaved tracks");
    lblNotice.SetText(Notice(refused, path));
    return refused;
  }
  TrackFileLoad load = OpenTracks(workstation_, host().files, path);
  if (load.outcome == TrackFileLoad::Outcome::kNotRecognized) {
    host().dialogs.Message("This file type is not recognized.");
    return load;
  }
  std::string notice = Notice(load, path);
  if (rescued.value()) notice += " - unsaved before: " + TextFromPath(*rescued.value());
  const bool running = workstation_.running_flag != 0 || workstation_.macro_active;
  if (running && load.outcome != TrackFileLoad::Outcome::kUnreadable) {
    notice += " - what runs now will be stored among these tracks";
  }
  lblNotice.SetText(std::move(notice));
  if (!load.complete()) return load;
  ShowCaption();
  ShowDataInfo(0);
  Remember(path);
  return load;
}

void frmControlPanel::AskToSave() {
  FileQuestion question = TrackFileQuestion(true, "Save as", recent_.Folder());
  question.suggested = workstation_.FileTitle;
  host().dialogs.AskFile(
      question, [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmControlPanel* panel = path ? In(desktop) : nullptr;
        if (panel != nullptr) panel->ConfirmSave(*path);
      });
}

// The save dialog asks before it overwrites, but knows nothing of an extension that is added to the
// name afterwards.
void frmControlPanel::ConfirmSave(const std::filesystem::path& path) {
  const std::filesystem::path file = TrackFileName(path);
  if (file == path || !host().files.Exists(file)) {
    static_cast<void>(SaveFile(path));
    return;
  }
  host().dialogs.Ask(TextFromPath(file.filename()) + " already exists. Do you want to replace it?",
                     Buttons::kYesNo, [&desktop = host().desktop, file](bool yes) {
                       frmControlPanel* panel = yes ? In(desktop) : nullptr;
                       if (panel != nullptr) static_cast<void>(panel->SaveFile(file));
                     });
}

Status frmControlPanel::SaveFile(const std::filesystem::path& path) {
  Status saved = SaveTracksAs(workstation_, host().files, path);
  lblNotice.SetText(saved.ok() ? "Saved " + TextFromPath(TrackFileName(path))
                               : "NOT SAVED: " + saved.why());
  if (!saved.ok()) return saved;
  ShowCaption();
  Remember(TrackFileName(path));
  return saved;
}

}  // namespace zento
