#include "ui/main/file_lists.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "core/settings.h"
#include "core/track_history.h"
#include "exchange/track_search.h"
#include "graph/track_preview.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {
namespace {

using Path = std::filesystem::path;

std::vector<std::string> Texts(const std::vector<Path>& paths) {
  std::vector<std::string> texts;
  texts.reserve(paths.size());
  for (const Path& path : paths) texts.push_back(TextFromPath(path));
  return texts;
}

int IndexOf(const std::vector<Path>& paths, const Path& path) {
  const auto found = std::find(paths.begin(), paths.end(), path);
  return found == paths.end() ? -1 : static_cast<int>(found - paths.begin());
}

// "a/b/../c/" is "a/c".
Path Tidy(const Path& folder) {
  const Path tidy = folder.lexically_normal();
  return tidy.has_filename() || !tidy.has_relative_path() ? tidy : tidy.parent_path();
}

bool Holds(const Path& drive, const Path& folder) {
  return std::mismatch(drive.begin(), drive.end(), folder.begin(), folder.end()).first ==
         drive.end();
}

}  // namespace

FileLists::FileLists(Form& form, LastFolder last, Path start)
    : Drive1(form, "Drive1"),
      txtFolder(form, "txtFolder"),
      Dir1(form, "Dir1"),
      File1(form, "File1"),
      form_(form),
      last_(std::move(last)),
      start_(std::move(start)) {
  Drive1.on_select = [this](int index) { OpenDrive(index); };
  txtFolder.on_commit = [this] { OpenTyped(); };
  Dir1.on_open = [this](int index) { OpenFolder(index); };
  File1.on_select = [this](int) {
    if (on_file) on_file();
  };
  txtFolder.SetTip("The folder that is shown; Enter goes to the one that is typed");
  Dir1.SetTip("Double click, or Enter, goes into the folder; .. goes up");
}

void FileLists::Begin() {
  drives_ = form_.host().files.Drives();
  Drive1.SetItems(Texts(drives_));
  if (!last_->empty() && ShowFolder(*last_).ok()) return;
  if (ShowFolder(start_).ok()) return;
  for (auto drive = drives_.rbegin(); drive != drives_.rend(); ++drive) {
    if (ShowFolder(*drive).ok()) return;
  }
}

Status FileLists::ShowFolder(const Path& folder) {
  Path tidy = Tidy(folder);
  auto listed = ReadTrackFolder(form_.host().files, tidy);
  if (!listed.ok()) return listed.status();
  *last_ = std::move(tidy);
  txtFolder.SetText(TextFromPath(*last_));
  folders_ = std::move(listed->folders);
  const bool has_parent = last_->has_relative_path() && last_->has_parent_path();
  if (has_parent) folders_.insert(folders_.begin(), "..");
  Dir1.SetItems(Texts(folders_));
  Dir1.Select(-1);
  files_ = std::move(listed->files);
  File1.SetItems(Texts(files_));
  File1.Select(-1);
  ShowDrive();
  if (on_folder) on_folder();
  return Status::Ok();
}

Status FileLists::ChooseFile(const Path& file) {
  const Path folder = file.has_parent_path() ? file.parent_path() : *last_;
  if (Status shown = ShowFolder(folder); !shown.ok()) return shown;
  const int index = IndexOf(files_, file.filename());
  if (index < 0) {
    return Status::Failure("no track file of that name is there").Within(TextFromPath(file));
  }
  return File1.UserChoose(index);
}

void FileLists::Refresh() {
  auto listed = ReadTrackFolder(form_.host().files, *last_);
  if (!listed.ok() || listed->files == files_) return;
  const Path chosen = file().filename();
  files_ = std::move(listed->files);
  File1.SetItems(Texts(files_));
  File1.Select(IndexOf(files_, chosen));
}

Path FileLists::file() const {
  const int chosen = File1.selected();
  return chosen < 0 ? Path() : *last_ / files_[static_cast<std::size_t>(chosen)];
}

LayoutNode FileLists::Layout() {
  using namespace layout;
  return Rows({Fields({Field("Drive", Drive1), Field("Folder", txtFolder)}), Item(Dir1, 1),
               Text("Track files"), Item(File1, 2)},
              1);
}

// The narrowest that the folder is in.
void FileLists::ShowDrive() {
  int best = -1;
  for (std::size_t i = 0; i < drives_.size(); ++i) {
    if (!Holds(drives_[i], *last_)) continue;
    const auto length = [&](std::size_t at) { return drives_[at].native().size(); };
    if (best < 0 || length(i) > length(static_cast<std::size_t>(best))) best = static_cast<int>(i);
  }
  Drive1.Select(best);
}

void FileLists::OpenDrive(int index) {
  GoTo(drives_[static_cast<std::size_t>(index)]);
}

void FileLists::OpenFolder(int index) {
  const Path name = folders_[static_cast<std::size_t>(index)];
  GoTo(name == ".." ? last_->parent_path() : *last_ / name);
}

void FileLists::OpenTyped() {
  const Path typed = PathFromText(txtFolder.text());
  if (typed == *last_) return;
  GoTo(typed.empty() ? *last_ : *last_ / typed);
}

void FileLists::GoTo(const Path& folder) {
  const Status shown = ShowFolder(folder);
  if (shown.ok()) return;
  txtFolder.SetText(TextFromPath(*last_));
  ShowDrive();
  form_.host().dialogs.Message(shown.why());
}

void ClearFilePreview(PreviewPlot& plot) {
  plot.Clear();
  plot.SetAxisTitles("Potential /V", "Current /A");
}

TrackFileLoad PreviewFileTrack(PreviewPlot& plot, Workstation& workstation, Files& files,
                               const std::filesystem::path& path, int file_track) {
  TrackStore& tracks = workstation.tracks;
  TrackRecord& record = tracks.Record(kPreviewSlot);
  record = {};
  for (int column = 0; column < kTrackColumns; ++column) {
    tracks.Column(column, kPreviewSlot).clear();
  }
  ClearFilePreview(plot);
  TrackFileLoad load = ImportTrackFromFile(tracks, files, path, file_track, kPreviewSlot);
  if (record.Mode == kModeMulti) {
    record.Mode = kModeSSVAll;
    record.Vxmin = record.Vxmax = 0;
  }
  const bool dots = workstation.settings.PrevGraphDrawSetting == 1;
  DrawTrack(plot, tracks, kPreviewSlot, RangeOf(tracks, kPreviewSlot),
            dots ? PreviewStyle::kDots : PreviewStyle::kLines);
  plot.ResetZoom();
  return load;
}

Status ImportFileTrack(Workstation& workstation, Files& files, const std::filesystem::path& path,
                       int file_track, int track) {
  TrackHeaders headers;
  const TrackFileLoad looked = ReadTrackHeaders(files, path, headers);
  if (!looked.complete()) return looked.status;
  if (headers[static_cast<std::size_t>(file_track)].IsEmpty()) {
    return Status::Failure("no track " + std::to_string(file_track) + " in it")
        .Within(TextFromPath(path));
  }
  TrackFileLoad load;
  {
    const TrackChange change(workstation, "Import of track " + std::to_string(track), {track});
    load = ImportTrackFromFile(workstation.tracks, files, path, file_track, track);
  }
  if (workstation.shown_track == track) workstation.ShowTrack(track);
  return load.status;
}

}  // namespace zento
