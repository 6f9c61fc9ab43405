// The single-track editor's arithmetic on the points of a cycle.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "graph/plot_range.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"
#include "ui/main/edit_a_track_form.h"
#include "ui/main/point_edits.h"
#include "ui/main/reference_scale.h"

namespace zento {
namespace {

constexpr int kTimeColumn = 2;

double Apply(BasicOperation operation, double a, double b) {
  switch (operation) {
    case BasicOperation::kAdd:
      return a + b;
    case BasicOperation::kSubtract:
      return a - b;
    case BasicOperation::kMultiply:
      return a * b;
    case BasicOperation::kDivide:
      return a / b;
  }
  return a;
}

}  // namespace

int frmEditATrack::held_columns() const {
  return HeldColumns(tracks(), track_);
}

std::span<const double> frmEditATrack::PreviewedX(int slot) const {
  if (mode_ != kModeMulti) return tracks().Points(0, slot);
  // Only track 0 may hold the times.
  return tracks().Points(kTimeColumn, track_ == 0 ? slot : 0);
}

PreviewRange frmEditATrack::PreviewedRange() const {
  const PreviewRange range = RangeOf(tracks(), track_);
  if (!shown_operation_) return range;
  PlotRange all{std::min(range.x_min, range.x_max), std::min(range.y_min, range.y_max),
                std::max(range.x_min, range.x_max), std::max(range.y_min, range.y_max)};
  const std::span<const double> x = PreviewedX(kScratchSlot);
  const std::span<const double> y = tracks().Points(1, kScratchSlot);
  for (std::size_t point = 0; point < std::min(x.size(), y.size()); ++point) {
    Extend(all, x[point], y[point]);
  }
  return {all.x1, all.y1, all.x2, all.y2};
}

bool frmEditATrack::IsFinite(const Operation& operation) const {
  for (int c = 0; c < kTrackColumns; ++c) {
    if (!operation.columns[static_cast<std::size_t>(c)]) continue;
    for (std::int32_t point = FirstPoint(); point <= LastPoint(); ++point) {
      const double value = points_[static_cast<std::size_t>(c)][static_cast<std::size_t>(point)];
      if (!std::isfinite(Apply(operation.operation, value, operation.value))) return false;
    }
  }
  return true;
}

void frmEditATrack::Calculate(const Operation& operation) {
  tracks().CopyTrackHeader(track_, kScratchSlot);
  for (int c = 0; c < kTrackColumns; ++c) {
    std::vector<double> values = points_[static_cast<std::size_t>(c)];
    if (operation.columns[static_cast<std::size_t>(c)]) {
      for (std::int32_t point = FirstPoint(); point <= LastPoint(); ++point) {
        double& value = values[static_cast<std::size_t>(point)];
        value = Apply(operation.operation, value, operation.value);
      }
    }
    std::vector<double>& column = tracks().Column(c, kScratchSlot);
    if (column.size() < values.size()) column.resize(values.size());
    std::copy(values.begin(), values.end(), column.begin());
  }
  FitHeader(operation);
}

// The axes that were calculated with show all points, or a track in other units would leave the
// preview. The turning points of a sweep go along with its potentials, or its cycles would not be
// found again; they are one set for all cycles, and so stay when only some points were moved.
void frmEditATrack::FitHeader(const Operation& operation) {
  TrackRecord& record = tracks().Record(kScratchSlot);
  if (mode_ == kModeMulti) return;
  const bool ring = HasRing(mode_);
  const auto cover = [this](int column, PlotRange& range, bool& any) {
    for (const double value : tracks().Points(column, kScratchSlot)) {
      if (!any) range = {value, value, value, value};
      any = true;
      Extend(range, value, value);
    }
  };
  PlotRange x, y;
  bool any_x = false, any_y = false;
  if (operation.columns[0]) cover(0, x, any_x);
  if (operation.columns[1] || (ring && operation.columns[2])) {
    cover(1, y, any_y);
    if (ring) cover(2, y, any_y);
  }
  if (any_x) record.Vxmin = x.x1, record.Vxmax = x.x2;
  if (any_y) record.Vymin = y.x1, record.Vymax = y.x2;
  const bool whole = FirstPoint() == 0 && LastPoint() == tracks().PointCount(track_) - 1;
  if (!operation.columns[0] || !whole || !HasReferencedPotentials(record)) return;
  for (double& vertex : record.V) vertex = Apply(operation.operation, vertex, operation.value);
}

bool frmEditATrack::BasicCalcTrack(const ColumnFlags& columns, BasicOperation operation,
                                   double value) {
  if (ChangedMeanwhile() || DataGrid.rows() == 0) return false;
  ForgetOperation();
  Operation wanted{columns, operation, value};
  for (int c = held_columns(); c < kTrackColumns; ++c) {
    wanted.columns[static_cast<std::size_t>(c)] = false;
  }
  if (!IsFinite(wanted)) {
    host().dialogs.Message("The result would be too large for a number.");
    return false;
  }
  shown_operation_ = wanted;
  Calculate(*shown_operation_);
  DrawPreview();
  return true;
}

void frmEditATrack::UpdateTrack() {
  if (!shown_operation_ || ChangedMeanwhile()) return;
  const int cycle = cbxCycleNum.selected();
  {
    const TrackChange change(workstation_, "Basic operation", TracksOfRecord(tracks(), track_));
    // Anew: the scratch slot is other windows' too.
    Calculate(*shown_operation_);
    tracks().CopyTrackHeader(kScratchSlot, track_);
    for (int c = 0; c < kTrackColumns; ++c) {
      if (!shown_operation_->columns[static_cast<std::size_t>(c)]) continue;
      for (std::int32_t point = FirstPoint(); point <= LastPoint(); ++point) {
        SetPoint(tracks(), track_, c, point, tracks().Value(c, kScratchSlot, point));
      }
    }
  }
  const int row = DataGrid.row();
  const int column = DataGrid.column();
  Reload(cycle);
  DataGrid.MoveTo(row, column);
  ShowPoint();
  AfterChange();
}

}  // namespace zento
