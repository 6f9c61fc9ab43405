#include "cli/track_jobs.h"

#include <algorithm>
#include <system_error>

#include "core/track_file.h"
#include "core/track_store.h"
#include "exchange/paste_text.h"
#include "host/desktop.h"
#include "host/native/native_clock.h"
#include "host/path_text.h"
#include "program/home.h"
#include "ui/main/import_form.h"

namespace zento {
namespace {

// Stands for a home that has nothing in it: without a home the settings are the built-in ones,
// whatever the current folder holds.
constexpr char kNoHome[] = "(no home)";

// Before anything is done, so that no work is lost.
Status CheckSave(const SaveRequest& save, const std::filesystem::path& source, Files& files) {
  const std::filesystem::path file = TrackFileName(save.path);
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty() && !files.Exists(folder)) {
    return Status::Failure("there is no folder " + TextFromPath(folder));
  }
  if (!files.Exists(file)) return Status::Ok();
  std::error_code unknown;
  if (std::filesystem::equivalent(file, source, unknown)) {
    return Status::Failure(TextFromPath(file) + " is the file the tracks come from; it is never " +
                           "changed: save to another file");
  }
  if (save.overwrite) return Status::Ok();
  return Status::Failure(TextFromPath(file) +
                         " exists already: save to another file, or --overwrite it");
}

// A window's list of files stands under full paths.
std::filesystem::path Full(const std::filesystem::path& path) {
  std::error_code failed;
  const std::filesystem::path full = std::filesystem::absolute(path, failed);
  return (failed ? path : full).lexically_normal();
}

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

Status CheckLoad(const TrackFileLoad& load, const std::filesystem::path& path,
                 std::vector<std::string>& notes) {
  if (load.outcome == TrackFileLoad::Outcome::kNotRecognized) {
    return Status::Failure(TextFromPath(path) + " is no track file");
  }
  if (!load.complete()) return load.status;
  for (const std::string& remark : load.remarks) {
    notes.push_back(TextFromPath(path) + ": " + remark);
  }
  return Status::Ok();
}

Result<std::unique_ptr<TrackStore>> ReadTrackFile(Files& files, const std::filesystem::path& path,
                                                  std::vector<std::string>& notes) {
  const auto bytes = files.Read(path);
  if (!bytes.ok()) return bytes.status();
  auto tracks = std::make_unique<TrackStore>();
  for (int track = 0; track < kTracks; ++track) tracks->ClearTrack(track);
  const TrackFileLoad load = ReadTracks(bytes.value(), *tracks);
  if (!load.complete()) return load.status.Within(TextFromPath(path));
  for (const std::string& remark : load.remarks) {
    notes.push_back(TextFromPath(path) + ": " + remark);
  }
  return tracks;
}

Status BeginTrackJob(TrackSession& session, const std::filesystem::path& file,
                     const SaveRequest& save, Files& files, std::vector<std::string>& notes) {
  if (Status checked = CheckSave(save, file, files); !checked.ok()) return checked;
  if (Status started = session.Start(); !started.ok()) return started;
  return session.OpenFile(file, notes);
}

Result<JobReport> ImportIntoFile(const ImportRequest& request, Files& files) {
  TrackSession session(files, request.home);
  JobReport report;
  Status begun = BeginTrackJob(session, request.file, request.save, files, report.notes);
  if (!begun.ok()) return begun;
  session.panel().ShowDataInfo(request.track);
  const auto shown = session.Show("frmImportTrack");
  if (!shown.ok()) return shown.status();
  auto& form = dynamic_cast<frmImportTrack&>(*shown.value());
  if (Status chosen = form.ChooseFile(Full(request.from)); !chosen.ok()) return chosen;
  const auto remark = [&] {
    const std::string& text = form.lblNotice.text();
    const bool new_one = std::ranges::find(report.notes, text) == report.notes.end();
    if (!text.empty() && new_one) report.notes.push_back(text);
  };
  remark();
  if (Status row = form.fgcDataSheet.UserClickCell(request.source + 1, 0); !row.ok()) return row;
  remark();
  if (Status clicked = session.Click(form, "cmdImport"); !clicked.ok()) return clicked;
  report.messages = session.TakeMessages();
  if (!report.messages.empty()) return report;
  remark();
  if (Status saved = session.Save(request.save.path); !saved.ok()) return saved;
  return report;
}

Result<JobReport> PasteIntoFile(const PasteRequest& request, Files& files) {
  JobReport report;
  if (Status checked = CheckSave(request.save, request.file, files); !checked.ok()) return checked;
  auto tracks = ReadTrackFile(files, request.file, report.notes);
  if (!tracks.ok()) return tracks.status();
  const Pasted pasted = PasteText(request.text, *tracks.value(), request.track);
  const std::string notice = PasteNotice(pasted, request.track);
  if (!pasted.has_mode || pasted.points == 0) {
    return Status::Failure("the text holds no track: " + notice);
  }
  report.notes.push_back(notice);
  Status saved = files.Replace(TrackFileName(request.save.path), FormatTracks(*tracks.value()));
  if (!saved.ok()) return saved;
  return report;
}

Result<SearchAnswer> SearchFolder(const SearchCriteria& criteria,
                                  const std::filesystem::path& folder, bool subfolders,
                                  Files& files) {
  const std::filesystem::path full = Full(folder);
  if (const auto there = files.ListFolder(full); !there.ok()) return there.status();
  const NativeClock clock;
  TrackSearch search(files, clock, criteria, full, subfolders);
  while (search.Work()) {
  }
  return SearchAnswer{search.hits(), search.Summary()};
}

}  // namespace zento
