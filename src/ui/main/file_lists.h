#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "host/controls.h"
#include "host/form.h"

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

}  // namespace zento
