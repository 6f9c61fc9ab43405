#pragma once

#include <filesystem>

#include "core/track_file.h"
#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"
#include "ui/main/file_lists.h"

namespace zento {

// frmImportTrack: what the tracks of one track file are, and one of them copied into the track that
// the main window shows. Row 0 of the sheet names the columns; track n stands in row n + 1.
class frmImportTrack : public Form {
 public:
  frmImportTrack(Workstation& workstation, Host& host, LastFolder last);

  bool Load() override;
  // The folder may hold other files by now, the main window may show another track.
  void Activate() override;
  LayoutNode Layout() override;

  // As if a person had looked the file up and clicked on it.
  Status ChooseFile(const std::filesystem::path& file) { return lists.ChooseFile(file); }
  // Of the chosen file; -1 = none.
  int selected_track() const { return selected_; }

  FileLists lists;
  Grid fgcDataSheet;
  PreviewPlot PrevGraph{*this, "PrevGraph"};
  Label lblNotice{*this, "lblNotice"};
  Button cmdImport{*this, "cmdImport", "Import"};
  Button cmdClose{*this, "cmdClose", "Close"};

 private:
  void File1_Click();
  void ShowNothing();
  void ShowSheet();
  void SelectRow(int row);
  void cmdImport_Click();
  void ShowTarget();

  Workstation& workstation_;
  std::filesystem::path path_;
  bool recognized_ = false;
  TrackHeaders headers_;
  int selected_ = -1;
};

}  // namespace zento
