#include "ui/main/edit_a_track_form.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "core/palette.h"
#include "core/settings.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "graph/plot_range.h"
#include "graph/track_preview.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kTimeColumn = 2;
// Selected points beyond this are drawn as dots: one would not tell them apart anyway.
constexpr std::size_t kMostMarks = 1000;
constexpr int kAllDigits = 17;  // tell any two values apart
constexpr char kPattern[] = "0.000e+0";

const char* XHeading(XQuantity x) {
  switch (x) {
    case XQuantity::kTime:
      return "time/s";
    case XQuantity::kRotationRate:
      return "rpm";
    default:
      return "E/V";
  }
}

// The times of a rotation-rate sweep are not for editing; a multichannel record has its in track 0.
std::vector<std::string> Headings(std::int32_t mode, int track) {
  const ModeTraits& traits = TraitsOf(mode);
  if (traits.x == XQuantity::kNone) return {};
  std::vector<std::string> headings = {XHeading(traits.x), "Disk/A"};
  const bool third = traits.third_in == ThirdColumnIn::kEveryTrack ||
                     (traits.third_in == ThirdColumnIn::kFirstChannel && track == 0);
  if (third) headings.emplace_back(HasRing(mode) ? "Ring/A" : "Time/s");
  return headings;
}

bool BeginsValue(char32_t character) {
  return (character >= U'0' && character <= U'9') || character == U'e' || character == U'E' ||
         character == U'+' || character == U'-';
}

}  // namespace

frmEditATrack::frmEditATrack(Workstation& workstation, Host& host)
    : Form(host, kName, "Edit a Track"), workstation_(workstation) {
  DataGrid.SetTip("Type over a cell; Enter takes the value, Escape leaves it. Delete removes rows");
  PrevGraph.SetAxisTitles("Potential /V", "Current /A");
  WireControls();
}

void frmEditATrack::WireControls() {
  mnuDelete.on_click = [this] { AskToDelete(); };
  mnuBasicOperations.on_click = [&desktop = host().desktop] { desktop.Show("frmBasicOperations"); };
  cbxCycleNum.on_select = [this](int) {
    ForgetOperation();
    FillGrid();
  };
  DataGrid.on_key = [this](Key key) { GridKey(key); };
  DataGrid.on_move = [this] { ShowPoint(); };
  txtEdit.on_key = [this](Key key) { EditKey(key); };
  txtEdit.on_lost_focus = [this] { LeaveEditor(); };
}

bool frmEditATrack::Load() {
  Reload(0);
  return true;
}

void frmEditATrack::Activate() {
  const bool another = track_ != workstation_.shown_track;
  if (!another && generation_ == workstation_.DataGeneration && !Outdated()) return ShowTitle();
  Reload(another ? 0 : std::max(cbxCycleNum.selected(), 0));
}

void frmEditATrack::Unload() {
  host().desktop.Unload("frmBasicOperations");
}

void frmEditATrack::Reload(int cycle) {
  ++reloads_;
  CloseEditor();
  ForgetOperation();
  track_ = workstation_.shown_track;
  generation_ = workstation_.DataGeneration;
  const TrackRecord& record = tracks().Record(track_);
  mode_ = record.Mode;
  vertices_ = record.V;
  for (int c = 0; c < kTrackColumns; ++c) {
    const std::span<const double> points = tracks().Points(c, track_);
    points_[static_cast<std::size_t>(c)].assign(points.begin(), points.end());
  }
  boundaries_ = CycleEnds(tracks(), track_);
  if (tracks().PointCount(track_) == 0) boundaries_.back() = -1;
  std::vector<std::string> names;
  for (std::size_t i = 1; i < boundaries_.size() && IsMeasured(mode_); ++i) {
    names.push_back("Cycle" + PlainNumber(i));
  }
  const int chosen = std::clamp(cycle, 0, std::max(static_cast<int>(names.size()) - 1, 0));
  cbxCycleNum.SetEnabled(!names.empty());
  cbxCycleNum.SetItems(std::move(names));
  cbxCycleNum.Select(chosen);
  ShowTitle();
  FillGrid();
}

void frmEditATrack::ShowTitle() {
  lblTrack.SetText("Track " + PlainNumber(track_) +
                   (!IsMeasured(mode_) ? " is empty"
                                       : ": " + std::string(AtOrNone(ModeName, mode_)) + " " +
                                             tracks().Record(track_).Title));
}

std::int32_t frmEditATrack::FirstPoint() const {
  const int cycle = cbxCycleNum.selected();
  return cycle < 0 ? 0 : boundaries_[static_cast<std::size_t>(cycle)];
}

// -1 without a point.
std::int32_t frmEditATrack::LastPoint() const {
  const int cycle = cbxCycleNum.selected();
  return cycle < 0 ? -1 : boundaries_[static_cast<std::size_t>(cycle) + 1];
}

void frmEditATrack::FillGrid() {
  CloseEditor();
  const std::vector<std::string> headings = Headings(mode_, track_);
  const std::int32_t first = FirstPoint();
  const std::int32_t rows = std::max(LastPoint() - first + 1, 0);
  DataGrid.SetRedraw(false);
  DataGrid.MoveTo(-1, -1);
  DataGrid.Resize(rows, static_cast<int>(headings.size()));
  DataGrid.headings = headings;
  DataGrid.first_number = first;
  for (std::int32_t row = 0; row < rows; ++row) {
    for (int column = 0; column < DataGrid.columns(); ++column) ShowCell(row, column);
  }
  DataGrid.SetRedraw(true);
  if (rows > 0) DataGrid.MoveTo(0, 0);
  ShowPoint();
}

void frmEditATrack::ShowCell(int row, int column) {
  DataGrid.SetCell(row, column,
                   Format(tracks().Value(column, track_, FirstPoint() + row), kPattern));
}

// The cells have four digits, the values all of theirs.
void frmEditATrack::ShowPoint() {
  const int row = DataGrid.row();
  std::string text;
  if (row >= 0) text = "Point " + PlainNumber(FirstPoint() + row) + ":";
  for (int column = 0; row >= 0 && column < DataGrid.columns(); ++column) {
    text += "  " + DataGrid.headings[static_cast<std::size_t>(column)] + " = " +
            PlainNumber(tracks().Value(column, track_, FirstPoint() + row), kAllDigits);
  }
  const std::size_t chosen = DataGrid.selected_rows().size();
  if (chosen > 1) text += "  (" + PlainNumber(chosen) + " points are selected)";
  lblPoint.SetText(text);
  DrawPreview();
}

void frmEditATrack::DrawPreview() {
  const auto style = static_cast<PreviewStyle>(workstation_.settings.PrevGraphDrawSetting);
  DrawTrack(PrevGraph, tracks(), track_, PreviewedRange(), style);
  PrevGraph.SetAxisTitles("Potential /V", "Current /A");
  const std::span<const double> x = PreviewedX(track_), y = tracks().Points(1, track_);
  const std::vector<int>& rows = DataGrid.selected_rows();
  const auto first = static_cast<std::size_t>(FirstPoint());
  for (const int row : rows) {
    const std::size_t point = first + static_cast<std::size_t>(row);
    if (point >= x.size() || point >= y.size()) break;
    if (rows.size() <= kMostMarks) {
      PrevGraph.Mark(x[point], y[point], kRed);
    } else {
      PrevGraph.Dot(x[point], y[point], kRed);
    }
  }
  if (!shown_operation_) return;
  const std::size_t count = static_cast<std::size_t>(LastPoint()) - first + 1;
  PrevGraph.Polyline(PreviewedX(kScratchSlot).subspan(first, count),
                     tracks().Points(1, kScratchSlot).subspan(first, count), kLightRed);
}

std::span<const double> frmEditATrack::PreviewedX(int slot) const {
  if (!IsMultichannel(mode_)) return tracks().Points(0, slot);
  // Only track 0 may hold the times.
  return tracks().Points(kTimeColumn, track_ == 0 ? slot : 0);
}

DisplayRange frmEditATrack::PreviewedRange() const {
  const DisplayRange range = RangeOf(tracks(), track_);
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

void frmEditATrack::GridKey(Key key) {
  if (key.code == KeyCode::kDelete) return AskToDelete();
  if (key.code != KeyCode::kCharacter || !BeginsValue(key.character) || DataGrid.row() < 0) return;
  editing_ = true;
  DataGrid.OpenEditor(std::string(1, static_cast<char>(key.character)));
}

void frmEditATrack::EditKey(Key key) {
  if (!editing_) return;
  if (key.code == KeyCode::kEscape) {
    CloseEditor();
    return Focus(DataGrid);
  }
  if (key.code != KeyCode::kEnter) return;
  const int row = DataGrid.row();
  const int column = DataGrid.column();
  StoreEdited();
  DataGrid.MoveTo(std::min(row + 1, DataGrid.rows() - 1), column);
  ShowPoint();
  Focus(DataGrid);
}

// Going to another cell takes what is a number, as Enter does; the beginning of one, which a
// person may have typed by mistake, is not worth a value.
void frmEditATrack::LeaveEditor() {
  if (!editing_) return;
  if (!ParseStrict(txtEdit.text())) return CloseEditor();
  StoreEdited();
}

void frmEditATrack::CloseEditor() {
  editing_ = false;
  DataGrid.CloseEditor();
}

void frmEditATrack::StoreEdited() {
  const int row = DataGrid.row();
  const int column = DataGrid.column();
  CloseEditor();
  if (row < 0 || ChangedMeanwhile()) return;
  const std::int32_t point = FirstPoint() + row;
  const double value = ParseLenient(txtEdit.text());
  {
    const TrackChange change(workstation_, "Edit of point " + PlainNumber(point),
                             TracksOfRecord(tracks(), track_));
    SetPoint(tracks(), track_, column, point, value);
  }
  points_[static_cast<std::size_t>(column)][static_cast<std::size_t>(point)] = value;
  ForgetOperation();
  ShowCell(row, column);
  ShowPoint();
  AfterChange();
}

void frmEditATrack::AskToDelete() {
  if (DataGrid.selected_rows().empty()) return lblNote.SetText("No points are selected.");
  CloseEditor();
  if (TracksOfRecord(tracks(), track_).size() > 1) {
    lblNote.SetText("Points go from all channels of the record, which share their times.");
  }
  host().dialogs.Ask(
      "Would you like to delete selected points?", Buttons::kYesNo,
      [&desktop = host().desktop, rows = DataGrid.selected_rows(), asked = reloads_,
       cycle = cbxCycleNum.selected()](bool yes) {
        auto* const form = yes ? desktop.FindAs<frmEditATrack>(kName) : nullptr;
        if (form == nullptr || form->cbxCycleNum.selected() != cycle) return;
        if (form->reloads_ == asked) return form->DeletePoints(rows);
        form->lblNote.SetText("Other points are shown than were asked about; none was deleted.");
      });
}

void frmEditATrack::DeletePoints(const std::vector<int>& rows) {
  if (ChangedMeanwhile()) return;
  const auto first = static_cast<std::size_t>(FirstPoint());
  const auto count = static_cast<std::size_t>(tracks().PointCount(track_));
  std::vector<char> goes(count, 0);
  for (const int row : rows) goes[first + static_cast<std::size_t>(row)] = 1;
  {
    const std::vector<int> of_record = TracksOfRecord(tracks(), track_);
    const TrackChange change(workstation_, "Removal of " + PlainNumber(rows.size()) + " points",
                             of_record);
    for (const int track : of_record) RemovePoints(tracks(), track, goes);
  }
  const int row = rows.front();
  Reload(std::max(cbxCycleNum.selected(), 0));
  if (DataGrid.rows() > 0) DataGrid.MoveTo(std::min(row, DataGrid.rows() - 1), 0);
  ShowPoint();
  lblNote.SetText("Deleted " + PlainNumber(rows.size()) +
                  (rows.size() == 1 ? " point" : " points"));
  AfterChange();
}

bool frmEditATrack::Outdated() const {
  if (tracks().Record(track_).Mode != mode_ || tracks().Record(track_).V != vertices_) return true;
  for (int c = 0; c < kTrackColumns; ++c) {
    const std::span<const double> now = tracks().Points(c, track_);
    const std::vector<double>& then = points_[static_cast<std::size_t>(c)];
    if (!SameValues(now, then)) return true;
  }
  return false;
}

bool frmEditATrack::ChangedMeanwhile() {
  if (!Outdated()) return false;
  Reload(std::max(cbxCycleNum.selected(), 0));
  lblNote.SetText(
      "The track was changed meanwhile; it is shown as it is now, and nothing was done.");
  return true;
}

void frmEditATrack::AfterChange() {
  // Channels are drawn together.
  const int shown = workstation_.shown_track;
  if (std::ranges::count(TracksOfRecord(tracks(), track_), shown) > 0) {
    workstation_.ShowTrack(shown);
  }
}

void frmEditATrack::ForgetOperation() {
  if (!std::exchange(shown_operation_, std::nullopt)) return;
  DrawPreview();
}

bool frmEditATrack::BasicCalcTrack(const ColumnFlags& columns, BasicOperation operation,
                                   double value) {
  if (ChangedMeanwhile() || DataGrid.rows() == 0) return false;
  ForgetOperation();
  PointOperation wanted{columns, operation, value, FirstPoint(), LastPoint()};
  for (int c = held_columns(); c < kTrackColumns; ++c) {
    wanted.columns[static_cast<std::size_t>(c)] = false;
  }
  if (!HasFiniteResult(tracks(), track_, wanted)) {
    host().dialogs.Message("The result would be too large for a number.");
    return false;
  }
  shown_operation_ = wanted;
  CalculateInScratch(tracks(), track_, wanted);
  DrawPreview();
  return true;
}

void frmEditATrack::UpdateTrack() {
  if (!shown_operation_ || ChangedMeanwhile()) return;
  const int cycle = cbxCycleNum.selected();
  {
    const TrackChange change(workstation_, "Basic operation", TracksOfRecord(tracks(), track_));
    // Anew: the scratch slot is other windows' too.
    CalculateInScratch(tracks(), track_, *shown_operation_);
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

LayoutNode frmEditATrack::Layout() {
  using namespace layout;
  return Rows({
      Columns({Item(lblTrack), Stretch(), Item(cbxCycleNum)}),
      Columns({Item(DataGrid, 1), Item(PrevGraph, 1)}, 1),
      Item(lblPoint),
      Item(lblNote),
  });
}

}  // namespace zento
