#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "core/track_file.h"
#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"
#include "host/services.h"

namespace zento {

// The folder that was last looked into while the program runs; empty = none yet.
using LastFolder = std::shared_ptr<std::filesystem::path>;

// The drive, folder and file lists of a window that looks for track files, with a box that shows
// the folder's path and takes one. A double click on a folder, or Enter, goes into it; ".." goes
// up.
class FileLists {
 public:
  // `start`: where to begin when no folder was looked into yet.
  FileLists(Form& form, LastFolder last, std::filesystem::path start);
  FileLists(const FileLists&) = delete;
  FileLists& operator=(const FileLists&) = delete;

  // Fills the lists. To be called when the form loads.
  void Begin();
  // Shows the folder and forgets the chosen file. Fails, changing nothing, when it cannot be read.
  Status ShowFolder(const std::filesystem::path& folder);
  // Shows the file's folder and chooses the file, as a person would.
  Status ChooseFile(const std::filesystem::path& file);
  // Looks again what stands in the folder; the chosen file stays chosen if it is still there.
  void Refresh();

  const std::filesystem::path& folder() const { return *last_; }
  // Empty when no file is chosen.
  std::filesystem::path file() const;

  LayoutNode Layout();

  std::function<void()> on_folder;  // another folder is shown, and no file is chosen any more
  std::function<void()> on_file;    // a person chose a file

  ComboBox Drive1;
  TextBox txtFolder;
  ListBox Dir1;
  ListBox File1;

 private:
  void ShowDrive();
  void OpenDrive(int index);
  void OpenFolder(int index);
  void OpenTyped();
  // A folder that a person asked for.
  void GoTo(const std::filesystem::path& folder);

  Form& form_;
  LastFolder last_;
  std::filesystem::path start_;
  std::vector<std::filesystem::path> drives_;
  std::vector<std::filesystem::path> folders_;  // behind the rows of Dir1
  std::vector<std::filesystem::path> files_;    // behind the rows of File1
};

// Draws a track of a file, read into the scratch slot kPreviewSlot; what cannot be read leaves the
// plot empty. A channel of a multichannel record is drawn as current against potential, because the
// times stand with another channel.
inline constexpr int kPreviewSlot = 22;
TrackFileLoad PreviewFileTrack(PreviewPlot& plot, Workstation& workstation, Files& files,
                               const std::filesystem::path& path, int file_track);
// The axes' titles alone.
void ClearFilePreview(PreviewPlot& plot);

// Imports a track of a file into one of the 21 tracks as a step that can be taken back, and shows
// it if it is the main window's. Fails when the file does not hold the track (any more).
Status ImportFileTrack(Workstation& workstation, Files& files, const std::filesystem::path& path,
                       int file_track, int track);

}  // namespace zento
