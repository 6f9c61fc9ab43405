#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/display_range.h"
#include "core/track.h"
#include "core/workstation.h"
#include "graph/preview_plot.h"
#include "host/controls.h"
#include "host/edit_grid.h"
#include "host/form.h"
#include "ui/main/point_edits.h"

namespace zento {

// frmEditATrack: the points of the main window's track, a cycle at a time, in a grid where single
// values are typed over and selected points are removed.
class frmEditATrack : public Form {
 public:
  static constexpr const char* kName = "frmEditATrack";
  // Columns 0 to 2 that an operation concerns.
  using ColumnFlags = std::array<bool, kTrackColumns>;

  frmEditATrack(Workstation& workstation, Host& host);

  MenuItem mnuDelete{*this, "mnuDelete", "Edit", "Delete"};
  MenuItem mnuBasicOperations{*this, "mnuBasicOperations", "Edit", "Basic Operations"};
  Label lblTrack{*this, "lblTrack"};
  ComboBox cbxCycleNum{*this, "cbxCycleNum"};
  TextBox txtEdit{*this, "txtEdit"};  // over a cell of the grid while something is typed into it
  EditGrid DataGrid{*this, "DataGrid", txtEdit};
  PreviewPlot PrevGraph{*this, "PrevGraph", {480, 400}};
  Label lblPoint{*this, "lblPoint"};  // the current point with all its digits
  Label lblNote{*this, "lblNote"};

  bool Load() override;
  // Shows the main window's track when it is another one, or its points were changed elsewhere.
  void Activate() override;
  void Unload() override;
  LayoutNode Layout() override;

  // Applies an operation with `value` to the flagged columns of the points of the chosen cycle, in
  // scratch slot 21, and shows that in the preview. The track stays as it is. Columns that the
  // track does not hold are passed over. False, and nothing is shown, for an empty track and when a
  // result would be no finite number; the latter is said.
  bool BasicCalcTrack(const ColumnFlags& columns, BasicOperation operation, double value);
  // Writes what BasicCalcTrack has shown into the track, if the track is still the one it was
  // calculated from, and shows the track anew.
  void UpdateTrack();
  // Of the track that is shown; 0 for an empty one.
  int held_columns() const { return HeldColumns(tracks(), track_); }
  // What BasicCalcTrack has shown is still that of the track and cycle that are shown.
  bool HasResult() const { return shown_operation_.has_value(); }

 private:
  using PointColumns = std::array<std::vector<double>, kTrackColumns>;

  void WireControls();
  void Reload(int cycle);
  void FillGrid();
  void ShowCell(int row, int column);
  void ShowTitle();
  void ShowPoint();
  void DrawPreview();
  DisplayRange PreviewedRange() const;
  // What the preview draws the currents of a slot over.
  std::span<const double> PreviewedX(int slot) const;
  void GridKey(Key key);
  void EditKey(Key key);
  void LeaveEditor();
  void CloseEditor();
  void StoreEdited();
  void AskToDelete();
  void DeletePoints(const std::vector<int>& rows);
  // The track's points, mode or vertices are no longer those that are shown.
  bool Outdated() const;
  // The same, said and shown.
  bool ChangedMeanwhile();
  void ForgetOperation();
  void AfterChange();
  std::int32_t FirstPoint() const;
  std::int32_t LastPoint() const;
  TrackStore& tracks() const { return workstation_.tracks; }

  Workstation& workstation_;
  int track_ = -1;
  std::int32_t generation_ = 0;
  int reloads_ = 0;        // rows that a question was asked about are those of one of them
  std::int32_t mode_ = 0;  // of the track as it is shown
  PointColumns points_;    // likewise
  std::array<double, 3> vertices_{};  // V, likewise
  std::vector<std::int32_t> boundaries_;
  std::optional<PointOperation> shown_operation_;
  bool editing_ = false;
};

}  // namespace zento
