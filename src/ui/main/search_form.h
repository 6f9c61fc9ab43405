#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "core/workstation.h"
#include "exchange/track_search.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"
#include "ui/main/file_lists.h"

namespace zento {

// frmSearchTrack: finds tracks by their headers in the track files of a folder, shows what they
// hold, and copies one of them into a track of choice. The search runs beside everything else, in
// slices of SearchTimer.
class frmSearchTrack : public Form {
 public:
  frmSearchTrack(Workstation& workstation, Host& host, LastFolder last);

  bool Load() override;
  void Activate() override;
  LayoutNode Layout() override;

  bool searching() const { return SearchTimer.Enabled(); }
  // Of the last search; null before the first.
  const TrackSearch* search() const { return search_.get(); }
  int target_track() const { return target_; }
  void SetTargetTrack(int track);

  FileLists lists;
  CheckBox chkSubfolders{*this, "chkSubfolders", "Include subfolders"};
  CheckBox opnTitle{*this, "opnTitle", "Title"};
  TextBox KeyWords{*this, "KeyWords"};
  CheckBox opnMeasurement{*this, "opnMeasurement", "Measurement"};
  ComboBox cbxMeasurement{*this, "cbxMeasurement"};
  CheckBox opnRPM{*this, "opnRPM", "RPM"};
  TextBox txtRPM{*this, "txtRPM", "0"};
  CheckBox opnScanrate{*this, "opnScanrate", "Scanrate"};
  TextBox txtScanrate{*this, "txtScanrate", "0"};
  Button cmdSearch{*this, "cmdSearch", "Search"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};
  ProgressBar SearchProgress{*this, "SearchProgress"};
  Label lblState{*this, "lblState"};
  Grid SearchResult;
  PreviewPlot PrevGraph{*this, "PrevGraph"};
  TextBox txtTrack{*this, "txtTrack", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  Label lblTrackTitle{*this, "lblTrackTitle"};
  Button cmdImport{*this, "cmdImport", "Import"};
  Button cmdClose{*this, "cmdClose", "Close"};
  Timer SearchTimer{*this, "SearchTimer"};

 private:
  void ConnectSearch();
  void ConnectImport();
  // Those that are on.
  TypedCriteria Criteria() const;
  void cmdSearch_Click();
  void Work();
  void Finish(bool cancelled);
  void ShowHits();
  void ShowProgress();
  void SelectResult(int row);
  void cmdImport_Click();
  void StoreTypedTrack();

  Workstation& workstation_;
  std::unique_ptr<TrackSearch> search_;
  std::size_t shown_hits_ = 0;
  int selected_ = -1;  // result
  int target_ = 0;
};

}  // namespace zento
