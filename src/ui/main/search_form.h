#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/form.h"
#include "host/timer.h"
#include "ui/main/file_lists.h"
#include "ui/main/track_search.h"

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
  CheckBox chkSubfolders;
  CheckBox opnTitle;
  TextBox KeyWords;
  CheckBox opnMeasurement;
  ComboBox cbxMeasurement;
  CheckBox opnRPM;
  TextBox txtRPM;
  CheckBox opnScanrate;
  TextBox txtScanrate;
  Button cmdSearch;
  Button cmdCancel;
  ProgressBar SearchProgress;
  Label lblState;
  Grid SearchResult;
  PreviewPlot PrevGraph;
  TextBox txtTrack;
  UpDown UpDown1;
  Label lblTrackTitle;
  Button cmdImport;
  Button cmdClose;
  Timer SearchTimer;

 private:
  void ConnectSearch();
  void ConnectImport();
  // False when a criterion that is on has no sensible value; says which.
  bool CheckCriteria();
  SearchCriteria Criteria() const;
  void cmdSearch_Click();
  void Work();
  void Finish(bool cancelled);
  void ShowHits();
  void ShowProgress();
  void ShowOutcome(bool cancelled);
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
