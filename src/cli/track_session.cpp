#include "cli/track_session.h"

#include "cli/track_load.h"
#include "core/track_file.h"
#include "host/desktop.h"
#include "host/path_text.h"
#include "program/home.h"

namespace zento {
namespace {

// Stands for a home that has nothing in it: without a home the settings are the built-in ones,
// whatever the current folder holds.
constexpr char kNoHome[] = "(no home)";

}  // namespace

TrackSession::TrackSession(Files& files, const std::filesystem::path& home)
    : files_(files),
      home_(home),
      program_({.program = {.home = home.empty() ? std::filesystem::path(kNoHome) : home,
                            .data_folders = DataFolders(),
                            .windows = Windows::kMainAndAnalyses},
                .files = &files,
                .dry = true}) {}

Status TrackSession::Start() {
  if (Status started = program_.Start(); !started.ok()) return started;
  panel_ = program_.desktop().FindAs<frmControlPanel>(kMainForm);
  // What a home's settings say of instruments does not matter here.
  static_cast<void>(TakeMessages());
  if (home_.empty() || workstation().SettingsLoaded) return Status::Ok();
  return Status::Failure(TextFromPath(home_) + " holds no settings");
}

Status TrackSession::OpenFile(const std::filesystem::path& path, std::vector<std::string>& notes) {
  const TrackFileLoad load = panel_->OpenFile(path);
  static_cast<void>(TakeMessages());
  return CheckLoad(load, path, notes);
}

Result<Form*> TrackSession::Show(std::string_view form) {
  Form* shown = program_.desktop().Show(form);
  if (shown == nullptr) return Status::Failure(std::string(form) + " did not open");
  return shown;
}

Result<Control*> TrackSession::Usable(Form& form, std::string_view control) {
  Control* found = form.Find(control);
  if (found != nullptr && found->Usable()) return found;
  return Status::Failure(form.name() + "." + std::string(control) +
                         (found == nullptr ? " is not there" : " cannot be used now"));
}

Status TrackSession::Click(Form& form, std::string_view control) {
  const auto found = Usable(form, control);
  if (!found.ok()) return found.status();
  Status clicked = found.value()->UserClick();
  program_.loop().Settle();
  return clicked;
}

Status TrackSession::Set(Form& form, std::string_view control, const std::string& value) {
  const auto found = Usable(form, control);
  if (!found.ok()) return found.status();
  Status set = found.value()->UserSet(value);
  program_.loop().Settle();
  return set;
}

std::vector<std::string> TrackSession::TakeMessages() {
  return program_.TakeMessages();
}

Status TrackSession::Save(const std::filesystem::path& path) {
  return SaveTracksAs(workstation(), files_, path);
}

}  // namespace zento
